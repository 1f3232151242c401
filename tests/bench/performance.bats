# How docs/performance.md and its plots are made, with small results.

setup() {
    bats_require_minimum_version 1.5.0
    top=$(readlink -f "$BATS_TEST_DIRNAME/../..")
    area=$(mktemp -d)
    results=$area/results
    mkdir "$results" "$area/out"
    cat >"$area/performance.md" <<'END'
# Before

<!-- machine -->
old
<!-- end -->
<!-- natives -->
old
<!-- end -->
Between $1 \ and
<!-- peers -->
<!-- end -->
<!-- host -->
<!-- end -->
<!-- import -->
<!-- end -->

After
END
    results native "$(native service/read 300 0 1.1 ''),$(native service/list:10 40 10 1.25 1.4)" '"num_cpus": 2, "mhz_per_cpu": 2600'
    results peers "$(contest peers/add/natives ''),$(contest peers/add/rival 2.5)" '"date": "2026-01-02T03:04:05Z", "java": "A $1 VM"'
    results host "$(aggregate BM_Add median 40.4 us),$(aggregate BM_Add mean 99 us),$(aggregate BM_Add cv 0.123 us)" ''
    results import "$(contest import/command ''),$(contest import/floor 1.25)" '"transponders": 30, "stored_rows": 20'
}
teardown() { rm -rf "$area"; }

results() { # NAME BENCHMARKS CONTEXT
    printf '{"context": {%s}, "benchmarks": [%s]}' "$3" "$2" >"$results/$1.json"
}
# A result of native_bench. library_ns equals real_time, the floor is half of it and a copy a quarter.
native() { # NAME NS RECORDS RATIO COPY_RATIO
    printf '{"name": "x", "run_name": "%s/iterations:1/manual_time", "run_type": "iteration", "real_time": %s, "time_unit": "ns",
        "library_ns": %s, "library_ns_p10": %s, "library_ns_p90": %s, "floor_ns": %s, "floor_ns_p10": 1, "floor_ns_p90": 2,
        "ratio": %s, "ratio_p10": 1.011, "ratio_p90": 1.999, "records": %s' "$1" "$2" "$2" $(($2 - 1)) $(($2 + 1)) $(($2 / 2)) "$4" "$3"
    [ -z "$5" ] || printf ', "copy_ns": %s, "copy_ratio": %s, "growth": 1.3' $(($2 / 4)) "$5"
    printf '}'
}
aggregate() { # NAME AGGREGATE TIME UNIT [MORE]
    printf '{"name": "%s_%s", "run_name": "%s", "run_type": "aggregate", "aggregate_name": "%s", "real_time": %s, "time_unit": "%s"%s}' \
        "$1" "$2" "$1" "$2" "$3" "$4" "${5:-}"
}
contest() { # NAME RATIO
    local ratio=${2:+", \"target\": 2.5, \"ratio\": "}
    aggregate "$1" median 1500 ns "${ratio:+$ratio$2}" && printf , && aggregate "$1" p10 999 ns "${ratio:+${ratio}2}" && printf , &&
        aggregate "$1" p90 1 s "${ratio:+${ratio}30}"
}

document() { # STATUS
    run --separate-stderr "$top/bench/java.sh" "$BUILD" Document "$results" "$area/performance.md" "$area/out"
    [ "$status" = "$1" ] || show "exit code $status, not $1"
}
show() {
    printf '%s\n' "$*" "--- standard error:" "$stderr" "--- document:" "$(cat "$area/out/performance.md")"
    return 1
}
has() { grep -qxF -- "$1" "$area/out/performance.md" || show "no line: $1"; }
says() { [[ $stderr = *"$1"* ]] || show "standard error does not say: $1"; }
points() { sed -nE 's/.*<polyline .* points="([^"]*)".*/\1/p' "$area/out/performance/$1"; }

@test "sections are replaced and all other text is kept" {
    document 0
    [ "$(sed '/^<!-- [a-z]* -->$/,/^<!-- end -->$/d' "$area/out/performance.md")" = \
        $'# Before\n\nBetween $1 \\ and\n\nAfter' ] || show "other text changed"
    [ "$(grep -c '^<!-- ' "$area/out/performance.md")" = 10 ] || show "a marker is missing"
    ! grep -qx old "$area/out/performance.md" || show "old content was kept"
    has "Measured on 2026-01-02 on a machine with 2 CPUs of 2600 MHz, with A \$1 VM."
    has "The files have 30 transponders; the import stored 20 records."
}

@test "filling a document again does not change it" {
    document 0
    cp "$area/out/performance.md" "$area/performance.md"
    document 0
    diff "$area/out/performance.md" "$area/performance.md"
}

