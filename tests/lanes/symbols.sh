#!/usr/bin/env bash
# Checks a library's exported symbols and undefined platform functions: symbols.sh LIBRARY LIST
set -euo pipefail
library=$1
list=$2

exported=$(nm -D --defined-only "$library" | awk '{print $3}')
if [ "$exported" != JNI_OnLoad ]; then
    printf 'the library must export only JNI_OnLoad, but exports:\n%s\n' "$exported"
    exit 1
fi

# The platform's functions are the undefined symbols that remain without those of the C and C++ libraries (which have
# symbol versions, except libc++'s) and of the sanitizers.
undefined=$(nm -D --undefined-only "$library" | awk '$1 == "U" {print $2}' |
    grep -vE '@(GLIBC|GLIBCXX|CXXABI|CXXABI_ARM|GCC)_[0-9.]+$' | grep -vE '^(_Z|__cxa_|__gxx_|__asan|__ubsan|__tsan)' | sort)
if ! diff <(sort "$list") <(printf '%s\n' "$undefined"); then
    echo "the library's undefined symbols (>) differ from the platform's functions (<)"
    exit 1
fi
echo "exports JNI_OnLoad; leaves $(wc -l <"$list") platform functions undefined"
