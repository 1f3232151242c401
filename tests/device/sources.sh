#!/usr/bin/env bash
# Checks that a module of Android.bp lists the same sources as CMakeLists.txt: sources.sh ANDROID_BP MODULE SOURCE...
set -euo pipefail
blueprint=$1
module=$2
shift 2

listed() {
    awk -v name="name: \"$module\"," 'index($0, name) { inside = 1 } /^}/ { inside = 0 } inside' "$blueprint" |
        sed -n 's/^ *"\(.*\.cpp\)",$/\1/p' | sort
}
built() { printf '%s\n' "$@" | sort; }

wrong=0
while read -r source; do
    echo "add to srcs of $module in Android.bp:        \"$source\","
    wrong=1
done < <(comm -13 <(listed) <(built "$@"))
while read -r source; do
    echo "remove from srcs of $module in Android.bp:   \"$source\","
    wrong=1
done < <(comm -23 <(listed) <(built "$@"))
[ $wrong = 0 ] || {
    echo "CMakeLists.txt and Android.bp list different sources of $module."
    exit 1
}
echo "Android.bp and CMakeLists.txt list the same $# sources of $module"
