#!/usr/bin/env bash
# Runs the commands of a document in order, in an empty folder, and compares what they print with the document.
#
# In a block that begins with ```console, a line "$ COMMAND" is a command, and the lines up to the next one are its output
# and errors. A line that is … stands for any lines, and … at the end of a line for the rest of it.
#
# A block that begins with ```java is saved under the name of its public class. Files of the clone that TOUR_FILES names
# are in the folder.
#
# Usage: tour.sh DOCUMENT BUILD_FOLDER TOOL...   (TOOL is the command that ./tavro runs; BUILD_FOLDER/sources has the data)
set -uo pipefail
document=$(readlink -f "$1") build=$(readlink -f "$2") clone=$(readlink -f "$(dirname "$0")/../..")
shift 2
if ! grep -q '^\$ ' "$document"; then
    echo "$document has no commands"
    exit 1
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf '#!/bin/sh\nexec %s "$@"\n' "$*" >"$folder/tavro"
chmod 755 "$folder/tavro"
mkdir "$folder/build"
ln -s "$build/sources" "$build/host" "$folder/build"
[ -z "${TOUR_FILES:-}" ] || (cd "$clone" && cp -r --parents $TOUR_FILES "$folder") || exit 1
unset TAVRO_HOME COLUMNS
export HOME=$folder LC_ALL=C.UTF-8

# compare EXPECTED ACTUAL: fails at the first line that differs, and prints it.
compare() {
    awk -v any=… '
    function same(a, b) {
        return sub(/…$/, "", a) ? index(b, a) == 1 : a == b
    }
    FNR == NR { expected[++most] = $0; next }
    {
        if (expected[next_line + 1] == any) {
            skipping = 1
            next_line++
        }
        if (next_line < most && same(expected[next_line + 1], $0)) {
            next_line++
            skipping = 0
        } else if (!skipping) {
            print "    in the document: " (next_line < most ? expected[next_line + 1] : "(nothing more)")
            print "    printed:         " $0
            exit failed = 1
        }
    }
    END {
        if (!failed && expected[next_line + 1] == any) next_line++
        if (!failed && next_line < most) {
            print "    in the document, but not printed: " expected[next_line + 1]
            failed = 1
        }
        exit failed
    }' "$1" "$2"
}

# run LINE: runs the command, compares its output with the file "expected", and empties that file.
status=0 failures=0 number=0 command='' first=0
run() {
    [ -n "$command" ] || return 0
    (exit $status)
    eval "$command" >"$folder/.printed" 2>&1 </dev/null
    status=$?
    if ! difference=$(compare "$folder/.expected" "$folder/.printed"); then
        printf '%s:%d: %s\n%s\n' "$document" "$first" "$command" "$difference"
        failures=$((failures + 1))
    fi
    command=
}

cd "$folder" || exit 1
: >.expected
block=no
while IFS= read -r line <&3; do
    number=$((number + 1))
    case $block:$line in
    'no:```console') block=yes ;;
    'yes:```')
        run
        block=no
        ;;
    'yes:$ '*)
        run
        command=${line#'$ '} first=$number
        : >"$folder/.expected"
        ;;
    'yes:'*) printf '%s\n' "$line" >>"$folder/.expected" ;;
    'no:```java')
        block=java
        : >"$folder/.java"
        ;;
    'java:```')
        block=no
        cp "$folder/.java" "$folder/$(sed -nE 's/^public class ([A-Za-z]+) .*/\1/p' "$folder/.java").java"
        ;;
    'java:'*) printf '%s\n' "$line" >>"$folder/.java" ;;
    esac
done 3<"$document"
[ "$block" = no ] || { echo "$document: a block is not closed" && exit 1; }
[ $failures = 0 ]
