#!/usr/bin/env bash
# Checks that Android.bp lists the same sources as CMakeLists.txt: sources.sh ANDROID_BP SOURCE...
set -euo pipefail
blueprint=$1
shift

listed() { sed -n 's/^ *"\(.*\.cpp\)",$/\1/p' "$blueprint" | sort; }
built() { printf '%s\n' "$@" | sort; }

wrong=0
while read -r source; do
    echo "add to srcs in Android.bp:        \"$source\","
    wrong=1
done < <(comm -13 <(listed) <(built "$@"))
while read -r source; do
    echo "remove from srcs in Android.bp:   \"$source\","
    wrong=1
done < <(comm -23 <(listed) <(built "$@"))
[ $wrong = 0 ] || {
    echo "CMakeLists.txt (channellist_objects) and Android.bp list different sources."
    exit 1
}
echo "Android.bp and CMakeLists.txt list the same $# sources"
