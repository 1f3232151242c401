# tests/coverage/report.sh and run.sh with a library of two functions.

setup() {
    bats_require_minimum_version 1.5.0
    here=$BATS_TEST_DIRNAME
    cd "$BATS_TEST_TMPDIR"
    mkdir -p root/lib root/other objects
    cat >root/lib/price.cpp <<'END'
#include <stdexcept>
#include <string>
template <class Number>
Number price(Number pieces) {
    if (pieces < 0) {
        throw std::out_of_range(std::to_string(pieces));
    }
    return pieces;
}
int main(int count, char**) {
    try {
        price(count == 3 ? -1 : count);
        if (count > 1) price<short>(static_cast<short>(count == 4 ? -1 : 1));
    } catch (...) {
    }
}
END
    : >explained
    g++ --coverage -c "$PWD/root/lib/price.cpp" -o objects/price.o
    g++ --coverage objects/price.o -o program
}

# calls N...: runs the program with N - 1 arguments, for each N.
calls() {
    local number
    for number in "$@"; do ./program $(seq 2 "$number"); done
}

# report STATUS LEAST [FOLDER]: expects an exit code. The output is in $output.
report() {
    run "$here/report.sh" objects root explained "$2" "${3:-lib}"
    # shellcheck disable=SC2154
    [ "$status" = "$1" ] || show "exit code $status, not $1"
}
show() {
    printf '%s\n' "$*" "--- output:" "$output"
    return 1
}
prints() { [[ $output = *"$1"* ]] || show "not printed: $1"; }

@test "all lines and branches" {
    calls 1 2 3 4
    report 0 100
    [ "$output" = "library: 10 of 10 lines executed (100.0 %), 10 of 10 branches taken (100.0 %)" ] || show "other output"
}

@test "a branch that is not taken by one set of a template's arguments is missed" {
    calls 1 2 3
    report 1 50
    prints "line 5 of lib/price.cpp: missed and not explained:
lib/price.cpp: 1 not taken: if (pieces < 0) {"
    prints "lib/price.cpp: 1 not taken: if (count > 1)"
    prints "8 of 10 branches taken (80.0 %)"
}

@test "a line that is not executed is missed" {
    calls 1
    report 1 0
    prints "line 6 of lib/price.cpp: missed and not explained:
lib/price.cpp: 1 not executed: throw std::out_of_range(std::to_string(pieces));"
}

@test "what is explained is not reported" {
    calls 1 2 3
    cat >explained <<'END'
# A comment.
lib/price.cpp: 1 not taken: if (pieces < 0) {
lib/price.cpp: 1 not taken: if (count > 1) price<short>(static_cast<short>(count == 4 ? -1 : 1));
    Nobody asks for a negative short.
END
    report 0 80
    report 1 81
    prints "less than 81 % of the branches are taken"
}

@test "an explanation that is out of date is reported" {
    calls 1 2 3
    cat >explained <<'END'
lib/price.cpp: 2 not taken: if (pieces < 0) {
lib/price.cpp: 1 not taken: if (count > 1) price<short>(static_cast<short>(count == 4 ? -1 : 1));
lib/price.cpp: 1 not executed: return pieces;
    Nobody asks for a negative short.
END
    report 1 80
    prints "explained:1: the number is 2, but now it is:
lib/price.cpp: 1 not taken: if (pieces < 0) {"
    prints "explained:3: out of date, the tests do not miss this any more: lib/price.cpp: not executed: return pieces;"
}

@test "an explanation without a reason or in another form is reported" {
    calls 1 2 3 4
    printf '%s\n' 'lib/price.cpp: if (pieces < 0) {' 'lib/price.cpp: 1 not taken: if (pieces < 0) {' >explained
    report 1 100
    prints "explained:1: not an explanation; write FILE: N not taken: TEXT OF THE LINE"
    prints "explained:2: no reason is given"
}

@test "without counters or without sources there is no result" {
    report 1 100
    prints "no counters below"
    calls 1
    report 1 0 other
    prints "no line of the sources was counted"
}

@test "old counters are deleted before the tests run, and tests that fail are reported" {
    calls 3 4
    printf '#!/bin/sh\nexec ./program\n' >unit
    chmod +x unit
    run "$here/run.sh" objects ./unit ./program 2 -- "$here/report.sh" objects root explained 0 lib
    [ "$status" = 1 ] || show "exit code $status"
    prints "not executed: throw"
    [ "$(cat objects/figures.txt)" = "${lines[-1]}" ] || show "other figures"
    run "$here/run.sh" objects ./unit false -- true
    [ "$status" = 1 ] || show "exit code $status"
    prints "the tests failed: false"
    [ ! -e objects/figures.txt ]
}
