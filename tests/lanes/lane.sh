#!/usr/bin/env bash
# Builds one preset with its tests and runs the quick ones: lane.sh PRESET. Exit 77: it was skipped, for a reason that it prints.
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=$1
if [ "$preset" = arm ]; then
    status=0
    cmake/armhf-root.sh >/dev/null || status=$?
    if [ $status = 3 ]; then
        echo "skipped: the 32-bit ARM packages cannot be had, for the reason above"
        exit 77
    fi
fi
cmake --preset "$preset-tests" >/dev/null
cmake --build --preset "$preset-tests" -- --quiet
select=()
# ThreadSanitizer and a Java virtual machine do not get along without suppressions of the latter: that
# lane runs the C++ tests. Style and layout do not depend on the build; which symbols a library leaves
# undefined does, on the compiler's own libraries and the sanitizers.
exclude='^(style|layout|library)\.'
[ "$preset" != arm ] || exclude='^(style|layout)\.'
# The Java side's own tests make no difference between two compilers of the library.
[ "$preset" != clang ] || exclude='^(style|layout|library|java)\.'
[ "$preset" != tsan ] || select=(-R '^(unit|host)\.')
ctest --test-dir "build/$preset" -L quick -E "$exclude" "${select[@]}" --output-on-failure -j 2