@test "natives are shown with the floor and a copy, and ratios above their targets are bold" {
    document 0
    has '| `service/read` | 300 ns | 299 ns .. 301 ns | 150 ns | 1.00 ns .. 2.00 ns | 1.10 | 1.01 .. 2.00 |  |  |'
    has '| `service/list:10` | 40.0 ns | 39.0 ns .. 41.0 ns | 20.0 ns | 1.00 ns .. 2.00 ns | **1.25** | 1.01 .. 2.00 | **1.40** | 1.30 |'
}

@test "contests show medians with spread, ratios and targets" {
    results peers "$(contest peers/add/natives ''),$(contest peers/add/rival 2.5),$(contest peers/add/other 2.51)" ''
    document 0
    has '| `peers/add/natives` | 1.50 µs | 999 ns .. 1.00 s |  |  |  |'
    has '| `peers/add/rival` | 1.50 µs | 999 ns .. 1.00 s | 2.50 | 2.00 .. 30.00 | 2.50 |'
    has '| `peers/add/other` | 1.50 µs | 999 ns .. 1.00 s | **2.51** | 2.00 .. 30.00 | 2.50 |'
}

@test "for repetitions, the median and the coefficient of variation are shown" {
    document 0
    has '| `BM_Add` | 40.4 µs | 12 % |'
}

@test "an operation with three sizes gets a plot, with a point for each size" {
    # A record costs the library 4, 40 and 4 ns, and the floor half of that.
    results native "$(native a/list:10 40 10 1 ''),$(native a/list:100 4000 100 1 ''),$(native a/list:1000 4000 1000 1 ''),
        $(native b/list:10 40 10 1 ''),$(native b/list:100 400 100 1 '')" ''
    mkdir "$area/out/performance"
    touch "$area/out/performance/earlier.svg"
    document 0
    [ "$(ls "$area/out/performance")" = native-a-list.svg ] || show "plots: $(ls "$area/out/performance")"
    has '![a/list: time per record against records](performance/native-a-list.svg)'
    read -ra library < <(points native-a-list.svg | sed -n 1p)
    read -ra floor < <(points native-a-list.svg | sed -n 2p)
    [ "$(points native-a-list.svg | wc -l)" = 2 ] || show "not two lines"
    # Both axes are logarithmic: 10 to 1,000 records over 450 units, 2 to 50 ns over 300 units.
    [ "${library[*]}" = "80.0,279.4 305.0,64.8 530.0,279.4" ] || show "library: ${library[*]}"
    [ "${floor[*]}" = "80.0,344.0 305.0,129.4 530.0,344.0" ] || show "floor: ${floor[*]}"
    grep -q '<title>library, 100 records: 40.0 ns</title>' "$area/out/performance/native-a-list.svg"
}

@test "every entrant of a contest with several sizes has a line" {
    entries=
    for size in 10 100 1000; do
        entries+="${entries:+,}$(contest peers/all/natives/$size ''),$(contest "peers/all/a_rival/$size" 1)"
    done
    results peers "$entries" ''
    document 0
    [ "$(points peers-all.svg | wc -l)" = 2 ] || show "not two lines"
    grep -q '>a rival</text>' "$area/out/performance/peers-all.svg"
}

@test "missing results are reported with the command that creates them" {
    rm "$results/host.json"
    document 1
    says "performance: file '$results/host.json' not found; create it with ./tavro bench --json=$results"
    [ -z "$(ls -A "$area/out")" ] || show "something was made"
}

@test "files that are not JSON, or not results, are reported" {
    for text in '' '{' '[]' '{"benchmarks": 3}' '{"context": {}, "benchmarks": [{"run_name": "a"}]}' \
        '{"context": {}, "benchmarks": [{"run_name": "a", "run_type": "iteration", "real_time": 1, "time_unit": "h"}]}'; do
        printf '%s' "$text" >"$results/import.json"
        document 1
        says "'$results/import.json' does not contain benchmark results as JSON"
        [ -z "$(ls -A "$area/out")" ] || show "something was made"
    done
}

@test "a missing or unknown section is an error" {
    sed -i 's/<!-- host -->/<!-- hots -->/' "$area/performance.md"
    document 1
    says "has an unknown or duplicate section 'hots'"
    sed -i '/<!-- hots -->/,/<!-- end -->/d' "$area/performance.md"
    document 1
    says "has no sections [host]"
    [ -z "$(ls -A "$area/out")" ] || show "something was made"
}

@test "docs/performance.md and its plots match their results" {
    results=$top/docs/performance
    cp "$top/docs/performance.md" "$area/performance.md"
    document 0
    diff "$area/out/performance.md" "$top/docs/performance.md"
    diff <(cd "$area/out/performance" && sha256sum -- *.svg) <(cd "$top/docs/performance" && sha256sum -- *.svg)
}
