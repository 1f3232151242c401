#!/usr/bin/env bash
# Reports which lines and branches of the library the tests have executed:
# report.sh OBJECTS ROOT EXPLANATIONS LEAST FOLDER...
#
# OBJECTS contains the compiler's files with counters, FOLDERs (below ROOT) the sources. Fails if a line was not executed,
# if less than LEAST percent of the branches were taken, if a branch that was not taken is missing in EXPLANATIONS, or if
# an explanation there is out of date.
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
select 'line', name, line, 1 from lines where not executed
union all
select 'branch', name, line, count(*) from branches where not taken group by name, line
order by 2, 3, 1;
END

# An explanation is a line "FILE: N not taken: TEXT OF THE LINE", and below it, indented, the reason.
LC_ALL=C awk -F '\t' -v root="$root" -v least="$least" '
    function complain(text) {
        print text
        wrong = 1
    }
    function end_of_explanation() {
        if (key != "" && !reason) complain(where ": this explanation has no reason: " key)
    }
    FILENAME == ARGV[1] { # explanations
        if ($0 ~ /^#/ || $0 ~ /^ *$/) next
        if ($0 ~ /^ /) {
            reason = 1
            next
        }
        end_of_explanation()
        where = FILENAME ":" FNR
        reason = 0
        if (!match($0, /: [0-9]+ not taken: /)) {
            complain(where ": not an explanation; write FILE: N not taken: TEXT OF THE LINE")
            key = ""
            next
        }
        key = substr($0, 1, RSTART - 1) ": " substr($0, RSTART + RLENGTH)
        if (key in explained) complain(where ": explained twice: " key)
        explained[key] = substr($0, RSTART + 2) + 0
        place[key] = where
        next
    }
    FILENAME == ARGV[2] { # totals
        end_of_explanation()
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
        if ($1 == "line") {
            complain($2 ":" $3 ": not executed: " source[$2, $3])
        } else {
            key = $2 ": " source[$2, $3]
            missed[key] += $4
            at[key] = at[key] " " $3
        }
    }
    END {
        for (key in missed) {
            split(key, part, ": ")
            line = part[1] ": " missed[key] " not taken: " substr(key, length(part[1]) + 3)
            if (!(key in explained)) {
                complain("line" at[key] " of " part[1] ": a branch is not taken and not explained:\n" line)
            } else if (missed[key] != explained[key]) {
                complain(place[key] ": " explained[key] " branches are explained, but now it is:\n" line)
            }
        }
        for (key in explained) {
            if (!(key in missed)) complain(place[key] ": out of date, every branch of this line is taken: " key)
        }
        percent = branches > 0 ? 100 * taken / branches : 100
        if (lines == 0) complain("no line of the sources was counted")
        if (percent < least) complain(sprintf("less than %s %% of the branches are taken", least))
        printf "lines executed: %d of %d (%.1f %%)\n", executed, lines, (lines > 0 ? 100 * executed / lines : 0)
        printf "branches taken: %d of %d (%.1f %%); %d explained\n", taken, branches, percent, branches - taken
        exit wrong
    }' "$explanations" <(tr '|' '\t' <"$work/totals") <(tr '|' '\t' <"$work/missed")
