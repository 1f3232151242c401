#!/usr/bin/env bats
# The check of the layers finds an include that points upwards.

setup() {
    tree=$BATS_TEST_TMPDIR/tree
    root=$BATS_TEST_DIRNAME/../..
    mkdir "$tree"
    cp -r "$root/include" "$root/text" "$root/channellist" "$root/jni" "$tree"
}

@test "the tree itself is in order" {
    "$BATS_TEST_DIRNAME/layers.sh" "$tree"
}

@test "an include that points upwards is named with its file" {
    echo '#include "jni/bridges/managers.h"' >>"$tree/jni/env/values.cpp"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [ "$output" = 'jni/env/values.cpp includes "jni/bridges/managers.h": jni/env may include jni/log text' ]
}

@test "the stores include nothing of jni but its log" {
    echo '#include "jni/env/record_id.h"' >>"$tree/channellist/HandleMap.h"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [[ $output == 'channellist/HandleMap.h includes "jni/env/record_id.h"'* ]]
}

@test "a new folder must be given a place" {
    mkdir "$tree/jni/more"
    echo '#include "jni/log/log_gate.h"' >"$tree/jni/more/more.h"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [ "$output" = "jni/more has no line in tests/lanes/layers.sh: say what it may include" ]
}
