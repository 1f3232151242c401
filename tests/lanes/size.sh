#!/usr/bin/env bash
# Checks that a library's size after stripping is at most BYTES: size.sh STRIP LIBRARY BYTES
# A TV's flash is small. Raise the limit only with a good reason.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" -o "$work/stripped" "$2"
bytes=$(stat -c %s "$work/stripped")
echo "$2: $bytes bytes after stripping; the limit is $3"
[ "$bytes" -le "$3" ]
