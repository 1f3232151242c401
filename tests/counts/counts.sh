#!/usr/bin/env bash
# Counts the instructions of the hot paths with callgrind and compares them with a baseline:
# counts.sh PROGRAM LIBRARY BASELINE BUILD [--renew]. BUILD names the compiler and the processor. If the baseline is for
# another BUILD, nothing is compared (exit 77). An increase of more than 3 % fails. After a decrease of more than 3 % the
# script asks for a new baseline.
set -euo pipefail
program=$1
library=$(readlink -f "$2")
baseline=$3
build=$4
mode=${5:-}
tolerance=3
renewal='cmake --preset host-tests && cmake --build --preset host-tests --target renew_instruction_counts'

baseline_build=$(sed -n 's/^# build: //p' "$baseline" 2>/dev/null) || true
if [ "$mode" != --renew ] && [ "$build" != "$baseline_build" ]; then
    echo "skipped: the baseline is for '$baseline_build', this build is '$build'; instruction counts of different" \
        "compilers and processors cannot be compared"
    exit 77
fi
if ! command -v valgrind >/dev/null; then
    echo "valgrind is missing; install the Debian package valgrind" >&2
    exit 1
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Make the C library use the same string functions on every processor.
if ! GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX_Fast_Unaligned_Load,-AVX2,-AVX512F,-AVX512VL,-ERMS,-FSRM,-SSE4_2,-SSSE3 \
    LD_BIND_NOW=1 valgrind --quiet --tool=callgrind --compress-strings=no --compress-pos=no \
    --callgrind-out-file="$folder/out" "$program" >"$folder/allocations" 2>"$folder/log"; then
    cat "$folder/log" >&2
    echo "$program failed under valgrind; the reason is above" >&2
    exit 1
fi

# Sums up the instructions of a dump for the library's functions and for the C and C++ library functions that they
# call. The program, which contains the platform, the Java environment and the allocator, is not counted.
cost() { # DUMP
    awk -v library="$library" -v program="$(readlink -f "$program")" '
        sub(/^ob=/, "") { object = $0; next }
        sub(/^cob=/, "") { callee = $0; next }
        /^calls=/ { call = 1; next }
        /^[0-9]/ {
            if (object == library && !(call && (callee == "" || callee == library || callee == program))) sum += $2
            if (call) { call = 0; callee = "" }
        }
        END { print sum + 0 }' "$1"
}

# There is one dump per hot path; its trigger contains the path's name.
while read -r path _ allocations; do
    dump=$(grep -lx "desc: Trigger: Client Request: $path" "$folder"/out.*)
    instructions=$(cost "$dump")
    if [ "$instructions" = 0 ]; then
        echo "callgrind counted nothing for $path in $library" >&2
        exit 1
    fi
    echo "$path $instructions $allocations"
done <"$folder/allocations" >"$folder/counts"

if [ "$mode" = --renew ]; then
    {
        echo "# Instructions and allocations of each hot path, in the library and in the C and C++ library functions that it calls."
        echo "# The platform, the Java virtual machine and the allocator are not counted. To renew:"
        echo "#     $renewal"
        echo "# build: $build"
        cat "$folder/counts"
    } >"$folder/baseline"
    cp "$folder/baseline" "$baseline"
    cat "$baseline"
    exit 0
fi

# Compares both columns of every path. Exit code: 0 same, 1 more, 3 less.
status=0
awk -v tolerance=$tolerance '
    function compare(path, what, before, now) {
        change = before == now ? 0 : before == 0 ? 100 : 100 * (now - before) / before
        state = change > tolerance ? "MORE" : change < -tolerance ? "less" : "ok"
        seen[state] = 1
        printf "%-32s %-12s %9d %9d %+7.1f %%  %s\n", path, what, before, now, change, state
    }
    BEGIN { printf "%-32s %-12s %9s %9s\n", "path", "", "baseline", "now" }
    /^#/ { next }
    FNR == NR { instructions[$1] = $2; allocations[$1] = $3; next }
    !($1 in instructions) { print $1 ": not in the baseline"; seen["MORE"] = 1; next }
    {
        compare($1, "instructions", instructions[$1], $2)
        compare($1, "allocations", allocations[$1], $3)
        delete instructions[$1]
    }
    END {
        for (path in instructions) { print path ": in the baseline, but not counted"; seen["MORE"] = 1 }
        exit seen["MORE"] ? 1 : seen["less"] ? 3 : 0
    }' "$baseline" "$folder/counts" || status=$?
case $status in
0) exit 0 ;;
3) echo "Hot paths cost over $tolerance % less than in the baseline. Renew it, so that a later increase is detected:" ;;
*) echo "Hot paths cost over $tolerance % more than in the baseline. If that is intended, renew it:" ;;
esac
echo "    $renewal"
[ $status = 3 ]
