#!/usr/bin/env bash
# Compares the records that two builds of the library make from the same Java calls: same_records.sh BUILD BUILD (CMake
# build folders). Both run the demo and fill lists of every kind; the records must be equal byte for byte. Then each
# stores all its lists, and the other loads the files.
set -euo pipefail
cd "$(dirname "$0")/../.."
vdr=$PWD/build/sources/vdr/unpacked
area=$PWD/build/same-records
rm -rf "$area"
[ -f "$2/lib/tavro-jvm-tests.jar" ] || {
    echo "skipped: no build in $2"
    exit 77
}

# java_of BUILD CLASS ARGUMENT...: runs a class with the build's library and Java.
java_of() {
    local build=$1 java
    shift
    java=$(sed -n 's/^TAVRO_TEST_JAVA:.*=//p' "$build/CMakeCache.txt")
    "$java" -Djava.library.path="$build/lib" \
        -cp "$build/lib/tavro.jar:$build/lib/tavro-jvm-tests.jar" "$@"
}

make_lists() { # BUILD NAME
    local work=$area/$2
    mkdir -p "$work/files" "$work/demo"
    export TAVRO_HOME=$work/demo/home
    java_of "$1" com.velotra.tv.tavro.tool.Main demo "$vdr/usr/share/vdr/channels.conf-examples" \
        "$vdr/etc/vdr" "$work/demo" >"$work/demo.log"
    java_of "$1" com.velotra.tv.tavro.services.channellist.ListTransfer fill >"$work/fill.log"
    java_of "$1" com.velotra.tv.tavro.services.channellist.ListTransfer store "$work/files"
    dump >"$work/records"
}

load_lists() { # BUILD FILES NAME
    export TAVRO_HOME=$area/$3/home
    mkdir -p "$area/$3"
    java_of "$1" com.velotra.tv.tavro.services.channellist.ListTransfer load "$2"
    dump >"$area/$3/records"
}

# Prints every record of the storage directory, in list order.
dump() {
    sqlite3 -readonly "$TAVRO_HOME/lists.db" \
        'SELECT kind, list_id, record_id, hex(bytes) FROM records ORDER BY kind, list_id, position'
}

same() { # NAME: compares its records with the first build's
    if ! cmp -s "$area/first/records" "$area/$1/records"; then
        echo "the records of '$1' differ from the first build's (kind|list|record|bytes):"
        diff "$area/first/records" "$area/$1/records" | cut -c 1-200 | head -n 10
        exit 1
    fi
}

make_lists "$1" first
make_lists "$2" second
same second
load_lists "$1" "$area/second/files" first-from-second
same first-from-second
load_lists "$2" "$area/first/files" second-from-first
same second-from-first

counts=$(cut -d '|' -f 1 "$area/first/records" | sort -n | uniq -c |
    awk '{split("services streams networks satellites", name); printf "%s%d %s", (NR > 1 ? ", " : ""), $1, name[$2]}')
kinds=$(cut -d '|' -f 1 "$area/first/records" | sort -u | wc -l)
[ "$kinds" = 4 ] || {
    echo "only $kinds of 4 list kinds were compared: $counts"
    exit 1
}
echo "equal byte for byte, and readable from each other's list files: $counts"
