#!/usr/bin/env bash
# Compares the results of tavro-conform in two builds: same_checks.sh BUILD BUILD (CMake build folders). The second has run
# conform.stand-ins; the checks that it ran must have the same results in the first.
set -euo pipefail
cd "$(dirname "$0")/../.."
log=$2/Testing/Temporary/LastTest.log
[ -f "$log" ] || {
    echo "skipped: no tests were run in $2"
    exit 77
}

results() { sed -nE 's/^((not )?ok) [0-9]+ - /\1 /p'; }

second=$(awk '/^[0-9]+\/[0-9]+ Testing: / { entry = $3 } entry == "conform.stand-ins"' "$log" | results)
mapfile -t filters < <(sed -E 's/^(not )?ok ([^ ]+).*/--filter=\2/' <<<"$second")
[ -n "$second" ] || {
    echo "$log has no results of conform.stand-ins"
    exit 1
}
first=$(TAVRO_LOG_FILE=/dev/null cmake/fresh-home.sh "$1/homes/same-checks" "$1/bin/tavro-conform" "${filters[@]}" | results) || true
[ "$first" = "$second" ] || {
    echo "results of checks in $1 (<) and $2 (>):"
    diff <(echo "$first") <(echo "$second") | grep '^[<>]'
    exit 1
}
echo "the same results of ${#filters[@]} checks in both builds"
