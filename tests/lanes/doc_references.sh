#!/usr/bin/env bash
# Checks that what the documents refer to exists: doc_references.sh BUILD [ROOT]
#
#   links         to files of this tree and to headings
#   `paths`       of files and folders, also the last part of a path, such as `tool/Main.java`
#   `LEVEL.NAME`  tests of BUILD, such as `unit.LogGate`
#   `SUITE.NAME`  C++ tests, such as `LogGate.Passes*`
#
# Other words are not checked, and nothing in code blocks.
set -euo pipefail
build=$1
root=$(readlink -f "${2:-$(dirname "$(readlink -f "$0")")/../..}")
cd "$root"

files=$(find . \( -path ./build -o -path ./.git \) -prune -o -type f -print | sed 's,^\./,,')
folders=$(sed -n 's,/[^/]*$,,p' <<<"$files" | sort -u)
# Listing the tests of a folder empties its log, which another check reads: the listing has a folder of its own.
listing=$(mktemp -d)
trap 'rm -rf "$listing"' EXIT
echo "subdirs(\"$(readlink -f "$build")\")" >"$listing/CTestTestfile.cmake"
tests=$(ctest --test-dir "$listing" -N | sed -n 's/^ *Test *#[0-9]*: //p')
levels=$(sed 's/\..*//' <<<"$tests" | sort -u | paste -sd '|')

# The text without code blocks.
prose() { awk '/^```/ { code = !code; next } !code && !/^    /' "$1"; }
words() { prose "$1" | { grep -oE '`[^`]+`' || true; } | tr -d '`' | sort -u; }
headings() { sed -n 's/^##* //p' "$1" | tr 'A-Z ' 'a-z-' | tr -cd 'a-z0-9\n-'; }

is_path() { # a file or a folder of one, whole or by its last part
    local name=${1%/}
    grep -qE "(^|/)${name//./\\.}\$" <<<"$files" || grep -qE "(^|/)${name//./\\.}(/|\$)" <<<"$folders"
}

wrong=0
missing() {
    echo "$document: $1"
    wrong=1
}
documents=$(grep -E '^([A-Z]+|docs/[^/]*)\.md$' <<<"$files")
while read -r document; do
    while read -r target; do
        file=${target%%#*}
        path=$(realpath -m --relative-to=. "$(dirname "$document")/$file")
        [ -n "$file" ] || path=$document
        [ -e "$path" ] || missing "the link $target leads nowhere"
        [[ $target != *'#'* ]] || headings "$path" | grep -qxF "${target#*#}" || missing "the link $target names no heading"
    done < <(prose "$document" | { grep -oE '\]\([^):]+\)' || true; } | sed 's/^](//; s/)$//')
    while read -r word; do
        if [[ $word =~ ^($levels)\.[A-Za-z][A-Za-z_-]*(\.[a-z]+)?$ ]]; then
            suite=${word#*.}
            grep -qE "^${word%%.*}\.([A-Za-z]+/)?${suite//./\\.}(/[0-9A-Za-z]+)?(\.|\$)" <<<"$tests" ||
                is_path "$word" || missing "there is no test $word"
        elif [[ $word =~ ^[A-Z][A-Za-z0-9]*\.[A-Z*][A-Za-z0-9*]*$ && $word != TvContract.* ]]; then # Android's class
            name=${word#*.}
            grep -qE "^(unit|host)\.([A-Za-z]+/)?${word%%.*}(/[0-9A-Za-z]+)?\.${name//\*/.*}(/|\$)" <<<"$tests" ||
                missing "there is no test $word"
        elif [[ $word =~ ^[a-zA-Z.][A-Za-z0-9_.-]*(/[A-Za-z0-9_.-]+)*(/|\.(h|cpp|sh|bats|java|md|cmake|txt|map|bp|c))$ ]] ||
            { [[ $word =~ ^[a-z.][A-Za-z0-9_./-]*$ && $word = */* ]] && [ -e "${word%%/*}" ]; }; then
            case $word in
            ./* | build/* | lib/* | cache/ | data/ | undo/ | 3rd/ | mnt/*) continue ;; # made while working
            jni.h) continue ;;                                            # the JDK's
            esac
            is_path "$word" || missing "there is no $word"
        fi
    done < <(words "$document")
done <<<"$documents"
[ $wrong = 0 ] || exit 1
echo "everything that $(wc -l <<<"$documents") documents refer to exists"
