#!/usr/bin/env bash
# Checks what a built library exports and what it leaves to the platform: symbols.sh LIBRARY LIST
set -euo pipefail
library=$1
list=$2

exported=$(nm -D --defined-only "$library" | awk '{print $3}')
if [ "$exported" != JNI_OnLoad ]; then
    printf 'exported symbols should be JNI_OnLoad alone, but are:\n%s\n' "$exported"
    exit 1
fi

# Of what is undefined, the platform's functions are those that no C or C++ library of this compiler has;
# those name their version, but for libc++'s and the sanitizers' own.
undefined=$(nm -D --undefined-only "$library" | awk '$1 == "U" {print $2}' |
    grep -vE '@(GLIBC|GLIBCXX|CXXABI|CXXABI_ARM|GCC)_[0-9.]+$' | grep -vE '^(_Z|__cxa_|__gxx_|__asan|__ubsan|__tsan)' | sort)
if ! diff <(sort "$list") <(printf '%s\n' "$undefined"); then
    echo "the library's undefined symbols (>) differ from the platform's functions (<)"
    exit 1
fi
echo "exports JNI_OnLoad; leaves $(wc -l <"$list") platform functions undefined"
