# Commands that only read open nothing of the storage directory for writing. TOOL is the command that starts the tool.

setup() {
    bats_require_minimum_version 1.5.0
    export TAVRO_HOME=$BATS_TEST_TMPDIR/home
    printf 'S13E Quattro\nS19.2E Cinque Sei\n' >"$BATS_TEST_TMPDIR/sources.conf"
    printf 'Uno:11493:H:S19.2E:22000:101=27:102:0:0:1:1:1019:0\n' >"$BATS_TEST_TMPDIR/channels.conf"
    $TOOL import --list 1 "$BATS_TEST_TMPDIR/sources.conf" "$BATS_TEST_TMPDIR/channels.conf" >/dev/null
    strace -o /dev/null true 2>/dev/null || skip "strace cannot trace processes here"
}

# Prints the system calls of shell commands, from standard input, that change files of the storage directory.
writes() {
    strace -f --seccomp-bpf -o "$BATS_TEST_TMPDIR/trace" -y -e \
        trace=open,openat,creat,rename,renameat,renameat2,unlink,unlinkat,mkdir,mkdirat,truncate,ftruncate,link,symlink \
        $TOOL shell >"$BATS_TEST_TMPDIR/out"
    grep -F "$TAVRO_HOME" "$BATS_TEST_TMPDIR/trace" | grep -vE 'O_RDONLY|resumed>' || true
    grep -qF "$TAVRO_HOME/lists.db" "$BATS_TEST_TMPDIR/trace"
}

@test "looking, finding, comparing and exporting write nothing" {
    run -0 writes <<END
lists
find uno
find 11493
list 3
list 3 --by-network 1
list 3 --by-stream 1019
list 3 --kind streams --by-satellite 3,2
list 3 --where 'freq>11000000 and pol=H' --sort -name
show 3,1 --bytes
show 3,2 --kind satellites
dump 3,1
diff 3 3
export 3
export 3 --format vdr
export --all
view -o $BATS_TEST_TMPDIR/page.html
order 3 --from 3 --dry-run
END
    echo "$output"
    [ -z "$output" ]
    tail -1 "$BATS_TEST_TMPDIR/out"
}

@test "the trace shows a command that writes" {
    run -0 writes <<<"set 3,1 name=Due"
    [[ $output = *lists.db* ]]
}
