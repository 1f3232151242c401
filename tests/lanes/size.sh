#!/usr/bin/env bash
# Checks that a library has no more than so many bytes once it is stripped: size.sh STRIP LIBRARY BYTES
# A TV's flash is small. Raise the limit only for something that is worth it.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" -o "$work/stripped" "$2"
bytes=$(stat -c %s "$work/stripped")
echo "$2 has $bytes bytes stripped; $3 are allowed"
[ "$bytes" -le "$3" ]
