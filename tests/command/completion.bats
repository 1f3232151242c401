# Shell completion and man pages, which come from the help texts. MAN_PAGES is the folder of the pages that the build
# writes, COMPLETION the command that prints the completion script.

setup_file() {
    bats_require_minimum_version 1.5.0
    $COMPLETION >"$BATS_FILE_TMPDIR/completion"
}

# complete WORD...: prints the completions of the last word, sorted.
complete() {
    (
        unset -f complete
        compopt() { :; } # only in real completion
        . "$BATS_FILE_TMPDIR/completion"
        COMP_WORDS=(./tavro "$@") COMP_CWORD=$# COMPREPLY=()
        "$(builtin complete -p tavro | sed 's/.* -F \([^ ]*\) .*/\1/')" tavro "${!#}"
        printf '%s\n' "${COMPREPLY[@]}" | sort | xargs
    )
}
expect() { # COMPLETIONS WORD...
    found=$(complete "${@:2}")
    [ "$found" = "$1" ] || { echo "${*:2}: $found"; return 1; }
}

@test "every command and help are completed" {
    expect "$( (ls "$BATS_TEST_DIRNAME/../../help" | sed 's/\.txt$//; /^tavro$/d'; echo help) | sort | xargs)" ''
    expect 'list lists' lis
    expect 'bench build' help b
}

@test "options of the tool's and the script's commands are completed" {
    expect "$(grep -oE -- '^ .*' "$BATS_TEST_DIRNAME/../../help/list.txt" | grep -oE -- '^ {2}(-., | {4})--[a-z-]+' |
        grep -oE -- '--[a-z-]+' | sort | xargs)" list --
    expect '--quick' test --q
    expect '--json' bench --j
}

@test "natives are completed" {
    expect 'networks.native_clean networks.native_close' call networks.native_cl
}

@test "kinds of list are completed" {
    expect 'networks satellites services streams' list --kind ''
    expect 'satellites services streams' list -k s
}

@test "every command has a man page without warnings" {
    for name in $(ls "$BATS_TEST_DIRNAME/../../help" | sed 's/\.txt$//'); do
        page=$MAN_PAGES/tavro-$name.1
        [ "$name" != tavro ] || page=$MAN_PAGES/tavro.1
        run --separate-stderr groff -man -ww -K utf8 -Tutf8 "$page"
        [ "$status" = 0 ] && [ -z "$stderr" ] || { echo "$page: $stderr"; return 1; }
    done
    [ "$(ls "$MAN_PAGES" | wc -l)" = "$(ls "$BATS_TEST_DIRNAME/../../help" | wc -l)" ]
}

@test "a man page says what the help says" {
    run groff -man -K utf8 -Tascii -P-cbou -rLL=100n "$MAN_PAGES/tavro-show.1"
    text=$(tr -s ' \n' ' ' <<<"$output")
    while read -r words; do
        [[ $text = *"$words"* ]] || { echo "missing: $words"; return 1; }
    done < <(sed -n 's/^Usage: .\/tavro/tavro/p; s/^  -., \(--[a-z]*\) *\([A-Z]\)/\1 \2/p; s/^.*\(\.\/tavro show\)/\1/p' \
        "$BATS_TEST_DIRNAME/../../help/show.txt")
    [[ $text = *"OPTIONS"*"EXAMPLES"*"EXIT STATUS"* ]]
}
