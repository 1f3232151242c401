#!/usr/bin/env bash
# Builds a preset with its tests and runs the quick ones: lane.sh PRESET. Exits with 77 if skipped, and prints the reason.
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=$1
if [ "$preset" = arm ]; then
    status=0
    cmake/armhf-root.sh >/dev/null || status=$?
    if [ $status = 3 ]; then
        echo "skipped: cannot get the 32-bit ARM packages; the reason is above"
        exit 77
    fi
fi
jars=
[ ! -f build/host/lib/tavro-jvm-tests.jar ] || jars=$PWD/build/host
cmake --preset "$preset-tests" -DTAVRO_JARS_OF="$jars" >/dev/null
targets=() select=()
# ThreadSanitizer reports races inside the Java virtual machine, so that lane has only the C++ tests.
if [ "$preset" = tsan ]; then
    targets=(--target unit_tests host_tests host_script_tests)
    select=(-R '^(unit|host)\.')
fi
cmake --build --preset "$preset-tests" "${targets[@]}" -j "$(nproc)" -- --quiet
# Style and layout do not depend on the build. Undefined symbols do: they depend on the compiler's libraries and the
# sanitizers.
exclude='^(style|layout|library)\.'
[ "$preset" != arm ] || exclude='^(style\.|layout\.(arm32|refused)$)'
# The Java side's own tests do not depend on the compiler of the library.
[ "$preset" != clang ] || exclude='^(style|layout|library|java)\.'
ctest --test-dir "build/$preset" -L quick -E "$exclude" "${select[@]}" --output-on-failure -j "$(nproc)"
