#!/usr/bin/env bash
# Checks that every test has a name of at most 60 characters: test_names.sh [ROOT]
#
# Covers the C++ tests in tests/unit and tests/host and the Java tests in java and tests/jvm.
set -euo pipefail
root=$(readlink -f "${1:-$(dirname "$(readlink -f "$0")")/../..}")
longest=60

# Lines "FILE NAME", one per test.
names() {
    find tests/unit tests/host -name '*.cpp' -print0 |
        xargs -0r perl -0777 -ne 'print "$ARGV $1\n" while /^\s*(?:TYPED_)?TEST(?:_F|_P)?\(\s*\w+,\s*(\w+)/mg'
    find java tests/jvm -name '*.java' -print0 |
        xargs -0r perl -0777 -ne 'print "$ARGV $1\n" while /\@(?:Parameterized|Repeated)?Test\b.*?\bvoid\s+(\w+)/gs'
}

cd "$root"
all=$(names)
[ -n "$all" ] || {
    echo "no tests found below $root"
    exit 1
}
awk -v longest=$longest '
    length($2) > longest {
        printf "%s: %s has %d characters: describe the rule in at most %d\n", $1, $2, length($2), longest
        wrong = 1
    }
    END {
        if (wrong) exit 1
        printf "%d test names, none longer than %d characters\n", NR, longest
    }' <<<"$all"
