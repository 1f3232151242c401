#!/usr/bin/env bats
# The check of the Java packages finds an import against their order.

setup() {
    tree=$BATS_TEST_TMPDIR/java
    cp -r "$BATS_TEST_DIRNAME/../../java/src/main/java" "$tree"
    tool=$tree/com/velotra/tv/tavro/tool
}
check() { run "$BATS_TEST_DIRNAME/java_packages.sh" "$tree"; }

@test "the tree itself is in order" {
    check
    [ "$status" -eq 0 ]
    [ -z "$output" ]
}

@test "an import from a later package is named with its file and line" {
    sed -i '2a import com.velotra.tv.tavro.tool.Main;' "$tool/tables/Table.java"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "$tool/tables/Table.java:3: tool.tables must not import from tool" ]
}

@test "the list classes import nothing of the tool" {
    sed -i '2a import static com.velotra.tv.tavro.tool.input.Text.fit;' "$tree/com/velotra/tv/tavro/services/channellist/RecordId.java"
    check
    [ "$status" -eq 1 ]
    [[ $output = *": services.channellist must not import from tool.input" ]]
}

@test "a new package must be given a place" {
    mkdir "$tool/more"
    echo 'package com.velotra.tv.tavro.tool.more;' >"$tool/more/More.java"
    check
    [ "$status" -eq 1 ]
    [ "$output" = "$tool/more/More.java:1: package tool.more has no place in the order of tests/lanes/java_packages.sh" ]
}

@test "a folder without imports is an error" {
    rm -r "${tree:?}"/*
    check
    [ "$status" -eq 1 ]
    [[ $output = *"no import was found"* ]]
}
