# How tour.sh compares the commands of a document with their output.
bats_require_minimum_version 1.5.0

# check TEXT: runs tour.sh on a document with one block of this text; ./tavro prints its arguments.
check() {
    printf 'Text.\n\n    $ not a command\n\n```console\n%s\n```\n' "$1" >"$BATS_TEST_TMPDIR/doc.md"
    run "$BATS_TEST_DIRNAME/tour.sh" "$BATS_TEST_TMPDIR/doc.md" "$BATS_TEST_TMPDIR" echo
}
agrees() { check "$1"; [ "$status" = 0 ] && [ -z "$output" ] || { echo "$output"; return 1; }; }
differs() { # LINE_NUMBER COMMAND TEXT DIFFERENCE...
    check "$3"
    [ "$status" = 1 ]
    [ "$output" = "$BATS_TEST_TMPDIR/doc.md:$1: $2
$(printf '%s\n' "${@:4}")" ] || { echo "$output"; return 1; }
}

@test "commands that print what the document says agree" {
    agrees '$ ./tavro list 1
list 1
$ false
$ echo $?
1
$ export A=b
$ echo $A; echo error >&2; pwd >/dev/null
b
error'
}

@test "an ellipsis stands for lines or for the rest of a line" {
    agrees '$ seq 9
1
…
5
…
9
$ seq 3
…
$ echo one two three
one t…
$ echo "… and 3 more"
… and 3 more'
}

@test "each kind of difference is printed with its command" {
    differs 6 'echo a' '$ echo a
b' '    in the document: b' '    printed:         a'
    differs 6 'true' '$ true
b' '    in the document, but not printed: b'
    differs 6 'seq 2' '$ seq 2
1' '    in the document: (nothing more)' '    printed:         2'
    differs 6 'seq 5' '$ seq 5
…
3
4' '    in the document: (nothing more)' '    printed:         5'
    differs 8 'echo x' '$ seq 1
1
$ echo x
y…' '    in the document: y…' '    printed:         x'
}

@test "a document without commands or with an open block is refused" {
    printf 'Text.\n' >"$BATS_TEST_TMPDIR/doc.md"
    run "$BATS_TEST_DIRNAME/tour.sh" "$BATS_TEST_TMPDIR/doc.md" "$BATS_TEST_TMPDIR" echo
    [ "$status $output" = "1 $BATS_TEST_TMPDIR/doc.md has no commands" ]
    printf '```console\n$ true\n' >"$BATS_TEST_TMPDIR/doc.md"
    run "$BATS_TEST_DIRNAME/tour.sh" "$BATS_TEST_TMPDIR/doc.md" "$BATS_TEST_TMPDIR" echo
    [ "$status $output" = "1 $BATS_TEST_TMPDIR/doc.md: a block is not closed" ]
}

@test "a block of Java is saved under the name of its class" {
    printf '```java\nimport x;\npublic class Some {\n}\n```\n' >"$BATS_TEST_TMPDIR/doc.md"
    printf '```console\n$ cat Some.java\nimport x;\npublic class Some {\n}\n```\n' >>"$BATS_TEST_TMPDIR/doc.md"
    run "$BATS_TEST_DIRNAME/tour.sh" "$BATS_TEST_TMPDIR/doc.md" "$BATS_TEST_TMPDIR" echo
    [ "$status" = 0 ] && [ -z "$output" ] || { echo "$output"; return 1; }
}
