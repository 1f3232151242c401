# Support for tests of tavro-conform. BUILD names the build folder.

setup() {
    bats_require_minimum_version 1.5.0
    area=$BATS_TEST_TMPDIR
    program=$BUILD/bin/tavro-conform
    export TAVRO_HOME=$area/home TMPDIR=$area
    unset TAVRO_FAULT TAVRO_FAULT_FIFO
}

# conform OPTION...: runs the program; `output` has its standard output, `stderr` its standard error.
conform() { run --separate-stderr "$program" "$@"; }

# faulty FAULT OPTION...: the same with a middleware that misbehaves.
faulty() { TAVRO_FAULT=$1 LD_PRELOAD=$BUILD/lib/libtavro_faulty.so run --separate-stderr "$program" "${@:2}"; }

# prints LINE...: fails unless standard output is these lines.
prints() { diff <(printf '%s\n' "$@") <(printf '%s\n' "$output"); }

# complains LINE...: the same for standard error.
complains() { diff <(printf '%s\n' "$@") <(printf '%s\n' "$stderr"); }
