#!/usr/bin/env bash
# Writes docs/platform-functions.md from the headers that the library is built against:
# platform-functions.sh >docs/platform-functions.md
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."

# C has no aliases of C++: each stands for the type behind it.
aliases=$(sed -nE 's/^using (\w+) = std::(\w+);$/s,\\b\1\\b,\2,g/p' include/middleware/types.h)

# functions HEADER NAMES: the prototypes of functions whose names match NAMES.
functions() {
    c++ -std=c++17 -E -P -Iinclude -Iinclude/platform -include "$1" -x c++ /dev/null |
        tr -s '\n ' ' ' | tr ';{}' '\n' | sed -E 's/(std|tavro):://g; s/__attribute__.*//; s,(\w) \(,\1(,' |
        grep -E "^ *\w+ ($2)\w*\(" | sed -E 's/^ *//; s/ *$/;/' | sed -E "$aliases" |
        clang-format-14 --style='{BasedOnStyle: LLVM, ColumnLimit: 100, PointerAlignment: Left}'
}

cat <<'END'
# Functions that the platform supplies

Made from `include/middleware/` and `include/platform/` by `docs/generate/platform-functions.sh`. The library leaves
exactly these functions undefined; the loader binds them, with C linkage, from the libraries that each
heading names. What a function does stands beside its declaration in the header.
END

# library NAME HEADER NAMES [HEADER NAMES]...
library() {
    printf '\n## %s\n' "$1"
    shift
    while [ $# -gt 0 ]; do
        printf '\n`%s`\n\n```c\n' "$1"
        functions "$1" "$2"
        printf '```\n'
        shift 2
    done
}

library libvelotra_tv_services.so include/middleware/svl.h x_svl_ include/middleware/tsl.h x_tsl_ \
    include/middleware/nwl.h x_nwl_ include/middleware/satl.h x_satl_
library libvelotra_tv_svl_builder.so include/middleware/channel_id.h x_sb_
library libvelotra_tv_basic.so include/middleware/files.h 'fs_raw_|x_fm_'
library liblog.so include/platform/android/log.h __android_log_
library libcutils.so include/platform/cutils/properties.h property_
