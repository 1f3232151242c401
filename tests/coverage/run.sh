#!/usr/bin/env bash
# Runs the tests with counters, then reports what they executed: run.sh OBJECTS UNIT_TESTS JAVA... -- REPORT...
#
# OBJECTS contains the counters, JAVA... is the command for the Java tests, REPORT... the command for the report. The
# figures are also written to OBJECTS/figures.txt, from which ./tavro test prints them.
set -euo pipefail
objects=$1
unit_tests=$2
shift 2
java=()
while [ "$1" != -- ]; do
    java+=("$1")
    shift
done
shift

log=$objects/tests.log
run() {
    "$@" >"$log" 2>&1 && return 0
    tail -n 40 "$log"
    echo "the tests failed: $1"
    exit 1
}
find "$objects" -name '*.gcda' -delete
rm -f "$objects/figures.txt"
run "$unit_tests" --gtest_brief=1
run "${java[@]}"
status=0
"$@" | tee "$log" || status=1
tail -n 1 "$log" >"$objects/figures.txt"
exit $status
