# The lists of the demo as CSV and JSON, and back. TOOL is the command that starts the tool, VDR the unpacked data of
# Debian's vdr.

setup_file() {
    bats_require_minimum_version 1.5.0
    [ -d "$VDR" ] || skip "the data of Debian's vdr is missing; ./tavro test downloads it"
    cd "$BATS_FILE_TMPDIR"
    examples=$VDR/usr/share/vdr/channels.conf-examples
    shell first <<END
import --list 1 $VDR/etc/vdr/sources.conf $VDR/etc/vdr/diseqc.conf $examples/channels.conf.sat
import --list 11 $examples/channels.conf.cable
import --list 21 $examples/channels.conf.terr
END
}

setup() {
    bats_require_minimum_version 1.5.0
    cd "$BATS_FILE_TMPDIR"
}

# Runs commands from standard input over the storage directory HOME.
shell() { # HOME
    TAVRO_HOME=$BATS_FILE_TMPDIR/$1 $TOOL shell >"$1.out"
}

@test "all lists as JSON are the same after an import and another export" {
    shell first <<<"export --all -o first.json"
    shell second <<<$'import first.json\nexport --all -o second.json'
    cmp first.json second.json
    TAVRO_HOME=$BATS_FILE_TMPDIR/first run -0 $TOOL diff first second
    [[ $output = "lists: "*" equal" ]]
}

@test "each list as CSV is the same after an import and another export" {
    TAVRO_HOME=$BATS_FILE_TMPDIR/first $TOOL lists | sed -nE 's/^([a-z]+) +([0-9]+) .*/\1 \2/p' >lists
    [ "$(wc -l <lists)" -ge 8 ]
    sed -E 's/(.*) (.*)/export \2 -k \1 --format csv -o first-\1-\2.csv/' lists | shell first
    sed -E 's/(.*) (.*)/import first-\1-\2.csv\nexport \2 -k \1 --format csv -o third-\1-\2.csv/' lists | shell third
    while read -r kind list; do cmp "first-$kind-$list.csv" "third-$kind-$list.csv"; done <lists
    TAVRO_HOME=$BATS_FILE_TMPDIR/first run -0 $TOOL diff first third
}
