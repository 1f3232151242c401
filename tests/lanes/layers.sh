#!/usr/bin/env bash
# Checks that includes point downwards: layers.sh [ROOT]
#
# A folder may include headers from itself and from the folders on its line. Includes in angle brackets (the standard
# library, <jni.h>, the platform) are not checked.
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

# Prints "FILE FOLDER INCLUDED" for every quoted include: FOLDER is the folder of INCLUDED.
includes() {
    (cd "$root" && grep -rnE '^ *# *include *"' include text channellist jni --include='*.h' --include='*.cpp') |
        sed -E 's/^([^:]*):[0-9]+: *# *include *"([^"]*)".*/\1 \2/' |
        awk '{ folder = $2; if (!sub("/[^/]*$", "", folder)) folder = "."; print $1, folder, $2 }'
}

wrong=0
while read -r file folder included; do
    own=${file%/*}
    line=$(grep "^$own:" <<<"$layers") || {
        echo "$own is not in tests/lanes/layers.sh; add a line with the folders that it may include"
        exit 1
    }
    case " ${own#include/} ${line#*:} " in
    *" $folder "*) ;;
    *)
        echo "$file includes \"$included\": $own may include$(sed 's/^[^:]*://; s/  */ /g; s/^$/ no other folder/' <<<"$line")"
        wrong=1
        ;;
    esac
done < <(includes)
[ $wrong = 0 ] || exit 1
echo "all includes point downwards"
