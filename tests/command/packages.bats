# How ./tavro installs the Debian packages that a command needs.
load support

line='apt-get update && apt-get install -y --no-install-recommends'

@test "apt is not run when every package is installed" {
    tavro 0 list 1
    not_called '^apt-get'
    tavro 0 test --quick
    not_called '^apt-get .*install'
}

@test "root installs exactly the missing packages" {
    printf '%s\n' cmake g++ junit5 golang-go >"$FAKE_MISSING"
    tavro 0 list 1
    called '^apt-get .*update'
    called '^apt-get .*-y install --no-install-recommends cmake g\+\+$'
    says "Installing Debian packages: cmake g++"
}

@test "only test and bench need the packages of tests and benchmarks" {
    bench='googletest junit5 libbenchmark-dev libxerial-sqlite-jdbc-java libxerial-sqlite-jdbc-jni'
    printf '%s\n' $bench bats checkstyle clang-14 g++-arm-linux-gnueabihf qemu-user >"$FAKE_MISSING"
    for words in demo 'list 1' 'show 1,2' 'import f' build 'build debug' 'build asan'; do tavro 0 $words; done
    not_called '^apt-get .*install'
    tavro 0 report
    called '--no-install-recommends qemu-user$'
    tavro 0 bench
    called "--no-install-recommends $bench$"
    tavro 0 build clang
    called '--no-install-recommends clang-14$'
    tavro 0 report arm
    called '--no-install-recommends g\+\+-arm-linux-gnueabihf$'
    tavro 0 test --quick
    called '--no-install-recommends bats checkstyle$'
}

@test "without root, one line installs everything for the next attempt" {
    as_user
    printf '%s\n' cmake sqlite3 >"$FAKE_MISSING"
    tavro 1 demo
    not_called '^(apt-get|cmake|java)'
    [ "$(grep -c "$line" <<<"$stderr")" = 1 ] || show "not one line"
    bash -c "$(grep "$line" <<<"$stderr")"
    tavro 0 demo
    called '^java .* demo '
}

@test "for test, the line includes the packages of build, tests and device checks" {
    as_user
    printf '%s\n' cmake bats golang-go >"$FAKE_MISSING"
    tavro 1 test --quick
    says "$line bats cmake golang-go"
}

@test "the tests run without the packages of device checks" {
    as_user
    printf '%s\n' golang-go lld-14 >"$FAKE_MISSING"
    tavro 0 test --quick
    says "$line golang-go lld-14"
    says "Tests that need them will be skipped."
    called '^ctest'
}

@test "only the full test and setup install a browser" {
    printf '%s\n' chromium chromium-driver fonts-dejavu-core >"$FAKE_MISSING"
    for words in demo 'list 1' bench 'test --quick'; do tavro 0 $words; done
    not_called '^apt-get .*install'
    for words in test setup; do
        printf '%s\n' chromium chromium-driver fonts-dejavu-core >"$FAKE_MISSING"
        : >"$FAKE_CALLS"
        tavro 0 $words
        called '--no-install-recommends chromium chromium-driver fonts-dejavu-core$'
    done
    as_user
    echo chromium >"$FAKE_MISSING"
    tavro 0 test
    says "Tests that need them will be skipped."
}

@test "if packages of device checks cannot be installed, the others are" {
    printf '%s\n' bats golang-go >"$FAKE_MISSING"
    echo golang-go >"$FAKE_FAILS"
    tavro 0 test --quick
    says "Tests that need golang-go will be skipped."
    grep -qxF golang-go "$FAKE_MISSING"
    ! grep -qxF bats "$FAKE_MISSING" || show "bats was not installed"
    called '^ctest'
}

@test "sudo is used if it needs no password" {
    as_user
    fake sudo <<<'[ "$1" = -n ] && shift && exec "$@"'
    echo cmake >"$FAKE_MISSING"
    tavro 0 list 1
    called '^sudo -n env .*apt-get .*install .*cmake'
    not_called '^sudo -v'
}

@test "sudo asks for a password on a terminal" {
    as_user
    fake sudo <<<'[ "$1" = -n ] && exit 1; [ "$1" = -v ] && exit 0; exec "$@"'
    echo cmake >"$FAKE_MISSING"
    on_terminal 0 list 1
    prints "sudo may ask for your password to install these Debian packages: cmake"
    called '^sudo -v$'
    called '^sudo env .*apt-get .*install .*cmake'
}

@test "without a terminal sudo never asks for a password" {
    as_user
    fake sudo <<<'[ "$1" = -n ] && exit 1; exec "$@"'
    echo cmake >"$FAKE_MISSING"
    tavro 1 list 1 </dev/null
    not_called '^sudo (-v|env)'
    says "$line cmake"
}

