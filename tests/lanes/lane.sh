#!/usr/bin/env bash
# Builds one preset and runs its quick tests: lane.sh PRESET
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=$1
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -- --quiet
select=()
# ThreadSanitizer and a Java virtual machine do not get along without suppressions of the latter: that
# lane runs the C++ tests. Style and layout do not depend on the build.
[ "$preset" != tsan ] || select=(-R '^(unit|host)\.')
ctest --test-dir "build/$preset" -L quick -E '^(style|layout|library)\.' "${select[@]}" --output-on-failure -j 2
