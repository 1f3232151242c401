# The Java benchmark programs, with as few rounds as possible: they measure the right thing; times do not matter.

setup() {
    bats_require_minimum_version 1.5.0
    top=$(readlink -f "$BATS_TEST_DIRNAME/../..")
    area=$(mktemp -d)
    export TAVRO_HOME=$area/home
    mkdir "$TAVRO_HOME" "$area/tables"
    cat >"$area/tables/one" <<'END'
[A]
	DELIVERY_SYSTEM = DVBT
	FREQUENCY = 474000000
	BANDWIDTH_HZ = 8000000
[B]
	DELIVERY_SYSTEM = DVBT
	FREQUENCY = 482000000
	BANDWIDTH_HZ = 8000000
END
    cp "$area/tables/one" "$area/tables/two"
}
teardown() { rm -rf "$area"; }

java_bench() { # STATUS PROGRAM ARGUMENT...
    run --separate-stderr "$top/bench/java.sh" "$BUILD" "${@:2}"
    [ "$status" = "$1" ] || show "exit code $status, not $1: ${*:2}"
}
import_bench() { # STATUS OPTION...
    java_bench "$1" ImportBench "${@:2}" -- "$BUILD/bin/import_floor" java "-Djava.library.path=$BUILD/lib" \
        -cp "$BUILD/lib/tavro.jar" com.velotra.tv.tavro.tool.Main import "$area/tables"
}
show() {
    printf '%s\n' "$*" "--- standard output:" "$output" "--- standard error:" "$stderr"
    return 1
}

@test "all entrants use the same records, and the databases contain the added records" {
    java_bench 0 PeerBench --quick --benchmark_repetitions=1 --benchmark_filter='add_one|read_all/natives/100$' \
        --benchmark_out="$area/peers.json"
    diff <(sed -n 's/.*"run_name": "peers\/\(.*\)",$/\1/p' "$area/peers.json" | uniq) - <<END
add_one/natives
add_one/sqlite_jdbc_blobs
add_one/sqlite_jdbc_columns
read_all/natives/100
read_all/sqlite_jdbc_blobs/100
read_all/sqlite_jdbc_columns/100
read_all/json/100
read_all/serialization/100
END
    # 2,000 adds to warm up, and one round of 500.
    added='SELECT count(*), length(max(bytes))'
    [ "$(sqlite3 "$TAVRO_HOME/lists.db" "$added FROM records WHERE kind = 1 AND list_id = 1")" = "2500|552" ] || show "natives"
    [ "$(sqlite3 "$TAVRO_HOME/adds-blobs.db" "$added FROM services")" = "2500|552" ] || show "blobs"
    [ "$(sqlite3 "$TAVRO_HOME/adds-columns.db" 'SELECT count(*), max(name), sum(broadcastType = 2) FROM services')" = \
        "2500|Service number 9|2500" ] || show "columns"
}

@test "the databases of natives and other entrants are equally durable" {
    java_bench 0 PeerBench --quick --benchmark_repetitions=1 --benchmark_filter=add_one
    for database in lists adds-blobs adds-columns; do
        [ "$(sqlite3 "$TAVRO_HOME/$database.db" 'PRAGMA journal_mode; PRAGMA page_size')" = $'wal\n4096' ] || show "$database"
    done
    # Some settings are not stored in the database; look for them in the sources. The stand-in makes checkpoints itself.
    local storage=host/services/storage.cpp other
    sets 'PRAGMA synchronous = NORMAL' $storage
    sets 'kFramesUntilCheckpoint = 1000;' $storage
    for other in bench/import_floor.cpp bench/java/com/velotra/tv/tavro/bench/SqliteJdbc.java; do
        sets 'PRAGMA synchronous = NORMAL' $other
        sets 'PRAGMA wal_autocheckpoint = 1000' $other
    done
}
sets() { grep -q "$1" "$top/$2" || show "$2 does not contain '$1'"; }

@test "a filter selects whole contests, a negative filter excludes them, and names can be listed" {
    java_bench 0 PeerBench --benchmark_list_tests --benchmark_filter='one.*blobs|/600'
    [ "$(wc -l <<<"$output")" = 7 ] || show "not the names that match"
    java_bench 0 PeerBench --benchmark_list_tests --benchmark_filter='-read|write'
    [ "$output" = $'peers/add_one/natives\npeers/add_one/sqlite_jdbc_blobs\npeers/add_one/sqlite_jdbc_columns' ] || show "not the names that do not match"
    [ -z "$(ls -A "$TAVRO_HOME")" ] || show "something was measured"
}

@test "an import is compared with adding the stored rows, and one row per transponder" {
    import_bench 0 --benchmark_repetitions=1 --benchmark_out="$area/import.json"
    grep -q '"transponders": 4,' "$area/import.json" || show "transponders: $(cat "$area/import.json")"
    grep -q '"stored_rows": 2$' "$area/import.json" || show "rows: $(cat "$area/import.json")"
    [ "$(grep -c '"aggregate_name": "median"' "$area/import.json")" = 3 ] || show "not three results"
    [[ $output = *"4 transponders in the files, 2 rows stored"* ]] || show "no counts"
}

@test "a failing import is reported with its output" {
    rm -r "$area/tables"
    import_bench 1
    [[ $stderr = *"exit code 1"*"$area/tables"* ]] || show "not the reason"
}

@test "import_floor adds the records of the lists, repeatedly if necessary" {
    import_bench 0 --benchmark_repetitions=1
    from=$(echo "$TAVRO_HOME"/import-*/lists.db | cut -d ' ' -f 1)
    [[ $("$BUILD/bin/import_floor" "$from" "$area/floor.db" 5) =~ ^5\ [1-9][0-9]*$ ]]
    [ "$(sqlite3 "$area/floor.db" 'SELECT count(*), count(DISTINCT bytes), min(length(bytes)) FROM records')" = "5|2|724" ]
    [ "$(sqlite3 "$area/floor.db" 'PRAGMA journal_mode')" = wal ]
    run --separate-stderr "$BUILD/bin/import_floor" "$area/none.db" "$area/other.db"
    [ "$status" = 1 ] || show "exit code $status"
    [[ $stderr = *"cannot copy the records of '$area/none.db'"*"unable to open database file"* ]] || show "not the reason"
}
