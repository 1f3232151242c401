#!/usr/bin/env bats
# What tavro-conform does when a check fails or ends badly.

load support

# The same three checks each time: only the first calls what goes wrong.
three=(--filter=nwl.highest-id.adds --filter=nwl.count.changes --filter=satl.count.changes)

# ended_badly FOUND: the first check failed with FOUND, the others passed.
ended_badly() {
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..3' 'not ok 1 - nwl.highest-id.adds' '  ---' \
        '  expectation: "Query 2 gives an id whose next one is free, such as the highest record id."' \
        '  expected: "the check runs to its end"' \
        "  found: \"$1 in x_nwl_qry_rec_id(1, 2, out)\"" \
        '  reason: "needed by nativeAdd of network lists: a new record gets the next id"' '  severity: "wrong result"' \
        '  calls:' '    - "x_nwl_create(\"fs_Nwl_65300\", 65301, 1, 16, 0, 0, out) = 0"' \
        '    - "x_nwl_add_rec(1, record) = 0"' '    - "x_nwl_add_rec(1, record) = 0"' \
        '    - "x_nwl_add_rec(1, record) = 0"' '    - "x_nwl_qry_rec_id(1, 2, out) ..."' '  ...' \
        'ok 2 - nwl.count.changes' 'ok 3 - satl.count.changes'
    complains '2 of 3 checks passed, 1 failed, 0 skipped'
}

# lists_are_gone: a run that uses the same lists is not refused.
lists_are_gone() {
    conform "${three[@]}"
    [ "$status" -eq 0 ]
}

@test "a check that crashes fails alone, and its list is deleted" {
    faulty crash "${three[@]}"
    ended_badly SIGSEGV
    lists_are_gone
}

@test "a check that aborts fails alone" {
    faulty abort "${three[@]}"
    ended_badly SIGABRT
}

@test "a check whose process exits fails alone" {
    faulty exit "${three[@]}"
    ended_badly 'the process exited with code 7'
}

@test "a check that hangs fails alone, and its list is deleted" {
    faulty hang --timeout=1 "${three[@]}"
    ended_badly 'no end within 1 s'
    lists_are_gone
}

@test "a wrong status fails the check, with expectation and calls" {
    faulty status --filter=nwl.highest-id.adds
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..1' 'not ok 1 - nwl.highest-id.adds' '  ---' \
        '  expectation: "Query 2 gives an id whose next one is free, such as the highest record id."' \
        '  expected: "x_nwl_qry_rec_id(1, 2, out) returns 0"' '  found: "-5"' \
        '  reason: "needed by nativeAdd of network lists: a new record gets the next id"' '  severity: "wrong result"' \
        '  calls:' '    - "x_nwl_create(\"fs_Nwl_65300\", 65301, 1, 16, 0, 0, out) = 0"' \
        '    - "x_nwl_add_rec(1, record) = 0"' '    - "x_nwl_add_rec(1, record) = 0"' \
        '    - "x_nwl_add_rec(1, record) = 0"' '    - "x_nwl_qry_rec_id(1, 2, out) = -5"' '  ...'
}

@test "a failure is escaped in XML" {
    faulty status --filter=nwl.highest-id.adds --format=junit
    [ "$status" -eq 1 ]
    output=$(sed -E 's/time="[0-9]+\.[0-9]{3}"/time="…"/' <<<"$output")
    prints '<?xml version="1.0" encoding="UTF-8"?>' '<testsuites>' \
        '  <testsuite name="tavro-conform" tests="1" failures="1" errors="0" skipped="0" time="…">' \
        '    <testcase classname="tavro-conform.nwl" name="nwl.highest-id.adds" time="…">' \
        '      <failure type="wrong result" message="expected x_nwl_qry_rec_id(1, 2, out) returns 0; found -5">Query 2 gives an id whose next one is free, such as the highest record id.' \
        'needed by nativeAdd of network lists: a new record gets the next id' \
        'x_nwl_create(&quot;fs_Nwl_65300&quot;, 65301, 1, 16, 0, 0, out) = 0' 'x_nwl_add_rec(1, record) = 0' \
        'x_nwl_add_rec(1, record) = 0' 'x_nwl_add_rec(1, record) = 0' 'x_nwl_qry_rec_id(1, 2, out) = -5</failure>' \
        '    </testcase>' '  </testsuite>' '</testsuites>'
}

