# ./tavro call with the library's log and with the end of the process. TOOL is the command that starts the tool.

setup() {
    bats_require_minimum_version 1.5.0
    export TAVRO_HOME=$BATS_TEST_TMPDIR/home
    unset TAVRO_FAULTS
}

# Runs the command. Prints its output and then its errors, without times, process ids and debug lines.
call() {
    local status=0
    $TOOL call "$@" >"$BATS_TEST_TMPDIR/out" 2>"$BATS_TEST_TMPDIR/err" || status=$?
    sed -E 's/\([0-9]+\.[0-9]{3} ms\)/(T)/' "$BATS_TEST_TMPDIR/out"
    sed -E 's/\( *[0-9]+\)/(P)/; /^D/d' "$BATS_TEST_TMPDIR/err"
    return $status
}

@test "a failure of the middleware shows in the result and in the log" {
    export TAVRO_FAULTS=x_svl_clean=-104 # replaced by --fault
    run -0 call services.native_open 1 + services.native_clean 1 + services.native_clean 1 --fault x_svl_clean:2=-106
    diff - <(echo "$output") <<'END'
VltTvChannelList.native_open(1)
= int 0: done (T)
VltTvChannelList.native_clean(1)
= int 0: done (T)
VltTvChannelList.native_clean(1)
= int -22: failed (T)
W/TavroHost(P): fault: x_svl_clean call 2 returns -106
END
}

@test "a fault that kills the process leaves what was printed" {
    export TAVRO_FAULTS='x_nwl_add_rec:2=kill-after'
    run -137 call networks.native_open 1 + networks.nativeAdd 1 NetworkName=A + networks.nativeAdd 1 '{}'
    [ "$output" = 'VltTvNetworkList.native_open(1)
= int 0: done (T)
VltTvNetworkList.nativeAdd(1, VltTvNetworkInfoBase{NetworkName="A"})
= String "1,1" (T)
VltTvNetworkList.nativeAdd(1, VltTvNetworkInfoBase{})
W/TavroHost(P): fault: x_nwl_add_rec call 2 kills the process when it is done' ]
    unset TAVRO_FAULTS
    run -0 call networks.native_getInfoList 1 NetworkName
    [ "${lines[1]}" = '= ArrayList of 2 objects (T)' ]
}
