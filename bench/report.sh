#!/usr/bin/env bash
# Prints the size, symbols and relocations of a build's library, and the cost of loading it and registering its natives:
# report.sh BUILD
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$here/..
lanes=$root/tests/lanes
build=$(readlink -f "$1")
library=$build/lib/libvelotra_tavro_channellist.so
machine=$(LC_ALL=C readelf -h "$library" | sed -n 's/ *Machine: *//p')
case $machine in
ARM) run=(qemu-arm -L "$("$root/cmake/armhf-root.sh")") strip=arm-linux-gnueabihf-strip ;;
*X86-64) run=(qemu-x86_64) strip=strip ;;
*)
    echo "report: unsupported machine $machine; only x86-64 and ARM are supported" >&2
    exit 1
    ;;
esac

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the number of instructions that a process executes: the emulator writes one trace line for each.
mkfifo "$work/trace"
instructions() {
    grep -c '^Trace' "$work/trace" >"$work/count" &
    "${run[@]}" -singlestep -d exec,nochain -D "$work/trace" "$build/bin/load_probe" "$1" >"$work/out"
    wait
    cat "$work/count"
}

"$strip" -o "$work/stripped.so" "$library"
printf '%s library\n' "$machine"
printf '  stripped          %9d bytes\n' "$(stat -c %s "$work/stripped.so")"
size -A "$library" | awk '{section[$1] = $2} END {
    printf "  code              %9d bytes (.text)\n", section[".text"]
    printf "  data              %9d bytes (.data.rel.ro, .data, .bss, .got)\n",
        section[".data.rel.ro"] + section[".data"] + section[".bss"] + section[".got"] }'
LC_ALL=C readelf -rW "$library" | awk '
    $3 ~ /^R_/ && $3 ~ /_RELATIVE$/ { relative++; next }
    $3 ~ /^R_/ { symbolic++ }
    END { printf "  relocations       %9d relative, %d by symbol\n", relative, symbolic }'
symbols=$("$lanes/symbols.sh" "$library" "$root/include/platform/symbols.txt") || {
    printf '%s\n' "$symbols" >&2
    exit 1
}
printf '  symbols           %s\n' "$symbols"

empty=$(instructions "$build/lib/libempty_library.so")
real=$(instructions "$library")
printf '  load and register %9d instructions more than the %d of an empty library (%s)\n' \
    $((real - empty)) "$empty" "$(cat "$work/out")"
