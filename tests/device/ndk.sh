#!/usr/bin/env bash
# Builds the library and tavro-conform like an NDK and checks what a device's loader will see: ndk.sh FOLDER
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(cd "$here/../.." && pwd)
folder=$1
build=$folder/build
library=$build/lib/libvelotra_tavro_channellist.so
program=$build/bin/tavro-conform
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

# Without optimization it compiles in half the time, and the loader sees the same.
configure() {
    cmake -S "$root" -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O0 "${@:2}" >"$log" 2>&1
}
same() { # WHAT EXPECTED FOUND
    diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") || fail "unexpected $1: found (>), expected (<)"
}

# build_and_check LIBRARIES: builds with TAVRO_PLATFORM_LIBRARIES set to LIBRARIES, which may be empty.
build_and_check() {
    local toolchain=$here/android.toolchain.cmake
    configure "$build" -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DANDROID_ABI=armeabi-v7a -DTAVRO_PLATFORM_LIBRARIES="$1" &&
        cmake --build "$build" -j 2 >"$log" 2>&1 || fail "$(tail -n 60 "$log")"
    local dynamic symbols
    dynamic=$(readelf -dW "$library")
    symbols=$(nm -D "$library")
    same "needed libraries" \
        "libcutils.so liblog.so libvelotra_tv_basic.so libvelotra_tv_services.so libvelotra_tv_svl_builder.so" \
        "$(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic" | sort | paste -sd' ')"
    same "library name" libvelotra_tavro_channellist.so \
        "$(sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p' <<<"$dynamic")"
    same "exported symbols" JNI_OnLoad "$(awk '$2 != "U" {print $3}' <<<"$symbols")"
    same "undefined platform functions" "$(sort "$root/include/platform/symbols.txt")" \
        "$(awk '$1 == "U" {print $2}' <<<"$symbols" | grep -E '^(x_|fs_|__android_|property_)' | sort)"
    # The program finds the platform when it runs; it must start without it.
    same "libraries that tavro-conform needs" "" "$(readelf -dW "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')"
    same "platform functions that tavro-conform is linked to" "" \
        "$(nm -D "$program" | awk '$1 == "U" {print $2}' | grep -E '^(x_|fs_|__android_|property_)' || true)"
}

build_and_check ""
# Again with libraries given like in a device tree; copies of the stubs in link/ are enough.
rm -rf "$folder/given"
cp -r "$build/link" "$folder/given"
build_and_check "$(printf '%s;' "$folder"/given/*.so)"

# The code must be 32-bit ARM with soft-float calls, like the Android ABI.
for file in "$library" "$program"; do
    header=$(readelf -hW "$file")
    grep -q 'Class: *ELF32' <<<"$header" && grep -q 'Machine: *ARM' <<<"$header" || fail "$file is not 32-bit ARM:" "$header"
    ! readelf -AW "$file" | grep 'Tag_ABI_VFP_args' || fail "$file passes floating point numbers in VFP registers"
done

# A 64-bit configuration must be refused.
! configure "$folder/64" -DANDROID=ON || fail "a 64-bit device build was configured, but must be refused"
grep -q -e '-DANDROID_ABI=armeabi-v7a' "$log" || fail "the error for 64 bits does not name -DANDROID_ABI=armeabi-v7a:" "$(cat "$log")"

echo "built for armeabi-v7a: the library exports JNI_OnLoad and needs the five platform libraries, tavro-conform none"
