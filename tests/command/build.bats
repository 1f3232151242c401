# How ./tavro builds, and its exit codes.
load support

@test "every command that uses the library builds it first" {
    for words in demo 'list 1' 'show 1,2' 'import f'; do
        : >"$FAKE_CALLS"
        tavro 0 $words
        [ "$(grep -nE '^cmake --build .*/build/host --target workstation$' "$FAKE_CALLS" | cut -d : -f 1)" -lt \
            "$(grep -n '^java' "$FAKE_CALLS" | cut -d : -f 1)" ] || show "java ran before the build"
    done
}

@test "a build is configured only when necessary" {
    tavro 0 list 1
    called '^cmake -S .* --preset host$'
    : >"$FAKE_CALLS"
    tavro 0 list 1
    not_called '^cmake -S'
    touch -d '1 hour ago' "$clone/build/host/build.ninja"
    tavro 0 list 1
    called '^cmake -S .* --preset host$'
}

@test "tests are added to the build once, and stay" {
    tavro 0 demo
    called '^cmake -S .* --preset host$'
    tavro 0 test --quick
    called '^cmake -S .* --preset host-tests$'
    called '^cmake --build .* --target all$'
    : >"$FAKE_CALLS"
    tavro 0 demo
    tavro 0 test --quick
    not_called '^cmake -S'
}

@test "a build folder copied from another clone is recreated" {
    tavro 0 list 1
    cp -r "$clone" "$area/copy"
    clone=$area/copy
    touch "$clone/build/host/of-the-other"
    : >"$FAKE_CALLS"
    tavro 0 list 1
    called "^cmake -S $area/copy --preset host$"
    [ ! -e "$clone/build/host/of-the-other" ] || show "the folder was kept"
}

@test "the tool starts at once if it is newer than its sources" {
    mkdir -p "$clone"/{channellist,cmake,host,include,java/src/main,jni,layouts,text}
    : >"$clone/java/CMakeLists.txt"
    touch -d '1 hour ago' "$area/before"
    find "$clone" -exec touch -r "$area/before" {} +
    builds() { : >"$FAKE_CALLS"; tavro 0 list 1; called "^java .* list -- 1$"; called '^cmake --build '; }
    builds
    builds # there is no jar
    mkdir -p "$clone/build/host/lib"
    : >"$clone/build/host/lib/tavro.jar"
    : >"$FAKE_CALLS"
    flock "$clone/build/.lock" "$clone/tavro" list 1 # while another command holds the lock
    [ "$(sed 's/ .*//' "$FAKE_CALLS")" = java ] || show "more than java was called"
    touch "$clone/jni"
    builds
    touch -d '1 minute' "$clone/java/CMakeLists.txt"
    builds
    touch -r "$area/before" "$clone/java/CMakeLists.txt"
    rmdir "$clone/text"
    builds
    mkdir "$clone/text"
    touch -r "$area/before" "$clone/text"
    cp -rp "$clone" "$area/copy"
    clone=$area/copy builds
}

@test "nothing is printed when everything is up to date" {
    tavro 0 list 1
    printf '[0/2] Re-checking globbed directories...\nninja: no work to do.\n' >"$FAKE_NINJA"
    tavro 0 list 1
    [ -z "$stderr" ] || show "something on standard error"
}

@test "without a terminal, progress is printed every ten seconds" {
    fake cmake <<'END'
if [ "$1" = -S ]; then mkdir -p "$2/build/host"; echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$2/build/host/CMakeCache.txt"; exit; fi
echo '[1/56] Building CXX object one.o'
echo '[3/56] Building CXX object two.o'
for ((i = 0; i < 600; i++)); do # until the progress was printed, 30 s at most
    ! grep -q step "$FAKE_CALLS.stderr" || exit 0
    /bin/sleep 0.05
done
exit 1
END
    : >"$FAKE_CALLS.stderr"
    "$clone/tavro" build 2>"$FAKE_CALLS.stderr"
    diff - "$FAKE_CALLS.stderr" <<END
Configuring (host) …
Building (host) …
  step 3 of 56
$clone/build/host/lib/libvelotra_tavro_channellist.so
END
}

@test "on a terminal, one line shows the progress" {
    printf '[1/2] Building CXX object one.o\n[2/2] Linking two.so\n' >"$FAKE_NINJA"
    on_terminal 0 build
    prints $'\r\e[K[1/2] Building CXX object one.o\r\e[K[2/2] Linking two.so\r\e[K'
}

