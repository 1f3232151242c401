#!/usr/bin/env bash
# Builds the library as an NDK would, and checks what a device's loader will see: ndk.sh FOLDER
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(cd "$here/../.." && pwd)
folder=$1
build=$folder/build
library=$build/lib/libvelotra_tavro_channellist.so
log=$folder/log

fail() {
    printf '%s\n' "$@"
    exit 1
}

for needed in lld-14 android-libnativehelper-dev android-liblog-dev; do
    dpkg-query -W -f='${db:Status-Status}' "$needed" 2>/dev/null | grep -qx installed || {
        echo "skipped: the Debian package $needed is not installed; ./tavro setup installs it"
        exit 77
    }
done
mkdir -p "$folder"

configure() { cmake -S "$root" -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Release "${@:2}" >"$log" 2>&1; }
same() { # WHAT EXPECTED FOUND
    diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") || fail "$1 (>) differ from what they should be (<)"
}

# Builds with the device's libraries named or, with "", without.
build_and_check() {
    local toolchain=$here/android.toolchain.cmake
    configure "$build" -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DANDROID_ABI=armeabi-v7a -DTAVRO_PLATFORM_LIBRARIES="$1" &&
        cmake --build "$build" -j 2 >"$log" 2>&1 || fail "$(tail -n 60 "$log")"
    local dynamic symbols
    dynamic=$(readelf -dW "$library")
    symbols=$(nm -D "$library")
    same "the libraries needed" \
        "libcutils.so liblog.so libvelotra_tv_basic.so libvelotra_tv_services.so libvelotra_tv_svl_builder.so" \
        "$(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic" | sort | paste -sd' ')"
    same "the library's own names" libvelotra_tavro_channellist.so \
        "$(sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p' <<<"$dynamic")"
    same "the exported symbols" JNI_OnLoad "$(awk '$2 != "U" {print $3}' <<<"$symbols")"
    same "the platform's functions left undefined" "$(sort "$root/include/platform/symbols.txt")" \
        "$(awk '$1 == "U" {print $2}' <<<"$symbols" | grep -E '^(x_|fs_|__android_|property_)' | sort)"
}

build_and_check ""
# The same with libraries given as a device tree would: those of link/ will do.
rm -rf "$folder/given"
cp -r "$build/link" "$folder/given"
build_and_check "$(printf '%s;' "$folder"/given/*.so)"

# 32-bit ARM code that passes floating point numbers as the Android ABI does, in integer registers.
header=$(readelf -hW "$library")
grep -q 'Class: *ELF32' <<<"$header" && grep -q 'Machine: *ARM' <<<"$header" || fail "not 32-bit ARM:" "$header"
! readelf -AW "$library" | grep 'Tag_ABI_VFP_args' || fail "floating point numbers pass in VFP registers"

# Nothing else than a 32-bit library can be made.
! configure "$folder/64" -DANDROID=ON || fail "a 64-bit device build was configured; it must be refused"
grep -q -e '-DANDROID_ABI=armeabi-v7a' "$log" || fail "the refusal of 64 bits does not help:" "$(cat "$log")"

echo "built for armeabi-v7a: exports JNI_OnLoad, needs the five platform libraries, soft-float calls"
