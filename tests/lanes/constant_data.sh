#!/usr/bin/env bash
# Checks that a library's data is constant and no code runs when it is loaded: constant_data.sh LIBRARY
# The library must not be stripped.
set -euo pipefail
library=$1
status=0
fail() {
    printf '%s\n' "$*"
    status=1
}

symbols=$(readelf -sW "$library")
sections=$(readelf -SW "$library" | sed -n 's/^ *\[ *\([0-9]*\)\] /\1 /p') # NUMBER NAME TYPE ADDRESS OFFSET SIZE …
section_name() { awk -v number="$1" '$1 == number {print $2}' <<<"$sections"; }

# The method tables contain addresses, so the loader relocates them once; afterwards their section must be read-only.
readelf -lW "$library" | grep -q GNU_RELRO || fail "the library has no GNU_RELRO segment: no section becomes read-only after relocation"
for table in kChannelListMethods kTransportStreamListMethods kNetworkListMethods kSatelliteListMethods; do
    number=$(awk -v end="${table}E\$" '$4 == "OBJECT" && $8 ~ end {print $7}' <<<"$symbols")
    [ -n "$number" ] || {
        fail "$table: no such symbol"
        continue
    }
    name=$(section_name "$number")
    case $name in
    .rodata | .rodata.* | .data.rel.ro | .data.rel.ro.*) ;;
    *) fail "$table: in the writable section $name" ;;
    esac
done

# Static initializers have one of these names.
constructors=$(nm -C "$library" | grep -E '_GLOBAL__(sub_)?I_|__cxx_global_var_init|__static_initialization_and_destruction' || true)
[ -z "$constructors" ] || fail "code runs at load time:"$'\n'"$constructors"

# .init_array may contain one address: the compiler's own frame_dummy, which has a symbol.
case $(readelf -hW "$library" | awk '$1 == "Class:" {print $2}') in
ELF64) address_bytes=8 ;;
ELF32) address_bytes=4 ;;
*) fail "$library is neither ELF64 nor ELF32" ;;
esac
read -r start bytes <<<"$(awk '$2 == ".init_array" {print $4, $6}' <<<"$sections")" || true
if [ -n "${bytes:-}" ]; then
    own=$(awk '$8 == "__frame_dummy_init_array_entry" {print $2}' <<<"$symbols")
    [ $((16#$bytes)) -eq "$address_bytes" ] && [ $((16#${own:-0})) -eq $((16#$start)) ] ||
        fail ".init_array has $((16#$bytes / address_bytes)) entries, but only frame_dummy is allowed"
fi
old=$(awk '$2 ~ /^\.(ctors|preinit_array)/ {print $2}' <<<"$sections")
[ -z "$old" ] || fail "the library has $old"

[ $status -ne 0 ] || echo "four method tables in read-only data; nothing runs at load time"
exit $status