@test "a failed build shows only its own errors" {
    tavro 0 build
    echo 'old.cpp:1: error: of an earlier build' >"$clone/build/host.log"
    fake cmake <<'END'
echo '[1/2] Building CXX object new.o'
echo 'FAILED: new.o'
echo 'new.cpp:7: error: something is wrong'
exit 1
END
    tavro 1 build
    says "new.cpp:7: error: something is wrong"
    says "the build failed; the full log is $clone/build/host.log"
    says_not "earlier build"
    not_called '^java'
}

@test "a failed configuration shows its error" {
    fake cmake <<<'echo "-- Found something"; echo "CMake Error at CMakeLists.txt:1:"; echo "  no compiler"; exit 1'
    tavro 1 list 1
    says "  no compiler"
    says_not "Found something"
    not_called '^cmake --build'
}

@test "a build folder of another user is reported, and nothing else is printed" {
    rm "$bin/id"
    if [ "$(id -u)" = 0 ]; then
        mkdir "$clone/build"
        other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
        owner='it belongs to root; run as root, or use a clone of your own'
    else
        mkdir -m 555 "$clone/build"
        other=(env)
        owner='its permissions or its file system do not allow it; make it writable, or use another clone'
    fi
    for command in demo 'list 1' build test report; do
        run --separate-stderr "${other[@]}" "$clone/tavro" $command
        [ "$status" = 1 ] || show "exit code $status: $command"
        [ "$stderr" = "tavro: build folder $clone/build is not writable: $owner" ] || show "not that message"
    done
    chmod 755 "$clone/build"
    not_called .
}

@test "a clone in which no build folder can be created is reported" {
    rm "$bin/id"
    other=(env)
    [ "$(id -u)" != 0 ] || other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    chmod 555 "$clone"
    run --separate-stderr "${other[@]}" "$clone/tavro" build
    chmod 755 "$clone"
    [ "$status" = 1 ] || show "exit code $status"
    says "tavro: build folder $clone/build is not writable"
    not_called .
}

# Holds the clone's lock, like another command, until the folder $area/held is removed.
hold_lock() {
    mkdir -p "$clone/build" "$area/held"
    printf "'tavro test' (process 4711)" >"$clone/build/.lock"
    flock "$clone/build/.lock" bash -c 'touch "$0/ready"; while [ -e "$0" ]; do /bin/sleep 0.05; done' "$area/held" 3>&- &
    until_true test -e "$area/held/ready"
}

@test "two commands in a clone wait for each other" {
    hold_lock
    "$clone/tavro" list 1 2>"$area/stderr" 3>&- &
    until_true grep -q . "$area/stderr"
    [ "$(cat "$area/stderr")" = "Waiting for 'tavro test' (process 4711) to finish in this clone …" ] || show "$(cat "$area/stderr")"
    not_called '^cmake'
    rm -r "$area/held"
    wait $!
    called '^java'
}

@test "help and wrong usage do not wait" {
    hold_lock
    tavro 0 list --help
    tavro 2 lits
    rm -r "$area/held"
}

@test "demo and test hold the lock to their end, list releases it" {
    for program in java ctest; do
        fake $program <<<'flock -n "${0%/bin/*}/clone/build/.lock" true && echo free >>"$FAKE_CALLS" || echo taken >>"$FAKE_CALLS"'
    done
    for words in demo 'test --quick'; do
        : >"$FAKE_CALLS"
        tavro 0 $words
        called '^taken$'
    done
    : >"$FAKE_CALLS"
    tavro 0 list 1
    called '^free$'
}

@test "child processes do not inherit the lock" {
    for program in java cmake ctest; do
        sed -i '2a ls -l /proc/self/fd | grep -q build/.lock \&\& echo "inherited by $0" >>"$FAKE_CALLS"' "$bin/$program"
    done
    tavro 0 demo
    tavro 0 test --quick
    called '^ctest'
    not_called '^inherited'
}

@test "if a child process fails, the exit code is 1" {
    FAKE_STATUS=8 tavro 1 test --quick
    FAKE_STATUS=8 tavro 1 test
    FAKE_STATUS=3 tavro 1 bench
    FAKE_STATUS=3 tavro 1 report
    FAKE_STATUS=134 tavro 1 list 1
    FAKE_STATUS=5 tavro 1 demo
}

