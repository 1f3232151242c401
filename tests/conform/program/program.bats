#!/usr/bin/env bats
# The options and reports of tavro-conform over the stand-ins.

load support

@test "it needs only the C and C++ libraries" {
    needed=$(readelf -dW "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort | paste -sd' ')
    [ "$needed" = 'libc.so.6 libgcc_s.so.1 libstdc++.so.6' ]
}

@test "checks that pass are printed as TAP" {
    conform --filter='svl.open.*' --filter='libcutils.*'
    [ "$status" -eq 0 ]
    prints 'TAP version 14' '1..5' 'ok 1 - libcutils.load' 'ok 2 - libcutils.functions' 'ok 3 - svl.open.missing' \
        'ok 4 - svl.open.missing-handle' 'ok 5 - svl.open.list-0'
    complains '5 of 5 checks passed, 0 failed, 0 skipped'
}

@test "checks that pass are written as JUnit XML" {
    conform --format=junit --filter='libcutils.*'
    [ "$status" -eq 0 ]
    output=$(sed -E 's/time="[0-9]+\.[0-9]{3}"/time="…"/' <<<"$output")
    prints '<?xml version="1.0" encoding="UTF-8"?>' '<testsuites>' \
        '  <testsuite name="tavro-conform" tests="2" failures="0" errors="0" skipped="0" time="…">' \
        '    <testcase classname="tavro-conform.libcutils" name="libcutils.load" time="…"/>' \
        '    <testcase classname="tavro-conform.libcutils" name="libcutils.functions" time="…"/>' \
        '  </testsuite>' '</testsuites>'
}

@test "one run writes both reports" {
    conform --filter=libcutils.load --format=tap --output="$area/results.tap" --format=junit
    [ "$status" -eq 0 ]
    [[ $output == '<?xml '*'</testsuites>' ]]
    diff "$area/results.tap" - <<<$'TAP version 14\n1..1\nok 1 - libcutils.load'
}

@test "a run leaves no list and no file" {
    conform --filter='*.create.*'
    [ "$status" -eq 0 ]
    [ "$(compgen -G "$area/tavro-conform*")" = '' ]
    conform --filter='*.create.*'
    [ "$status" -eq 0 ]
}

@test "a dry run names checks, lists and files and calls nothing" {
    conform --dry-run --filter='svl.create.apart' --filter='tsl.create.list-65535' --directory="$area"
    [ "$status" -eq 0 ]
    prints 'Would run 2 checks:' '  svl.create.apart' '  tsl.create.list-65535' \
        'They would create and delete these lists, which must not exist:' '  svl 65301 65302' '  tsl 65535' \
        "They would make these files in a new directory below $area, and remove them:" '  none'
    [ ! -e "$TAVRO_HOME" ]
}

@test "--lists chooses the list ids" {
    conform --dry-run --filter='nwl.create.*' --lists=500
    [ "$status" -eq 0 ]
    [[ $output == *$'\n  nwl 500 501 502 503 65535\n'* ]]
}

@test "--list prints the checks with their expectations" {
    conform --list --filter=satl.open.missing --filter=svl.next-id.full
    [ "$status" -eq 0 ]
    prints satl.open.missing '    Opening a list that does not exist fails, or gives handle 0.' \
        svl.next-id.full '    In a full list, query 3 offers 65535 or fails.'
    [ ! -e "$TAVRO_HOME" ]
}

@test "every check has a name of its own and at most 60 characters" {
    "$program" --list | sed -n '/^[^ ]/p' | sort >"$area/names"
    [ "$(uniq -d "$area/names")" = '' ]
    [ "$(grep -E '.{61}' "$area/names")" = '' ]
    [ "$(grep -vE '^[a-z_]+(\.[a-z0-9_-]+)+$' "$area/names")" = '' ]
}

@test "--version prints the version" {
    conform --version
    [ "$status" -eq 0 ]
    prints "tavro-conform $VERSION"
}

@test "./tavro conform has the same options" {
    conform --help
    diff <(grep -oE '^ .{5}--[a-z-]+(=[A-Z]+)?' "$BATS_TEST_DIRNAME/../../../help/conform.txt" | cut -c7-) \
        <(grep -oE '^ .{5}--[a-z-]+(=[A-Z]+)?' <<<"$output" | cut -c7-)
}

@test "--help describes every option" {
    conform --help
    [ "$status" -eq 0 ]
    [ "$(grep -oE '^      --[a-z-]+' <<<"$output" | tr -d ' ' | paste -sd' ')" = \
        '--contract --directory --dry-run --filter --format --help --list --lists --output --slow --timeout --version' ]
    [ "$(wc -L <<<"$output")" -le 80 ]
}

@test "wrong usage is explained, and nothing is called" {
    while IFS='|' read -r option message; do
        conform "$option"
        [ "$status" -eq 2 ]
        [ "$output" = '' ]
        complains "tavro-conform: $message"
    done <<'END'
--foo|unknown option '--foo'; tavro-conform --help lists the options.
svl|unknown argument 'svl'; tavro-conform --help lists the options.
--slow=1|--slow takes no value, but got '1'.
--timeout|--timeout needs a value: --timeout=SECONDS.
--output=|--output needs a value: --output=FILE.
--timeout=0|--timeout is '0' and must be a number of seconds from 1 to 3600.
--timeout=5s|--timeout is '5s' and must be a number of seconds from 1 to 3600.
--lists=0|--lists is '0' and must be a number from 1 to 65531.
--lists=65532|--lists is '65532' and must be a number from 1 to 65531.
--format=xml|--format is 'xml' and must be tap or junit.
--filter=svl|no check matches 'svl'; tavro-conform --list shows the names.
--filter=svl.next-id.full|all checks that match are slow; add --slow to run them.
END
    conform --format=tap --format=junit
    [ "$status" -eq 2 ]
    complains 'tavro-conform: two reports cannot both go to standard output; add --output=FILE after one --format.'
    conform --output=a --output=b
    [ "$status" -eq 2 ]
    complains 'tavro-conform: --output is given twice for one report; put --format=FORMAT before the second.'
    [ ! -e "$TAVRO_HOME" ]
}

@test "a report or directory that cannot be written is explained" {
    conform --output=/nowhere/results
    [ "$status" -eq 1 ]
    complains 'tavro-conform: cannot write /nowhere/results: No such file or directory.'
    conform --directory=/nowhere
    [ "$status" -eq 1 ]
    complains 'tavro-conform: cannot use the directory /nowhere: No such file or directory; name another one with --directory=DIR.'
    [ ! -e "$TAVRO_HOME" ]
    conform --filter=libcutils.load --output=/dev/full
    [ "$status" -eq 1 ]
    complains 'tavro-conform: cannot write /dev/full: the report is not complete.' \
        '1 of 1 checks passed, 0 failed, 0 skipped'
}
