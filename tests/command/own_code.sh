#!/usr/bin/env bash
# Runs the commands of documents about ./tavro run, with ./tavro itself over a build that is there already.
#
# A clone of links stands in for this one, with the marks of a finished build: otherwise ./tavro would build, and wait for
# the command that runs the tests.
#
# Usage: own_code.sh BUILD_FOLDER DOCUMENT...   (BUILD_FOLDER/host is the build)
set -euo pipefail
build=$(readlink -f "$1")
clone=$(readlink -f "$(dirname "$0")/../..")
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/java/src" "$work/tests" "$work/build/host"
cp "$clone/tavro" "$work"
for path in scripts $(sed -n '/^tool_sources=(/,/)$/p' "$clone/tavro" | tr '()' '  ' | sed 's/tool_sources=//') tests/scripted; do
    ln -s "$clone/$path" "$work/$path"
done
ln -s "$build/host/lib" "$work/build/host/lib"
for stamp in tool_built scripted_built; do
    echo "$work" >"$work/build/host/.$stamp"
done

status=0
for document in "$@"; do
    TOUR_FILES=examples "$clone/tests/command/tour.sh" "$clone/$document" "$build" "$work/tavro" || status=1
done
exit $status
