# What ./tavro bench runs: bench/run.sh with fakes for the benchmark programs.
load support

bench_programs() {
    build=$area/build
    mkdir -p "$build/bin" "$area/bench" "$area/tables"
    cp "$top/bench/run.sh" "$area/bench"
    for program in native host; do fake_program "$build/bin/${program}_bench" $program/one $program/two; done
    fake_program "$area/bench/java.sh" java/one
}

# Creates a fake program that lists its benchmarks or writes results. It records its arguments, and whether TAVRO_HOME is
# empty.
fake_program() { # FILE NAME...
    cat >"$1" <<END
#!/bin/bash
echo "\${0##*/} \$*" >>"$FAKE_CALLS"
[ -z "\$(ls -A "\$TAVRO_HOME")" ] || echo "\${0##*/}: TAVRO_HOME is not empty" >>"$FAKE_CALLS"
touch "\$TAVRO_HOME/used"
for word in "\$@"; do
    case \$word in
    --benchmark_filter=*) filter=\${word#*=} ;;
    --benchmark_out=*) out=\${word#*=} ;;
    --benchmark_list_tests) list=yes ;;
    esac
done
if [ -n "\$list" ]; then printf '%s\n' ${*:2} | grep -E -- "\$filter" || true; exit 0; fi
echo "results of \${0##*/}"
[ -z "\$out" ] || printf '{\n    "host_name": "mine",\n    "executable": "there",\n    "by": "%s"\n}\n' "\${0##*/}" >"\$out"
exit \$FAKE_STATUS
END
    chmod 755 "$1"
}

bench() { # STATUS OPTION...
    bench_programs
    again "$@"
}
again() {
    run --separate-stderr "$area/bench/run.sh" "$build" --tree="$area/tables" "${@:2}" -- java tool
    [ "$status" = "$1" ] || show "exit code $status, not $1: bench ${*:2}"
}

@test "the programs run in turn, each with an empty storage directory, and progress is shown" {
    bench 0
    for program in native peers host import; do says "Measuring: $program ("; done
    says "import (4 of 4)"
    called '^native_bench $'
    called "^java.sh $build PeerBench$"
    called '^host_bench --benchmark_repetitions=3 --benchmark_report_aggregates_only=true$'
    called "^java.sh $build ImportBench -- $build/bin/import_floor java tool import $area/tables$"
    not_called 'is not empty'
    prints "results of host_bench"
}

@test "the programs run with the platform's default settings, not the user's" {
    bench_programs
    printf '#!/bin/sh\nenv >>"$FAKE_CALLS"\necho native/one\n' >"$build/bin/native_bench"
    export TAVRO_PROP_vendor_vlt_broadcast_log_level=D TAVRO_PROP_other=1 TAVRO_PROPERTIES=/file TAVRO_LOG_FILE=/log
    again 0
    called '^TAVRO_HOME='
    not_called '^TAVRO_(PROP|LOG)'
}

@test "only programs with a benchmark that matches the filter run" {
    bench 0 --benchmark_filter=host/t
    called '^host_bench .*--benchmark_filter=host/t$'
    says "host (1 of 1)"
    [ "$(grep -cv -- --benchmark_list_tests "$FAKE_CALLS")" = 1 ] || show "other programs ran too"
}

@test "a filter without a match is a failure" {
    bench 1 --benchmark_filter=nothing
    says "no benchmark matches 'nothing'"
    [ -z "$output" ] || show "something was measured"
}

@test "listing prints the names of all benchmarks and measures nothing" {
    bench 0 --benchmark_list_tests
    [ "$output" = $'native/one\nnative/two\njava/one\nhost/one\nhost/two\njava/one' ] || show "not the names"
    again 0 --benchmark_list_tests --benchmark_filter=two
    [ "$output" = $'native/two\nhost/two' ] || show "not the names that match"
}

@test "--quick is passed to each program in its own form" {
    bench 0 --quick
    called '^native_bench --quick$'
    called 'PeerBench --quick$'
    called 'ImportBench --quick -- '
    called '^host_bench --benchmark_min_time=0.01$'
}

@test "repetitions go to all programs, the minimum time only to host_bench" {
    bench 0 --benchmark_repetitions=5 --benchmark_min_time=2
    called '^native_bench --benchmark_repetitions=5$'
    called 'PeerBench --benchmark_repetitions=5$'
    called 'ImportBench --benchmark_repetitions=5 -- '
    called '^host_bench .*--benchmark_min_time=2 --benchmark_repetitions=5$'
}

@test "JSON results go to a new folder, without host name and file names" {
    bench 0 --json="$area/new/results"
    [ "$(cd "$area/new/results" && echo *)" = "host.json import.json native.json peers.json" ] || show "not those files"
    [ "$(cat "$area/new/results/host.json")" = $'{\n    "by": "host_bench"\n}' ] || show "$(cat "$area/new/results/host.json")"
}

@test "a folder that cannot be created is reported before anything is measured" {
    touch "$area/file"
    bench 1 --json="$area/file/results"
    says "cannot create the folder '$area/file/results'"
    not_called .
}

@test "a failing program keeps its earlier results, and the other programs run" {
    bench 0 --json="$area/results"
    echo earlier >"$area/results/host.json"
    sed -i 's/exit \$FAKE_STATUS/exit 3/' "$build/bin/host_bench"
    : >"$FAKE_CALLS"
    again 1 --json="$area/results"
    says "tavro: host: the benchmark failed"
    [ "$(cat "$area/results/host.json")" = earlier ] || show "results of a failed program"
    called 'ImportBench --benchmark_out'
}

@test "a program that cannot list its benchmarks is named, with its message" {
    bench_programs
    printf '#!/bin/sh\necho "no library" >&2\nexit 127\n' >"$build/bin/native_bench"
    again 1
    says "tavro: cannot list the benchmarks of native: no library"
}

@test "killing the script ends the running program and removes temporary files" {
    bench_programs
    cat >"$build/bin/native_bench" <<'EOF'
#!/bin/bash
case " $* " in *" --benchmark_list_tests "*) echo native/one; exit ;; esac
trap 'echo "native_bench was ended" >>"$FAKE_CALLS"; exit 1' TERM
: >"$FAKE_CALLS.running"
while [ -e "$FAKE_CALLS" ]; do /bin/sleep 0.05; done # until the test ends
EOF
    mkdir "$area/tmp"
    TMPDIR=$area/tmp "$area/bench/run.sh" "$build" --tree="$area/tables" -- java tool >/dev/null 2>&1 3>&- &
    until_true test -e "$FAKE_CALLS.running"
    kill -TERM $!
    until_true grep -q '^native_bench was ended' "$FAKE_CALLS"
    until_true rmdir "$area/tmp"
}
