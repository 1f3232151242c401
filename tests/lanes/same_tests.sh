#!/usr/bin/env bash
# Compares which tests passed in two builds, after both have run them: same_tests.sh BUILD BUILD. Prints one line
# with the counts and fails unless every test of C++ and Java that passed in one passed in the other.
set -euo pipefail

# The tests that passed, one a line: "C++ SUITE.TEST", "Java CLASS.METHOD". Of the outputs that CTest keeps, a
# GoogleTest program names its tests itself and JUnit draws a tree; those of jvm.checked ran in other entries too.
passed() {
    local log=$1/Testing/Temporary/LastTest.log
    [ -f "$log" ] || {
        echo "there is no $log; run the tests of that build" >&2
        exit 1
    }
    awk '
        /^[0-9]+\/[0-9]+ Testing: / { entry = $3; class = "" }
        entry ~ /^(unit|host)\./ && sub(/^\[       OK \] /, "") { sub(/ \([0-9]+ ms\).*/, ""); print "C++ " $0 }
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
