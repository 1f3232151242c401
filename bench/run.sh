#!/usr/bin/env bash
# Runs the benchmarks of a build: run.sh BUILD OPTION... -- TOOL...
#
# The options are those of ./tavro bench; --tree=DIR is required. TOOL is the command that starts the command-line tool.
# Each program gets an empty storage directory. With --json=DIR its results go to DIR/PROGRAM.json.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
build=$1
shift

json='' tree='' quick=no list=no filter=() rounds=() least_time=()
while [ "$1" != -- ]; do
    case $1 in
    --json=*) json=${1#*=} ;;
    --tree=*) tree=$(realpath "${1#*=}") ;;
    --quick) quick=yes ;;
    --benchmark_list_tests) list=yes ;;
    --benchmark_filter=*) filter=("$1") ;;
    --benchmark_repetitions=*) rounds=("$1") ;;
    --benchmark_min_time=*) least_time=("$1") ;;
    esac
    shift
done
shift
tool=("$@")

say() { printf '%s\n' "$*" >&2; }
fail() {
    say "tavro: $*"
    exit 1
}

programs=(native peers host import)

run() { # PROGRAM OPTION...
    local program=$1 short=()
    shift
    [ $quick = no ] || short=(--quick)
    rm -rf "${work:?}/home"
    mkdir "$work/home"
    export TAVRO_HOME=$work/home
    case $program in
    native) child "$build/bin/native_bench" "${short[@]}" "$@" ;;
    peers) child "$here/java.sh" "$build" PeerBench "${short[@]}" "$@" ;;
    host) child "$build/bin/host_bench" "$@" ;;
    import)
        child "$here/java.sh" "$build" ImportBench "${short[@]}" "$@" -- "$build/bin/import_floor" "${tool[@]}" import "$tree"
        ;;
    esac
}
child() { setpriv --pdeathsig TERM "$@"; } # is terminated when this script ends

measure() { # PROGRAM
    local options=()
    if [ "$1" = host ]; then
        if [ $quick = yes ]; then
            options=(--benchmark_min_time=0.01)
        else
            options=(--benchmark_repetitions=3 --benchmark_report_aggregates_only=true)
        fi
        options+=("${least_time[@]}")
    fi
    options+=("${filter[@]}" "${rounds[@]}") # the last one of the same name counts
    [ -z "$json" ] || options+=("--benchmark_out=$work/$1.json")
    run "$1" "${options[@]}"
}

[ -z "$json" ] || mkdir -p "$json" || fail "cannot create the folder '$json'; the reason is above"
[ -z "$json" ] || [ -w "$json" ] || fail "cannot write to the folder '$json'; choose another one with --json"
# Measure with default settings, such as a closed log gate, not with the user's.
unset TAVRO_PROPERTIES TAVRO_LOG_FILE TAVRO_LOCK_TIMEOUT_MS "${!TAVRO_PROP_@}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

chosen=()
for program in "${programs[@]}"; do
    names=$(run "$program" "${filter[@]}" --benchmark_list_tests 2>"$work/errors") ||
        fail "cannot list the benchmarks of $program: $(cat "$work/errors")"
    [ -n "$names" ] || continue
    chosen+=("$program")
    [ $list = no ] || printf '%s\n' "$names"
done
[ ${#chosen[@]} -gt 0 ] || fail "no benchmark matches '${filter[*]#*=}'; --benchmark_list_tests prints the names"
[ $list = no ] || exit 0

status=0 number=0
for program in "${chosen[@]}"; do
    say "Measuring: $program ($((++number)) of ${#chosen[@]}) …"
    if ! measure "$program"; then
        say "tavro: $program: the benchmark failed; the reason is above"
        status=1
    elif [ -n "$json" ]; then
        # Leave out the names of the machine and its files.
        sed '/^ *"host_name":/d; /^ *"executable":/d' "$work/$program.json" >"$json/$program.json"
    fi
done
exit $status
