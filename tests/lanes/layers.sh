#!/usr/bin/env bash
# Checks that includes point downwards: layers.sh [ROOT]
#
# A folder may include itself and the folders that its line names. The standard library, <jni.h> and the platform's own
# headers come in angle brackets and are free.
set -euo pipefail
root=$(readlink -f "${1:-$(dirname "$(readlink -f "$0")")/../..}")

layers='
include/platform:
include/middleware:
text:
jni/log:
channellist:     jni/log text middleware
jni/env:         jni/log text
jni/records:     jni/env jni/log text middleware
jni/bridges:     jni/records jni/env jni/log channellist text middleware
jni:             jni/bridges jni/records jni/env jni/log
'

# Lines "FILE FOLDER-OF-INCLUDED-FILE" of every quoted include.
includes() {
    (cd "$root" && grep -rnE '^ *# *include *"' include text channellist jni --include='*.h' --include='*.cpp') |
        sed -E 's/^([^:]*):[0-9]+: *# *include *"([^"]*)".*/\1 \2/' |
        awk '{ folder = $2; if (!sub("/[^/]*$", "", folder)) folder = "."; print $1, folder, $2 }'
}

wrong=0
while read -r file folder included; do
    own=${file%/*}
    line=$(grep "^$own:" <<<"$layers") || {
        echo "$own has no line in tests/lanes/layers.sh: say what it may include"
        exit 1
    }
    case " ${own#include/} ${line#*:} " in
    *" $folder "*) ;;
    *)
        echo "$file includes \"$included\": $own may include$(sed 's/^[^:]*://; s/  */ /g; s/^$/ nothing of ours/' <<<"$line")"
        wrong=1
        ;;
    esac
done < <(includes)
[ $wrong = 0 ] || exit 1
echo "every include points downwards"