@test "a list that stays ends the run, and later runs are refused" {
    faulty kept "${three[@]}"
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..3' 'ok 1 - nwl.highest-id.adds' \
        'Bail out! cannot delete what the check created: nwl list 65301'
    complains 'tavro-conform: cannot delete what the check created: nwl list 65301.' \
        '1 of 3 checks passed, 0 failed, 0 skipped'

    conform "${three[@]}"
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..3' \
        'Bail out! nwl list 65301 exists already; choose ids that are free with --lists=FIRST, or delete it'
    complains 'tavro-conform: nwl list 65301 exists already; choose ids that are free with --lists=FIRST, or delete it.' \
        '0 of 3 checks passed, 0 failed, 0 skipped'

    conform "${three[@]}" --lists=500
    [ "$status" -eq 0 ]
}

@test "a refused run is an error in JUnit XML" {
    faulty kept --filter=nwl.count.changes
    conform --filter=nwl.count.changes --format=junit
    [ "$status" -eq 1 ]
    [[ $output == *'tests="1" failures="0" errors="1" skipped="0"'* ]]
    [[ $output == *'<error message="nwl list 65301 exists already; '* ]]
}

@test "an interrupted run deletes its lists and says so" {
    mkfifo "$area/fifo"
    TAVRO_FAULT=hang TAVRO_FAULT_FIFO=$area/fifo LD_PRELOAD=$BUILD/lib/libtavro_faulty.so \
        "$program" "${three[@]}" --timeout=600 >"$area/out" 2>"$area/err" 3>&- &
    read -r <"$area/fifo" || true # the check hangs now
    kill -TERM $!
    status=0
    wait $! || status=$?
    [ "$status" -eq 143 ]
    diff "$area/out" - <<<$'TAP version 14\n1..3\nBail out! ended by SIGTERM'
    diff "$area/err" - <<<$'tavro-conform: ended by SIGTERM.\n0 of 3 checks passed, 0 failed, 0 skipped'
    [ "$(compgen -G "$area/tavro-conform*")" = '' ]
    lists_are_gone
}

@test "a missing library fails its check, and others are skipped" {
    mkdir "$area/bin" "$area/lib"
    cp "$program" "$area/bin"
    for library in "$BUILD"/lib/lib{log,cutils,velotra_tv_basic,velotra_tv_services}.so; do
        ln -s "$library" "$area/lib"
    done
    program=$area/bin/tavro-conform
    conform --filter='libvelotra_tv_svl_builder.*' --filter=svl.count.changes
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..3' 'not ok 1 - libvelotra_tv_svl_builder.load' '  ---' \
        '  expectation: "The loader finds and loads libvelotra_tv_svl_builder.so."' \
        '  expected: "the loader loads libvelotra_tv_svl_builder.so"' \
        '  found: "libvelotra_tv_svl_builder.so: cannot open shared object file: No such file or directory"' \
        '  reason: "needed by JNI_OnLoad: the library does not load otherwise"' '  severity: "wrong result"' \
        '  calls: []' '  ...' \
        'ok 2 - libvelotra_tv_svl_builder.functions # SKIP libvelotra_tv_svl_builder.so cannot be loaded' \
        'ok 3 - svl.count.changes'
    complains '1 of 3 checks passed, 1 failed, 1 skipped'
}

@test "a missing function fails the check of its library" {
    LD_LIBRARY_PATH=$BUILD/lib/incomplete conform --filter='libvelotra_tv_svl_builder.*'
    [ "$status" -eq 1 ]
    prints 'TAP version 14' '1..2' 'ok 1 - libvelotra_tv_svl_builder.load' \
        'not ok 2 - libvelotra_tv_svl_builder.functions' '  ---' \
        '  expectation: "The loader finds every function in libvelotra_tv_svl_builder.so."' \
        '  expected: "the loader finds all functions of libvelotra_tv_svl_builder.so"' \
        '  found: "missing: x_sb_get_channel_index"' \
        '  reason: "needed by JNI_OnLoad: the library does not load otherwise"' '  severity: "wrong result"' \
        '  calls: []' '  ...'
}
