#!/usr/bin/env bash
# Writes docs/record-layouts.md from the headers that declare the records:
# record-layouts.sh >docs/record-layouts.md
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."

cat <<'END'
# Record layouts

Made from `include/middleware/` by `docs/generate/record-layouts.sh`. Offsets and sizes are in bytes, numbers are
little-endian. Bytes that no row names belong to the middleware: the library zeroes them in a new record and
otherwise leaves them as they are.
END

for header in svl tsl nwl satl; do
    awk '
    BEGIN {
        size["std::uint8_t"] = size["char"] = 1
        size["std::uint16_t"] = size["std::int16_t"] = 2
        size["std::uint32_t"] = size["std::int32_t"] = 4
    }
    function row(name, type, bytes, meaning) {
        if (name !~ /_reserved_/) {
            gsub(/std::/, "", type)
            rows = rows sprintf("| %d | %d | `%s` | `%s` | %s |\n", offset, bytes, name, type, meaning)
        }
    }
    /^\/\/ / { comment = comment (comment == "" ? "" : " ") substr($0, 4); next }
    /^struct .* \{$/ {
        structure = $2; about = comment; rows = ""; offset = 0; next
    }
    structure != "" && /^    union \{$/ { in_union = 1; largest = 0; next }
    structure != "" && /^    \} / {
        in_union = 0
        offset += largest
        next
    }
    structure != "" && /;/ && !/^\}/ {
        line = $0
        meaning = ""
        if (at = index(line, "//")) {
            meaning = substr(line, at + 3)
            line = substr(line, 1, at - 1)
        }
        gsub(/^ +|; *$/, "", line)
        type = line; sub(/ .*/, "", type)
        name = line; sub(/^[^ ]* /, "", name)
        count = 1
        if (name ~ /\[/) {
            count = name
            gsub(/.*\[|\].*/, "", count)
        }
        if (!(type in size)) {
            print FILENAME ": no size is known of " type > "/dev/stderr"
            exit 1
        }
        bytes = size[type] * count
        row(name, type, bytes, meaning)
        if (in_union) largest = bytes > largest ? bytes : largest
        else offset += bytes
        next
    }
    structure != "" && /^\};/ {
        size[structure] = offset
        printf "\n## `%s`, %d bytes\n\n%s\n\n| Offset | Size | Field | Type | Meaning |\n|---|---|---|---|---|\n%s",
            structure, offset, about, rows
        structure = ""
    }
    /^TAVRO_SIZE/ {
        split($0, asserted, /[(, )]+/)
        if (size[asserted[2]] != asserted[3]) {
            printf "%s: %s comes out as %d bytes, not %d\n", FILENAME, asserted[2], size[asserted[2]], asserted[3] > "/dev/stderr"
            exit 1
        }
    }
    { comment = "" }' "include/middleware/$header.h"
done
