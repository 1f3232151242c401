#!/usr/bin/env bash
# Compiles device/sepolicy with a minimal policy around it, and checks its contexts: check.sh SEPOLICY_FOLDER OUTPUT_FOLDER
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
rules=$1 folder=$2
mkdir -p "$folder"

fail() {
    printf '%s\n' "$@"
    exit 1
}

sed "/^#RULES/{r $rules/tavro_channellist.te
d}" "$here/base.conf" >"$folder/policy.conf"
checkpolicy -M -c 30 -o "$folder/policy" "$folder/policy.conf" >"$folder/log" 2>&1 ||
    fail "checkpolicy refuses $rules/tavro_channellist.te:" "$(cat "$folder/log")"

# Each line of the contexts: what it labels, the label, and for properties how they are compared.
known=$(sed -nE 's/^type ([a-z_]+).*/\1/p' "$folder/policy.conf")
types() { # FILE PATTERN: the type is the last group of the pattern
    local line
    grep -vE '^(#|$)' "$1" | while IFS= read -r line; do
        [[ $line =~ $2 ]] || fail "$1: not a line of this file: $line"
        grep -qxF "${BASH_REMATCH[-1]}" <<<"$known" || fail "$1: there is no type ${BASH_REMATCH[-1]}: $line"
    done
}
types "$rules/file_contexts" '^/[^ ]+ +u:object_r:([a-z_]+):s0$'
types "$rules/property_contexts" '^(persist\.)?vendor\.[a-z.]+ +u:object_r:([a-z_]+):s0 exact string$'
