#!/usr/bin/env bash
# Renews docs/performance.md and its plots from results of ./tavro bench: performance.sh [RESULTS [TARGET]]
#
# RESULTS is the folder that --json named, docs/performance without one; TARGET the folder for the document and its plots,
# docs without one. The jar of the benchmarks must have been built, as ./tavro bench does.
set -euo pipefail
root=$(dirname "$(readlink -f "$0")")/../..
results=$(realpath "${1:-$root/docs/performance}")
target=$(realpath "${2:-$root/docs}")
exec "$root/bench/java.sh" "$root/build/host" Document "$results" "$root/docs/performance.md" "$target"
