#!/usr/bin/env bash
# Compares which tests passed in two builds, after both have run: same_tests.sh BUILD BUILD. Prints one line with the
# counts. Fails unless the same C++ and Java tests passed in both.
set -euo pipefail

# Prints the tests that passed, one per line: "C++ SUITE.TEST" or "Java CLASS.METHOD". They are taken from the output of
# GoogleTest and JUnit in CTest's log. Left out are jvm.checked, whose tests also run in other entries, and tests with
# thousands of runs, which only the plain build has: host.Memory and jvm.FailingCallsTest.
passed() {
    local log=$1/Testing/Temporary/LastTest.log
    [ -f "$log" ] || {
        echo "$log not found; run the tests of that build first" >&2
        exit 1
    }
    awk '
        /^[0-9]+\/[0-9]+ Testing: / { entry = $3; class = "" }
        entry ~ /^(host\.Memory|jvm\.FailingCallsTest)$/ { next }
        entry ~ /^(unit|host|layout)\./ && sub(/^\[       OK \] /, "") { sub(/ \([0-9]+ ms\).*/, ""); print "C++ " $0 }
        entry ~ /^(java|jvm)\./ && /^[| ] [+'"'"']-- / { class = $3 }
        entry ~ /^(java|jvm)\./ && /^[| ] [| ] .*-- .* \[OK\]$/ {
            sub(/^.*-- /, ""); sub(/( [0-9]+ ms)? \[OK\]$/, ""); print "Java " class "." $0
        }
    ' "$log" | sort
}

first=$(passed "$1")
second=$(passed "$2")
count() { grep -c "^$1 " || true; }
summary="C++ $(count C++ <<<"$first") and $(count C++ <<<"$second"), Java $(count Java <<<"$first") and $(count Java <<<"$second")"
if [ -n "$first" ] && [ "$first" = "$second" ]; then
    echo "Passed on this machine and on 32-bit ARM: $summary: equal"
else
    echo "Passed on this machine and on 32-bit ARM: $summary: DIFFERENT; only here (<), only there (>):"
    diff <(printf '%s\n' "$first") <(printf '%s\n' "$second") | grep '^[<>]' | head -n 40
    exit 1
fi
