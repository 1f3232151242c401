#!/usr/bin/env bash
# Changes the library in one place at a time and reports the changes that no test notices:
# mutate.sh SETTINGS [--sample=N] [--seed=S] [FILE...]
#
# SETTINGS is a bash file that sets these variables:
#
#   root         folder that holds the sources
#   folders      folders of the sources, below root
#   sources      the files that are compiled, below root
#   work         folder for copies and results; nothing outside it is written
#   equivalents  file with the mutants that no test can notice, each with a reason
#
# and defines these functions, in which "tree" is the copy of the sources:
#
#   compile SOURCE OBJECT          compiles without optimization, and writes what was included to OBJECT.d
#   first_tests FOLDER OBJECT...   links tests to the objects of the library, and runs them
#   second_tests FOLDER OBJECT...  the same with tests for the mutants that the first ones did not notice
#
# A mutant that cannot be linked counts as noticed.
#
# FILEs are relative to root; without any, all files of the folders are changed. Exit codes: 0 if every mutant was
# noticed or is listed as equivalent, 1 if not.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
sample=0
seed=1
files=()
. "$1"
shift
for word in "$@"; do
    case $word in
    --sample=*) sample=$((10#${word#*=})) ;;
    --seed=*) seed=$((10#${word#*=})) ;;
    *) files+=("$word") ;;
    esac
done
say() { printf '%s\n' "$*" >&2; }
jobs=$(nproc)
running=()
trap 'kill "${running[@]}" 2>/dev/null; exit 130' INT TERM

if [ ${#files[@]} = 0 ]; then
    mapfile -t files < <(cd "$root" && find "${folders[@]}" -name '*.cpp' -o -name '*.h' | LC_ALL=C sort)
fi

# ---- The sources without a change, and their objects.

rm -rf "$work"
mkdir -p "$work"
tree=$work/tree
copy_tree() { # FOLDER
    mkdir -p "$1"
    (cd "$root" && cp -r --parents "${folders[@]}" "$1")
}
copy_tree "$tree"
objects=$work/objects
mkdir "$objects"
say "Compiling the library ..."
export -f compile
export tree objects
printf '%s\0' "${sources[@]}" |
    xargs -0 -P "$jobs" -I{} bash -c 'name={} && compile "$tree/$name" "$objects/${name//\//-}.o"' || {
    say "mutate: the library does not compile without a change"
    exit 1
}
all=()
for source in "${sources[@]}"; do all+=("$objects/${source//\//-}.o"); done
mkdir "$work/unchanged"
say "Running the tests ..."
{ first_tests "$work/unchanged" "${all[@]}" && second_tests "$work/unchanged" "${all[@]}"; } \
    >"$work/unchanged.log" 2>&1 || {
    tail -n 40 "$work/unchanged.log" >&2
    say "mutate: the tests fail without a change; the log is $work/unchanged.log"
    exit 1
}

# ---- The mutants: number, file, line number, line before, line after.

(cd "$root" && awk -v root="$root" -f "$here/mutants.awk" "${files[@]}") | awk '{ print NR "\t" $0 }' >"$work/mutants"
if [ "$sample" -gt 0 ]; then
    awk -v seed="$seed" 'BEGIN { srand(seed) } { printf "%.9f\t%s\n", rand(), $0 }' "$work/mutants" | sort -n |
        awk -v most="$sample" 'NR <= most' | cut -f 2- | sort -n >"$work/sample"
    mv "$work/sample" "$work/mutants"
fi
total=$(wc -l <"$work/mutants")
[ "$total" -gt 0 ] || {
    say "mutate: nothing to change in ${files[*]}"
    exit 0
}

# ---- Trying them. A worker has a copy of the sources of its own, and tries every jobs-th mutant.

# Which sources include a file, itself among them.
declare -A including=()
for file in "${files[@]}"; do
    for source in "${sources[@]}"; do
        ! grep -qF "$tree/$file" "$objects/${source//\//-}.o.d" || including[$file]+=" $source"
    done
done

# Sets "verdict" to: caught, survived, same (the same machine code) or refused (it does not compile).
try_mutant() { # FOLDER FILE NUMBER NEW
    local folder=$1 file=$2 source object linked=" ${all[*]} " same=yes
    new=$4 awk -v at="$3" 'NR == at { print ENVIRON["new"]; next } { print }' "$root/$file" >"$tree/$file"
    for source in ${including[$file]:-}; do
        object=${source//\//-}.o
        if ! compile "$tree/$source" "$folder/$object" >"$folder/compile.log" 2>&1; then
            verdict=refused
            return
        fi
        cmp -s "$folder/$object" "$folder/unchanged/$object" || same=no
        linked=${linked/" $objects/$object "/" $folder/$object "}
    done
    # shellcheck disable=SC2086
    if [ $same = yes ]; then
        verdict=same
    elif first_tests "$folder" $linked >"$folder/first.log" 2>&1 && second_tests "$folder" $linked >"$folder/second.log" 2>&1; then
        verdict=survived
    else
        verdict=caught
    fi
}

worker() { # INDEX
    local index=$1 folder=$work/worker$1 number file at old new verdict
    copy_tree "$folder/tree"
    cp -r "$objects" "$folder/unchanged"
    tree=$folder/tree
    while IFS=$'\t' read -r number file at old new; do
        verdict=
        try_mutant "$folder" "$file" "$at" "$new" </dev/null
        cp "$root/$file" "$tree/$file"
        printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$verdict" "$number" "$file" "$at" "$old" "$new" >>"$work/results"
    done < <(awk -v jobs="$jobs" -v index_="$index" 'NR % jobs == index_' "$work/mutants")
}

: >"$work/results"
say "Trying $total mutants ..."
for ((i = 0; i < jobs; i++)); do
    worker "$i" &
    running+=($!)
done
workers=("${running[@]}")
(
    shown=0
    while sleep 1; do
        done_=$(wc -l <"$work/results")
        if [ -t 2 ]; then
            printf '\r%d of %d mutants' "$done_" "$total" >&2
        elif [ $((done_ / 50)) -gt $((shown / 50)) ]; then
            say "  $done_ of $total mutants"
        fi
        shown=$done_
    done
) &
progress=$!
running+=("$progress")
failed=no
for pid in "${workers[@]}"; do wait "$pid" || failed=yes; done
kill "$progress" 2>/dev/null
wait "$progress" 2>/dev/null || true
[ ! -t 2 ] || printf '\r\033[K' >&2
[ $failed = no ] || {
    say "mutate: a worker ended early; its files are in $work"
    exit 1
}

# ---- The result.

# An entry of the list of equivalent mutants is a line "FILE: LINE BEFORE" and, indented, lines "=> LINE AFTER" and a reason.
sort -t $'\t' -k 2n "$work/results" | LC_ALL=C awk -F '\t' -v sample="$sample" '
    function complain(text) {
        print text
        wrong = 1
    }
    function end_of_entry() {
        if (where != "" && !reason) complain(where ": this entry has no reason")
        where = ""
    }
    FILENAME == ARGV[1] {
        text = $0
        gsub(/^ +| +$/, "", text)
        if (text == "" || $0 ~ /^#/) next
        if ($0 !~ /^ /) {
            end_of_entry()
            before = text
            reason = 0
            where = FILENAME ":" FNR
        } else if (text ~ /^=> /) {
            key = before "\n" substr(text, 4)
            listed[key]++
            place[key] = FILENAME ":" FNR
        } else {
            reason = 1
        }
        next
    }
    where != "" { end_of_entry() }
    {
        count[$1]++
        tried[$3] = 1
        key = $3 ": " $5 "\n" $6
        if (($1 == "survived" || $1 == "same") && found[key] < listed[key]) {
            found[key]++
            count[$1]--
            count["equivalent"]++
        } else if ($1 == "survived") {
            complain($3 ":" $4 ": no test notices\n    " $5 "\n    => " $6)
        }
    }
    END {
        for (key in listed) {
            file = substr(key, 1, index(key, ": ") - 1)
            if (sample == 0 && file in tried && found[key] < listed[key])
                complain(place[key] ": out of date: there is no such mutant, or a test notices it")
        }
        printf "%d mutants: %d caught, %d equivalent, %d not noticed; ", NR_mutants(), count["caught"], count["equivalent"] + count["same"], count["survived"]
        printf "%d more do not compile\n", count["refused"]
        exit wrong
    }
    function NR_mutants() { return count["caught"] + count["equivalent"] + count["same"] + count["survived"] }
' "$equivalents" -
