#!/usr/bin/env bash
# Reports which lines and branches of the library the tests have executed:
# report.sh OBJECTS ROOT EXPLANATIONS LEAST FOLDER...
#
# OBJECTS contains the compiler's files with counters, FOLDERs (below ROOT) the sources. Fails if less than LEAST percent
# of the branches were taken, if a line or a branch that was missed is not explained in EXPLANATIONS, or if an explanation
# there is out of date. Lines of braces alone are ignored: they only have the code that ends a scope.
#
# A branch is one way out of a condition. Ways out by an exception do not count, nor does the way on from a call that may
# throw. A template's branches count once for each set of its arguments, so each must be taken by each of them.
set -euo pipefail
objects=$(readlink -f "$1")
root=$(readlink -f "$2")
explanations=$3
least=$4
shift 4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

find "$objects" -name '*.gcda' -print0 |
    (cd "$work" && xargs -0r gcov --json-format --branch-probabilities --stdout) >"$work/counters.json"
[ -s "$work/counters.json" ] || {
    echo "no counters below $objects: build and run the programs first"
    exit 1
}

# Several object files may have counters of the same function: an inline function, of which the linker kept one copy.
wanted=$(printf " or name like '%s/%%'" "$@")
sqlite3 "$work/counters.db" <<END
.mode ascii
.separator "\t" "\n"
create table counters(document text);
.import $work/counters.json counters
create table files as
    select substr(file.value->>'file', length('$root/') + 1) as name, file.value->>'lines' as lines
    from counters, json_each(document, '$.files') file
    where file.value->>'file' like '$root/%' and (false ${wanted});
create table parts as
    select name, part.value->>'line_number' as line, part.value->>'function_name' as function,
        part.value->>'count' as count, part.value->>'branches' as branches
    from files, json_each(lines) part;
create table lines as select name, line, sum(count) > 0 as executed from parts group by 1, 2;
create table ways as
    select name, line, function, way.key as number, sum(way.value->>'count') > 0 as taken, max(way.value->>'throw') as throws
    from parts, json_each(branches) way
    group by 1, 2, 3, 4;
create table branches as
    select * from ways
    where not throws and (name, line, function, number + 1) not in
        (select name, line, function, number from ways where throws);
.output $work/totals
select (select count(*) from lines), (select total(executed) from lines),
    (select count(*) from branches), (select total(taken) from branches);
.output $work/missed
select 'executed', name, line, 1 from lines where not executed
union all
select 'taken', name, line, count(*) from branches where not taken group by name, line
order by 2, 3, 1;
END

# An explanation is a line "FILE: N not taken: TEXT OF THE LINE" or "FILE: 1 not executed: TEXT OF THE LINE". Below it,
# indented, is the reason. Several such lines may share one reason.
LC_ALL=C awk -F '\t' -v root="$root" -v least="$least" '
    function complain(text) {
        print text
        wrong = 1
    }
    function end_of_reason() {
        if (open_entry != "" && !reason) complain(open_entry ": no reason is given")
    }
    FILENAME == ARGV[1] { # explanations
        if ($0 ~ /^#/ || $0 ~ /^ *$/) next
        if ($0 ~ /^ /) {
            reason = 1
            next
        }
        if (reason) open_entry = ""
        reason = 0
        where = FILENAME ":" FNR
        if (!match($0, /: [0-9]+ not (taken|executed): /)) {
            complain(where ": not an explanation; write FILE: N not taken: TEXT OF THE LINE")
            next
        }
        open_entry = where
        number = substr($0, RSTART + 2) + 0
        key = substr($0, 1, RSTART - 1) ": not " substr($0, RSTART + index(substr($0, RSTART), " not ") + 4)
        if (key in explained) complain(where ": explained twice")
        explained[key] = number
        place[key] = where
        next
    }
    FILENAME == ARGV[2] { # totals
        end_of_reason()
        lines = $1
        executed = $2
        branches = $3
        taken = $4
        next
    }
    {
        if (!($2 in read)) {
            read[$2] = 1
            for (number = 1; (getline text < (root "/" $2)) > 0; number++) {
                gsub(/^[ \t]+|[ \t]+$/, "", text)
                source[$2, number] = text
            }
        }
        text = source[$2, $3]
        if ($1 == "executed" && text ~ /^[{}();, ]*$/) {
            lines--
            next
        }
        key = $2 ": not " $1 ": " text
        if (!(key in missed)) order[++entries] = key
        missed[key] += $4
        at[key] = at[key] " " $3
    }
    END {
        for (i = 1; i <= entries; i++) {
            key = order[i]
            file = substr(key, 1, index(key, ": ") - 1)
            entry = file ": " missed[key] substr(key, length(file) + 2)
            if (!(key in explained)) {
                complain("line" at[key] " of " file ": missed and not explained:\n" entry)
            } else if (missed[key] != explained[key]) {
                complain(place[key] ": the number is " explained[key] ", but now it is:\n" entry)
            }
        }
        for (key in explained) {
            if (!(key in missed)) complain(place[key] ": out of date, the tests do not miss this any more: " key)
        }
        percent = branches > 0 ? 100 * taken / branches : 100
        if (lines == 0) complain("no line of the sources was counted")
        if (percent < least) complain(sprintf("less than %s %% of the branches are taken", least))
        printf "library: %d of %d lines executed (%.1f %%), %d of %d branches taken (%.1f %%)\n", executed, lines,
            (lines > 0 ? 100 * executed / lines : 0), taken, branches, percent
        exit wrong
    }' "$explanations" <(tr '|' '\t' <"$work/totals") <(tr '|' '\t' <"$work/missed")
