# tests/mutants/mutate.sh with a library of one source and one header.

setup() {
    bats_require_minimum_version 1.5.0
    here=$BATS_TEST_DIRNAME
    cd "$BATS_TEST_TMPDIR"
    mkdir -p root/lib
    cat >root/lib/price.h <<'END'
#pragma once
constexpr int kLimit = 10;
int price(int pieces);
END
    cat >root/lib/price.cpp <<'END'
#include "lib/price.h"
int price(int pieces) { // a comment: 1 + 1
    int single = 8;
    return pieces < kLimit ? pieces * single : 60 + pieces;
}
END
    cat >test.cpp <<'END'
#include "lib/price.h"
int main(int count, char**) {
    if (count > 1) return price(9) == 72 && price(10) == 70 ? 0 : 1;
    return price(2) == 16 && price(20) == 80 ? 0 : 1;
}
END
    cat >settings.sh <<'END'
root=$PWD/root
folders=(lib)
sources=(lib/price.cpp)
work=$PWD/work
equivalents=$PWD/equivalent.txt
compile() { g++ "-I$tree" -MMD -MF "$2.d" -c "$1" -o "$2"; }
first_tests() {
    g++ "-I$root" -o "$1/test" "${@:2}" "$root/../test.cpp" && "$1/test"
}
second_tests() { "$1/test" second; }
END
    : >equivalent.txt
}

# mutate STATUS WORD...: expects an exit code. The output is in $output and $stderr.
mutate() {
    run --separate-stderr "$here/mutate.sh" settings.sh "${@:2}"
    # shellcheck disable=SC2154
    [ "$status" = "$1" ] || show "exit code $status, not $1"
}
show() {
    printf '%s\n' "$*" "--- output:" "$output" "--- errors:" "$stderr"
    return 1
}
prints() { [[ $output = *"$1"* ]] || show "not printed: $1"; }
results() { cut -f 1,5- work/results | sort; }

@test "mutants that either tests notice are caught" {
    mutate 0
    [ "$output" = "4 mutants: 4 caught, 0 equivalent, 0 not noticed; 0 more do not compile" ] || show "other output"
    diff <(results) <(
        line='return pieces < kLimit ? pieces * single : 60 + pieces;'
        printf 'caught\t%s\t%s\n' "constexpr int kLimit = 10;" "constexpr int kLimit = 11;" \
            "$line" "${line/</<=}" "$line" "${line/60/61}" "$line" "${line/+/-}" |
            sort
    ) || show "other mutants"
}

@test "a mutant that no test notices is printed with its place" {
    sed -i 's/price(10) == 70/price(20) == 80/' test.cpp
    mutate 1
    prints "lib/price.cpp:4: no test notices
    return pieces < kLimit ? pieces * single : 60 + pieces;
    => return pieces <= kLimit ? pieces * single : 60 + pieces;"
    prints "lib/price.h:2: no test notices
    constexpr int kLimit = 10;
    => constexpr int kLimit = 11;"
    prints " 2 not noticed;"
}

@test "a mutant that is listed as equivalent is not reported" {
    sed -i 's/price(10) == 70/price(20) == 80/' test.cpp
    cat >equivalent.txt <<'END'
lib/price.h: constexpr int kLimit = 10;
    => constexpr int kLimit = 11;
    Nobody buys ten.

lib/price.cpp: return pieces < kLimit ? pieces * single : 60 + pieces;
    => return pieces <= kLimit ? pieces * single : 60 + pieces;
    Nobody buys ten.
END
    mutate 0
    prints " 2 equivalent, 0 not noticed;"
}

@test "an entry stands for one place, however often the file has its line" {
    sed -i 's/price(10) == 70/price(20) == 80/' test.cpp
    printf '%s\n' 'int again(int pieces) {' '    return pieces < kLimit ? 1 : 2;' '}' 'int more(int pieces) {' \
        '    return pieces < kLimit ? 1 : 2;' '}' >root/lib/price.cpp
    echo 'int price(int pieces) { return pieces < kLimit ? pieces * 8 : 60 + pieces; }' >>root/lib/price.cpp
    sed -i '1i#include "lib/price.h"' root/lib/price.cpp
    printf '%s\n' 'lib/price.cpp: return pieces < kLimit ? 1 : 2;' '    => return pieces <= kLimit ? 1 : 2;' '    No use.' >equivalent.txt
    mutate 1 lib/price.cpp
    [ "$(grep -c '=> return pieces <= kLimit ? 1 : 2;' <<<"$output")" = 1 ] || show "not one of the two"
    sed -i 's/.*<= .*/&\n&/' equivalent.txt
    mutate 1 lib/price.cpp
    [[ $output != *"=> return pieces <= kLimit ? 1 : 2;"* ]] || show "one of the two"
}

@test "an entry of the list that is out of date or has no reason is reported" {
    cat >equivalent.txt <<'END'
lib/price.h: constexpr int kLimit = 10;
    => constexpr int kLimit = 11;
    Nobody buys ten.
lib/price.h: int price(int pieces);
    => int price(int piece);
END
    mutate 1
    prints "equivalent.txt:2: out of date: there is no such mutant, or a test notices it"
    prints "equivalent.txt:5: out of date"
    prints "equivalent.txt:4: this entry has no reason"
}

@test "a mutant that does not compile is counted apart" {
    echo 'static_assert(kLimit == 10);' >>root/lib/price.cpp
    mutate 0
    prints "3 mutants: 3 caught, 0 equivalent, 0 not noticed; 1 more do not compile"
}

@test "a mutant with the same machine code is equivalent" {
    echo 'void unused(bool value = true);' >>root/lib/price.cpp
    mutate 0
    prints " 4 caught, 1 equivalent, 0 not noticed;"
}

@test "a sample of a seed is the same each time" {
    local i long # long enough for a list of mutants that does not fit into a pipe
    printf -v long '%01500d' 0
    for ((i = 0; i < 60; i++)); do echo "void unused${i}_$long(int value = $i);" >>root/lib/price.h; done
    mutate 0 --sample=3 --seed=1
    cp work/mutants first
    [ "$(wc -l <first)" = 3 ] || show "not three mutants"
    mutate 0 --seed=1 --sample=3
    cmp first work/mutants
    mutate 0 --seed=2 --sample=3
    ! cmp -s first work/mutants || show "another seed gave the same sample"
}

@test "only the files that are named are changed" {
    mutate 0 lib/price.h
    prints "1 mutants: 1 caught"
}

@test "tests that fail without a change end the run" {
    sed -i 's/== 16/== 15/' test.cpp
    mutate 1
    [[ $stderr = *"the tests fail without a change"* ]] || show "other message"
    [ -z "$output" ]
}

@test "a library that does not compile ends the run" {
    echo 'int' >>root/lib/price.cpp
    mutate 1
    [[ $stderr = *"the library does not compile without a change"* ]] || show "other message"
}

@test "an interrupted run leaves the sources alone, and the next one is complete" {
    cp -r root before
    sed -i 's|^first_tests() {|&\n    [ ! -e work/results ] \|\| { : >begun; while [ ! -e go ]; do sleep 0.05; done; }|' settings.sh
    "$here/mutate.sh" settings.sh >log 2>&1 &
    pid=$!
    until [ -e begun ] || [ $((++tries)) -gt 600 ]; do sleep 0.05; done
    [ -e begun ]
    kill "$pid"
    wait "$pid" || result=$?
    : >go
    [ "$result" = 130 ]
    diff -r before root
    mutate 0
    prints "4 mutants: 4 caught"
    diff -r before root
}