@test "if sudo refuses, the line for root is printed" {
    as_user
    echo cmake >"$FAKE_MISSING"
    on_terminal 1 list 1
    called '^sudo -v$'
    prints "$line cmake"
}

@test "apt waits for a running dpkg" {
    echo cmake >"$FAKE_MISSING"
    fake apt-get <<'END'
case " $* " in *" install "*)
    echo 'Waiting for cache lock: Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 12 (apt)...'
    : >"$FAKE_MISSING" ;;
esac
END
    tavro 0 list 1
    called '^apt-get .*DPkg::Lock::Timeout=600 .*install'
    says "Waiting for another apt or dpkg to finish (Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 12"
}

@test "apt waits for the lock of the package lists" {
    echo cmake >"$FAKE_MISSING"
    fake apt-get <<'END'
case " $* " in
*" update "*)
    [ "$(grep -c '^apt-get .*update' "$FAKE_CALLS")" -gt 2 ] && exit 0
    echo 'E: Could not get lock /var/lib/apt/lists/lock. It is held by process 34 (apt-get)'
    exit 100 ;;
*" install "*) : >"$FAKE_MISSING" ;;
esac
END
    tavro 0 list 1
    [ "$(grep -c 'Waiting for another apt to finish (Could not get lock .* process 34' <<<"$stderr")" = 1 ] || show "not one message"
    [ "$(grep -c '^apt-get .*update' "$FAKE_CALLS")" = 3 ] || show "not three attempts"
    [ "$(grep -c '^apt-get .*install' "$FAKE_CALLS")" = 1 ] || show "not one installation"
}

@test "a failing apt is tried three times, with increasing pauses" {
    printf '%s\n' cmake >"$FAKE_MISSING"
    printf '%s\n' cmake >"$FAKE_FAILS"
    tavro 1 list 1
    [ "$(grep -c '^apt-get .*install' "$FAKE_CALLS")" = 3 ] || show "not three attempts"
    [ "$(grep '^sleep' "$FAKE_CALLS" | tr '\n' ' ')" = "sleep 5 sleep 10 " ] || show "no increasing pauses"
    says "apt failed (attempt 1 of 3); trying again in 5 s"
    says "apt failed (attempt 2 of 3); trying again in 10 s"
    says "E: Unable to locate package cmake"
    says "could not install the packages; the log is $clone/build/setup.log"
    not_called '^cmake'
}

@test "an unreachable package source does not stop an installation" {
    echo cmake >"$FAKE_MISSING"
    fake apt-get <<'END'
case " $* " in *" update "*) echo 'E: The repository is gone'; exit 100 ;; *" install "*) : >"$FAKE_MISSING" ;; esac
END
    tavro 0 list 1
    called '^cmake'
}

@test "a machine without apt is reported" {
    rm "$bin/apt-get"
    mkdir "$area/few"
    for program in bash cat dirname find flock git grep mkdir readlink sed sort stat; do ln -s "/usr/bin/$program" "$area/few"; done
    run --separate-stderr env PATH="$area/few:$bin" /bin/bash "$clone/tavro" list 1
    [ "$status" = 1 ] || show "exit code $status"
    says "apt-get not found"
}

@test "data packages are downloaded once, without root" {
    as_user
    tavro 0 demo
    called '^apt-get -q download vdr$'
    not_called '^sudo'
    : >"$FAKE_CALLS"
    tavro 0 demo
    not_called '^apt-get'
}

@test "data that cannot be unpacked is reported and downloaded again next time" {
    fake dpkg-deb <<<'mkdir -p "$3"; echo "dpkg-deb: error: not a Debian format archive"; exit 2'
    tavro 1 demo
    says "dpkg-deb: error: not a Debian format archive"
    says "tavro: could not unpack the Debian package vdr"
    says "The log is $clone/build/fetch.log"
    [ -z "$(ls -A "$clone/build/sources")" ] || show "part of it was kept"
    not_called '^java'
    fake dpkg-deb <<<'mkdir -p "$3"'
    tavro 0 demo
    [ "$(grep -c '^apt-get -q download vdr' "$FAKE_CALLS")" = 2 ] || show "not fetched again"
}

@test "data that cannot be downloaded is reported, with what to do" {
    as_user
    fake apt-get <<<'echo "E: Unable to locate package $3"; exit 100'
    tavro 1 demo
    says "E: Unable to locate package vdr"
    says "could not download the Debian package vdr"
    says "'apt-get update' as root"
    [ -z "$(ls -A "$clone/build/sources")" ] || show "part of it was kept"
    not_called '^java'
}
