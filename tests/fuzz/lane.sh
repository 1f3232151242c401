#!/usr/bin/env bash
# Builds the fuzz targets and runs each a fixed number of times with a fixed seed: lane.sh [TARGET...].
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset fuzz-tests >/dev/null
cmake --build --preset fuzz-tests -j "$(nproc)" -- --quiet
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

run() { # TARGET RUNS
    local start=$SECONDS
    if tests/fuzz/fuzz.sh "$1" "$scratch/$1" "-runs=$2" -seed=1 >"$scratch/output" 2>&1; then
        echo "$1: $(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/output") runs, $((SECONDS - start)) s"
    else
        cat "$scratch/output"
        exit 1
    fi
}

run identifier 200000
run to_record 15000
run to_java 15000
run natives 1500
run natives_scripted 1000
run list_file 1500
run properties 15000
run importers 20000
