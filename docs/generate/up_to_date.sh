#!/usr/bin/env bash
# Checks that a generated file is what its command prints: up_to_date.sh FILE COMMAND...
set -euo pipefail
file=$1
shift
diff "$file" <("$@") || {
    echo "$file (<) is out of date; make it anew (>): $* >$file"
    exit 1
}
echo "$file is up to date"
