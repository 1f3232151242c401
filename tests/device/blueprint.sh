#!/usr/bin/env bash
# Checks Android.bp with the Android build system's own parser, built from Debian's Go sources:
# blueprint.sh CHECK ANDROID_BP FOLDER
#
#   format    syntax and formatting
#   modules   module types, properties and the types of their values
#
# The first run builds the checkers in FOLDER. Exits with 77 if their packages are missing.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
check=$1
blueprint=$2
folder=$3

# build NAME PACKAGE|SOURCE: builds a Go program.
build() {
    local name=$1 what=$2
    if [ -x "$folder/$name" ] && ! [ "$what" -nt "$folder/$name" ]; then
        return
    fi
    for needed in golang-go golang-github-google-blueprint-dev golang-android-soong-dev golang-goprotobuf-dev; do
        dpkg-query -W -f='${db:Status-Status}' "$needed" 2>/dev/null | grep -qx installed || {
            echo "skipped: the Debian package $needed is not installed; ./tavro setup installs it"
            exit 77
        }
    done
    mkdir -p "$folder"
    echo "Building $name from Debian's sources …"
    GO111MODULE=off GOPATH=/usr/share/gocode GOCACHE=$folder/go-cache GOFLAGS='' \
        go build -o "$folder/$name.part" "$what"
    mv "$folder/$name.part" "$folder/$name"
}

broken=$folder/broken-$check.bp
mkdir -p "$folder"
case $check in
format)
    build bpfmt github.com/google/blueprint/bpfmt
    # -l lists files whose formatting differs and exits with 0 even then.
    differing=$("$folder/bpfmt" -l "$blueprint")
    if [ -n "$differing" ]; then
        "$folder/bpfmt" -d "$blueprint"
        echo "Android.bp is not formatted like bpfmt's output; the lines above show the difference"
        exit 1
    fi
    sed 's/^}$//' "$blueprint" >"$broken"
    ! "$folder/bpfmt" -l "$broken" >/dev/null 2>&1 || {
        echo "bpfmt accepts an unfinished module, so its result for Android.bp means nothing"
        exit 1
    }
    ;;
modules)
    build check-modules "$here/check_modules.go"
    "$folder/check-modules" "$blueprint"
    for mistake in 's/cc_library_shared/cc_library_sharde/' 's/vendor: true/vendro: true/' 's/"32"/32/'; do
        sed "$mistake" "$blueprint" >"$broken"
        ! cmp -s "$blueprint" "$broken" && ! "$folder/check-modules" "$broken" >/dev/null 2>&1 || {
            echo "the checker accepts Android.bp changed by $mistake, so its result means nothing"
            exit 1
        }
    done
    ;;
*)
    echo "blueprint.sh: unknown check '$check': use format or modules" >&2
    exit 2
    ;;
esac
echo "Android.bp passes the check '$check'"
