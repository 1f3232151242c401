#!/usr/bin/env bash
# Checks that a generated file is what its command prints: up_to_date.sh FILE COMMAND...
set -euo pipefail
file=$1
shift
made=$("$@") || {
    echo "$file cannot be made: $* failed"
    exit 1
}
diff "$file" <(printf '%s\n' "$made") || {
    echo "$file (<) is out of date; make it anew (>): $* >$file"
    exit 1
}
echo "$file is up to date"
