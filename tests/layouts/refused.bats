#!/usr/bin/env bats
# Layout tables that are wrong do not compile, and the error names what is wrong. CXX names the compiler.

setup() {
    root=$BATS_TEST_DIRNAME/../..
    headers=$BATS_TEST_TMPDIR/middleware
    cp -r "$root/include/middleware" "$headers"
}

compile() {
    run ${CXX:-g++} -std=c++17 -fsyntax-only "-I$BATS_TEST_TMPDIR" -x c++ "$headers/$1"
}

@test "the tables themselves compile" {
    for header in svl.h tsl.h nwl.h satl.h; do
        compile "$header"
        [ "$status" -eq 0 ]
    done
}

@test "a field at another offset is refused by name" {
    sed -i 's/TAVRO_FIELD(12, ui1_nw_version/TAVRO_FIELD(13, ui1_nw_version/' "$headers/nwl.h"
    compile nwl.h
    [ "$status" -ne 0 ]
    [[ $output == *"ui1_nw_version is not at offset 13"* ]]
}

@test "a field that moves in the structure is refused by name" {
    sed -i 's/aui1_reserved_8\[2\]/aui1_reserved_8[4]/; s/aui1_reserved_45\[259\]/aui1_reserved_45[257]/' "$headers/nwl.h"
    compile nwl.h
    [ "$status" -ne 0 ]
    [[ $output == *"ui2_nw_id is not at offset 10"* ]]
}

@test "a field that is missing in the table is refused" {
    sed -i '/TAVRO_FIELD(12, ui1_nw_version/d' "$headers/nwl.h"
    compile nwl.h
    [ "$status" -ne 0 ]
    [[ $output == *"the table of _NWL_REC_T has a gap or an overlap"* ]]
}

@test "the last field missing in the table is refused" {
    sed -i '/TAVRO_RESERVED(45, aui1_reserved_45)/d' "$headers/nwl.h"
    compile nwl.h
    [ "$status" -ne 0 ]
    [[ $output == *"the table of _NWL_REC_T has a gap or an overlap"* ]]
}

@test "a view of a union that is missing a size is refused" {
    sed -i 's/aui1_reserved_80\[48\]/aui1_reserved_80[44]/; s/TAVRO_COMPLETE(_TSL_SAT_T, 128)/TAVRO_COMPLETE(_TSL_SAT_T, 124)/' \
        "$headers/tsl.h"
    compile tsl.h
    [ "$status" -ne 0 ]
    [[ $output == *"the table of _TSL_REC_T has a gap or an overlap"* ]]
}

@test "bytes that are listed twice are refused" {
    sed -i 's/\( *TAVRO_RESERVED(8, aui1_reserved_8),\)/\1 \1/' "$headers/nwl.h"
    compile nwl.h
    [ "$status" -ne 0 ]
    [[ $output == *"the table of _NWL_REC_T has a gap or an overlap"* ]]
}