@test "an unexpected exit code of an inner program becomes 1, with a message" {
    for code in 2 3 66 127; do
        fake flock <<<"[ \"\$1\" = -n ] && exit 1; exit $code" # busy, and then waiting fails
        tavro 1 list 1
        says "tavro: failed: the last program returned exit code $code"
    done
    not_called '^java'
    rm "$bin/flock"
    FAKE_STATUS=134 tavro 1 list 1
    says "tavro: the process was ended by signal 6 (SIGABRT)"
    fake java <<<'echo "last words" >&2; kill -9 $$'
    tavro 1 list 1
    [ "$stderr" = "last words
tavro: the process was ended by signal 9 (SIGKILL)" ]
}

# killed_during PROGRAM WORD...: kills ./tavro while it runs PROGRAM, and expects PROGRAM to be terminated.
killed_during() {
    fake "$1" <<'END'
trap 'echo "${0##*/} was ended" >>"$FAKE_CALLS"; exit 1' TERM
: >"$FAKE_CALLS.running"
while [ -e "$FAKE_CALLS" ]; do /bin/sleep 0.05; done # until the test ends
END
    rm -f "$FAKE_CALLS.running"
    "$clone/tavro" "${@:2}" >/dev/null 2>&1 3>&- &
    until_true test -e "$FAKE_CALLS.running"
    kill -KILL $!
    until_true grep -q "^$1 was ended" "$FAKE_CALLS"
}

@test "killing ./tavro ends the program that it runs" {
    killed_during java list 1
    killed_during ctest test --quick
    killed_during cmake build
}

@test "the tool's exit codes 0, 1 and 2 are passed on" {
    for code in 0 1 2; do
        for words in 'list 1' 'show 1,2' 'import f'; do FAKE_STATUS=$code tavro $code $words; done
    done
}

@test "java reads file names as UTF-8 in every locale" {
    fake java <<<'echo "LC_ALL=${LC_ALL-unset} $*" >>"$FAKE_CALLS"'
    for settings in 'LC_ALL=' 'LC_ALL=C' 'LC_CTYPE=POSIX' 'LANG=xx_XX.ISO-8859-1'; do
        : >"$FAKE_CALLS"
        run --separate-stderr env -i PATH="$PATH" HOME="$area" FAKE_CALLS="$FAKE_CALLS" FAKE_MISSING="$FAKE_MISSING" \
            FAKE_NINJA="$FAKE_NINJA" "$settings" "$clone/tavro" import Türksat-42E
        [ "$status" = 0 ] || show "exit code $status: $settings"
        called '^LC_ALL=C.UTF-8 .* import -- Türksat-42E$'
    done
    : >"$FAKE_CALLS"
    fake locale <<<'exit 127' # as if not installed
    LC_ALL=C tavro 0 list 1
    called '^LC_ALL=C.UTF-8 '
}

@test "the user's own UTF-8 locale is kept" {
    fake java <<<'echo "LC_ALL=${LC_ALL-unset} LANG=$LANG" >>"$FAKE_CALLS"'
    unset LC_ALL LC_CTYPE
    LANG=C.UTF-8 tavro 0 list 1
    called '^LC_ALL=unset LANG=C.UTF-8$'
}

@test "a missing java is reported" {
    mkdir "$area/few"
    ln -s /usr/bin/* "$area/few"
    rm "$area/few/java" "$bin/java"
    run --separate-stderr env PATH="$bin:$area/few" "$clone/tavro" list 1
    [ "$status" = 1 ] || show "exit code $status"
    says "java is not in PATH"
}

@test "the real tree configures without the packages of tests" {
    rm "$bin/cmake"
    cmake -S "$top" -B "$area/build" -G Ninja -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON >"$area/log" 2>&1 || show "$(cat "$area/log")"
    targets=$(cmake --build "$area/build" -- -t targets all)
    [[ $targets = *"lib/tavro.jar"* || $targets = *tavro_jar* ]]
    [[ $targets = *libvelotra_tavro_channellist.so* ]]
    for name in gtest unit_tests host_tests tavro_tests_jar host_bench import_floor bench_jar java_contract; do
        [[ $targets != *"$name"* ]] || show "there is a target $name"
    done
    # The scripted platform is there for ./tavro run, and not built before.
    [[ $targets = *scripted_platform* ]]
    ! cmake --build "$area/build" -- -t commands all | grep -q scripted || show "every build includes the scripted platform"
    ! grep -rq 'googletest\|junit' "$area/build/build.ninja" || show "the build uses packages of tests"
}
