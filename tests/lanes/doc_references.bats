#!/usr/bin/env bats
# The check of the documents' references finds what does not exist.

setup() {
    tree=$BATS_TEST_TMPDIR/tree
    build=$BATS_TEST_TMPDIR/build
    mkdir -p "$tree/docs" "$tree/tests" "$build"
    touch "$tree/tests/lanes.sh" "$tree/docs/other.md"
    printf 'add_test(%s true)\n' unit.Kinds/Suite unit.Typed/One jvm.SomeTest library.size >"$build/CTestTestfile.cmake"
    mkdir "$build/bin"
    printf '#!/bin/sh\nprintf "Kinds/Suite.\\n  Name/one  # GetParam() = 1\\nTyped/One.  # TypeParam = int\\n  Holds\\n"\n' \
        >"$build/bin/unit_tests"
    chmod +x "$build/bin/unit_tests"
}

check() { # WORDS
    printf '# A heading\n\n%s\n' "$1" >"$tree/docs/guide.md"
    run "$BATS_TEST_DIRNAME/doc_references.pl" "$build" "$tree"
}

refused() { # WORDS MESSAGE
    check "$1"
    [ "$status" -eq 1 ]
    [ "$output" = "docs/guide.md: $2" ]
}

@test "references to what exists are accepted" {
    check '`tests/` `tests/lanes.sh` `lanes.sh` [other](other.md) [here](#a-heading) `jvm.SomeTest` `library.size`
`unit.Suite` `Suite.Name` `Suite.Na*` `unit.Typed` `Typed.Holds` `unit.Suite.` `build/host/lib.so` `./tavro` `FILE…`'
    [ "$status" -eq 0 ]
    [ "$output" = "everything that 2 documents refer to exists" ]
}

@test "code blocks are not checked" {
    check '    `tests/nothing.sh`'
    [ "$status" -eq 0 ]
}

@test "a missing file or folder is named" {
    refused '`tests/nothing.sh`' 'there is no tests/nothing.sh'
    refused '`tests/nothing/`' 'there is no tests/nothing/'
}

@test "a link to nothing is named" {
    refused '[gone](gone.md)' 'the link gone.md leads nowhere'
    refused '[gone](#gone)' 'the link #gone names no heading'
}

@test "a section that is there twice is named" {
    refused '## Twice
## Once
## Twice
## Twice' "the section 'Twice' is there twice"
}

@test "a missing test, suite or class is named" {
    refused '`unit.Suit`' 'there is no test unit.Suit'
    refused '`Suite.Nam`' 'there is no test Suite.Nam'
    refused '`jvm.OtherTest`' 'there is no test jvm.OtherTest'
    refused '`library.sizes`' 'there is no test library.sizes'
}

@test "the log of the build's tests is left alone" {
    mkdir -p "$build/Testing/Temporary"
    echo kept >"$build/Testing/Temporary/LastTest.log"
    check '`jvm.SomeTest`'
    [ "$status" -eq 0 ]
    [ "$(cat "$build/Testing/Temporary/LastTest.log")" = kept ]
}

@test "the documents of this tree are in order" {
    run "$BATS_TEST_DIRNAME/doc_references.pl" "${BUILD:?}"
    echo "$output"
    [ "$status" -eq 0 ]
}
