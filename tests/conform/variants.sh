#!/usr/bin/env bash
# Shows that every check of tavro-conform can fail: variants.sh names|run|correct PROGRAM LIBRARY [PATTERN]. LIBRARY is
# libtavro_broken.so, a platform with the defect that a check must find.
#   names    there is a defect for each check, and a check for each defect
#   run      with a defect, its check fails and no other; PATTERN selects defects, by a regular expression
#   correct  a platform that differs from the stand-in, but does what the library needs, passes the checks
# A defect runs with all checks of one kind of list that call the functions it changes; the kinds take turns, because
# their checks and defects come from the same templates. In the other kinds, its check alone runs, and must fail.
set -euo pipefail
command=$1
program=$2
library=$3

# The platform is loaded before the program, and not again by each of its processes: a third less time.
preload=$library
for name in velotra_tv_services velotra_tv_svl_builder velotra_tv_basic cutils log; do
    preload+=:${library%/*}/lib$name.so
done

checks() { "$program" --list --slow | sed -n 's/^\([^ ][^ ]*\).*/\1/p'; }
variants() { LD_PRELOAD=$library TAVRO_BROKEN=list env true; }

# Prints the checks that fail with a defect, in order: failed VARIANTS FILTER...
failed() {
    local home slow variants=$1
    shift
    slow=$([[ $variants != svl.next-id.full ]] || echo yes) # its check takes more than a second
    home=$(mktemp -d "${TMPDIR:-/tmp}/tavro-broken.XXXXXX")
    TAVRO_HOME=$home TAVRO_LOG_FILE=/dev/null TAVRO_LOCK_TIMEOUT_MS=1 TAVRO_BROKEN=$variants LD_BIND_NOW=1 \
        LD_PRELOAD=$preload "$program" ${slow:+--slow} --directory="$home" "${@/#/--filter=}" >"$home/tap" 2>"$home/errors" || true
    sed -n 's/^not ok [0-9]* - \([^ ]*\).*/\1/p' "$home/tap" | sort
    grep -i '^bail out' "$home/tap" || true
    [ -s "$home/tap" ] || cat "$home/errors"
    rm -rf "$home"
}

same() { # WHAT EXPECTED FOUND
    [ "$2" = "$3" ] || {
        echo "$1: checks that must fail (<) and checks that failed (>):"
        diff <(echo "$2") <(echo "$3") | grep '^[<>]'
        return 1
    }
}

# Runs one defect: one NAME FILTERS ALL. FILTERS, separated by commas, select the checks of which only NAME may fail. ALL
# selects the same defect of all kinds, or is "-".
one() {
    local filters status=0
    IFS=, read -ra filters <<<"$2"
    same "with the defect $1" "$1" "$(failed "$1" "${filters[@]}")" || status=1
    if [ "$3" != - ]; then
        same "with the defects $3" "$(checks | grep -E "^(svl|tsl|nwl|satl)${3#\*}$" | sort)" "$(failed "$3" "$3")" ||
            status=1
    fi
    return $status
}

# Prints the arguments of `one` for each defect.
plan() {
    variants | awk -v pattern="$1" '
        BEGIN { split("svl tsl nwl satl", kinds) }
        {
            kind = $1
            sub(/\..*/, "", kind)
            if (kind !~ /^(svl|tsl|nwl|satl)$/) {
                common[++number] = $1
                next
            }
            base = substr($1, length(kind) + 2)
            if (!(base in of)) order[++bases] = base
            of[base] = of[base] " " kind
        }
        END {
            for (i = 1; i <= number; i++) filters = filters (i > 1 ? "," : "") common[i]
            for (i = 1; i <= number; i++)
                if (common[i] ~ pattern) print common[i], (common[i] ~ /^(fs|x_fm|lib)/ ? "svl.fs_*," : "") filters, "-"
            for (i = 1; i <= bases; i++) {
                many = split(substr(of[order[i]], 2), its)
                kind = its[(i - 1) % many + 1]
                area = ".*"
                if (order[i] ~ /lock/) area = ".*lock*," kind ".close*," kind ".delete*," kind ".handle*"
                if (order[i] ~ /^fs_/) area = ".fs_*," kind ".lock.holder*"
                if (order[i] == "next-id.full") area = ".next-id.*"
                if (order[i] ~ pattern) print kind "." order[i], kind area, (many > 1 ? "*." order[i] : "-")
            }
        }'
}

case $command in
names)
    if ! difference=$(diff <(checks | sort) <(variants | sort)); then
        echo "checks without a defect (<) and defects without a check (>):"
        grep '^[<>]' <<<"$difference"
        exit 1
    fi
    echo "$(checks | wc -l) checks, and a defect for each"
    ;;
one)
    one "${@:4}"
    ;;
correct)
    same "with other orders" "" "$(failed correct.order svl.copy.* svl.{update,remove,fs_s*,read_lock.holder}*)"
    same "with other record ids" "" "$(failed correct.ids nwl.highest-id.*)"
    same "with other statuses" "" "$(failed correct.statuses tsl.{open,get,update,remove,handle,delete,fs_store}.*)"
    ;;
run)
    plan=$(plan "${4:-.}")
    echo "$(wc -l <<<"$plan") defects"
    xargs -P 2 -n 3 "$0" one "$program" "$library" <<<"$plan"
    ;;
esac
