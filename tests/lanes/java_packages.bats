#!/usr/bin/env bats
# Tests of java_packages.sh.

setup() {
    tree=$BATS_TEST_TMPDIR/java
    cp -r "$BATS_TEST_DIRNAME/../../java/src/main/java" "$tree"
    tool=$tree/com/velotra/tv/tavro/tool
}
check() { run "$BATS_TEST_DIRNAME/java_packages.sh" "$tree"; }

@test "the tree passes" {
    check
    [ "$status" -eq 0 ]
    [ -z "$output" ]
}

@test "an import from a later package is reported with its file and line" {
    sed -i '2a import com.velotra.tv.tavro.tool.Main;' "$tool/output/Table.java"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "$tool/output/Table.java:3: tool.output must not import from tool" ]
}

@test "the list classes must not import from the tool" {
    sed -i '2a import static com.velotra.tv.tavro.tool.input.Text.fit;' "$tree/com/velotra/tv/tavro/services/channellist/RecordId.java"
    check
    [ "$status" -eq 1 ]
    [[ $output = *": services.channellist must not import from tool.input" ]]
}

@test "a new package must be added to the order" {
    mkdir "$tool/more"
    echo 'package com.velotra.tv.tavro.tool.more;' >"$tool/more/More.java"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "$tool/more/More.java:1: package tool.more is not in the order in tests/lanes/java_packages.sh" ]
}

@test "a folder without imports is an error" {
    rm -r "${tree:?}"/*
    check
    [ "$status" -eq 1 ]
    [[ $output = *"no imports found"* ]]
}
