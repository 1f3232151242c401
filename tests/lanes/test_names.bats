#!/usr/bin/env bats
# The check of test names finds a name that is too long, wherever it stands.

setup() {
    root=$BATS_TEST_DIRNAME/../..
    tree=$BATS_TEST_TMPDIR/tree
    mkdir -p "$tree/tests/unit/jni" "$tree/tests/host" "$tree/tests/jvm" "$tree/java"
    sixty=$(printf 'A%.0s' {1..60})
    echo "TEST(Suite, $sixty) {}" >"$tree/tests/unit/first_test.cpp"
}

check() { run "$BATS_TEST_DIRNAME/test_names.sh" "$tree"; }

@test "the tree itself is in order" {
    "$BATS_TEST_DIRNAME/test_names.sh" "$root"
}

@test "a name of sixty characters is accepted" {
    check
    [ "$status" -eq 0 ]
    [ "$output" = "1 test names, none longer than 60 characters" ]
}

@test "a C++ test with a longer name is named with its file" {
    echo "TEST_F(Suite, ${sixty}B) {}" >"$tree/tests/unit/jni/second_test.cpp"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "tests/unit/jni/second_test.cpp: ${sixty}B has 61 characters: describe the rule in at most 60" ]
}

@test "a name on a line of its own counts" {
    printf 'TEST_P(Suite,\n       %sB) {}\n' "$sixty" >"$tree/tests/host/third_test.cpp"
    check
    [ "$status" -eq 1 ]
    [[ $output == "tests/host/third_test.cpp: "* ]]
}

@test "a Java test with a longer name is named with its file, other methods are not" {
    printf '@ParameterizedTest\n@CsvSource({"1", "2"})\nvoid %sB(int n) {}\n' "$sixty" >"$tree/tests/jvm/ATest.java"
    printf '@Test\nvoid short() {}\n\nvoid %sB() {}\n' "$sixty" >"$tree/java/BTest.java"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "tests/jvm/ATest.java: ${sixty}B has 61 characters: describe the rule in at most 60" ]
}

@test "a tree without tests fails" {
    rm "$tree/tests/unit/first_test.cpp"
    check
    [ "$status" -eq 1 ]
}
