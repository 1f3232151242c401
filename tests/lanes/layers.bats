#!/usr/bin/env bats
# Tests of layers.sh.

setup() {
    tree=$BATS_TEST_TMPDIR/tree
    root=$BATS_TEST_DIRNAME/../..
    mkdir "$tree"
    cp -r "$root/include" "$root/text" "$root/channellist" "$root/jni" "$tree"
}

@test "the tree passes" {
    "$BATS_TEST_DIRNAME/layers.sh" "$tree"
}

@test "an include that points upwards is reported with its file" {
    echo '#include "jni/bridges/managers.h"' >>"$tree/jni/env/values.cpp"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [ "$output" = 'jni/env/values.cpp includes "jni/bridges/managers.h": jni/env may include jni/log text' ]
}

@test "channellist may include only jni/log from jni" {
    echo '#include "jni/env/record_id.h"' >>"$tree/channellist/HandleMap.h"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [[ $output == 'channellist/HandleMap.h includes "jni/env/record_id.h"'* ]]
}

@test "a new folder must be added to the layers" {
    mkdir "$tree/jni/more"
    echo '#include "jni/log/log_gate.h"' >"$tree/jni/more/more.h"
    run "$BATS_TEST_DIRNAME/layers.sh" "$tree"
    [ "$status" -eq 1 ]
    [ "$output" = "jni/more is not in tests/lanes/layers.sh; add a line with the folders that it may include" ]
}
