# Support for tests of ./tavro. Each test uses a copy of it, with fakes first in PATH for programs that would change the
# machine or take long. Each fake appends its name and arguments to $FAKE_CALLS, one line per call.

setup() {
    bats_require_minimum_version 1.5.0
    top=$(readlink -f "$BATS_TEST_DIRNAME/../..")
    # Below /tmp, where other users have access and paths are short.
    area=$(mktemp -d)
    chmod 755 "$area"
    clone=$area/clone
    bin=$area/bin
    export FAKE_CALLS=$area/calls FAKE_MISSING=$area/missing FAKE_FAILS=$area/fails FAKE_NINJA=$area/ninja_output FAKE_STATUS=0
    mkdir "$clone" "$bin"
    cp -r "$top/tavro" "$top/scripts" "$top/help" "$top/CMakePresets.json" "$top/CMakeLists.txt" "$clone"
    : >"$FAKE_CALLS"
    : >"$FAKE_MISSING" # names of packages that are not installed
    : >"$FAKE_FAILS" # names of packages that apt-get cannot install
    echo 'ninja: no work to do.' >"$FAKE_NINJA"
    chmod -R a+rwX "$area"
    export PATH=$bin:/usr/bin:/bin
    unset TAVRO_HOME
    default_fakes
    cd "$area"
}

teardown() { rm -rf "$area"; }

# fake NAME: creates the fake NAME from the shell script on standard input.
fake() {
    { printf '#!/bin/bash\nprintf "%%s\\n" "%s $*" >>"$FAKE_CALLS"\n' "$1"; cat; } >"$bin/$1"
    chmod 755 "$bin/$1"
}

default_fakes() {
    as_root
    fake sleep <<<'exit 0'
    fake dpkg-query <<<'for p in "${@:3}"; do grep -qxF "$p" "$FAKE_MISSING" || echo "installed $p"; done'
    fake dpkg-deb <<<'mkdir -p "$3"'
    fake apt-get <<'END'
words=" $* "
case $words in
*" install "*)
    echo "0 upgraded, 1 newly installed, 0 to remove and 0 not upgraded."
    for word in "$@"; do
        if grep -qxF -e "$word" "$FAKE_FAILS"; then echo "E: Unable to locate package $word"; exit 100; fi
    done
    for word in "$@"; do grep -vxF -e "$word" "$FAKE_MISSING" >"$FAKE_MISSING.new"; cat "$FAKE_MISSING.new" >"$FAKE_MISSING"; done
    ;;
*" download "*) : >"${!#}_1_all.deb" ;;
esac
exit 0
END
    fake cmake <<'END'
if [ "$1" = -S ]; then
    build=$2/build/${4%-tests}
    mkdir -p "$build"
    echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$build/CMakeCache.txt"
    [[ $4 != *-tests ]] || echo BUILD_TESTING:BOOL=ON >>"$build/CMakeCache.txt"
    : >"$build/build.ninja"
    mkdir -p "$build/bin"
    ln -sf "${0%/*}/tavro-conform" "$build/bin"
else
    cat "$FAKE_NINJA"
fi
END
    fake java <<<'exit $FAKE_STATUS'
    fake tavro-conform <<<'exit $FAKE_STATUS'
    fake ctest <<<'exit $FAKE_STATUS'
    mkdir -p "$clone/cmake" "$clone/tests/lanes" "$clone/tests/mutants" "$clone/bench"
    for script in cmake/armhf-root.sh tests/lanes/same_tests.sh tests/mutants/mutate.sh bench/report.sh bench/run.sh; do
        printf '#!/bin/sh\necho "%s $*" >>"$FAKE_CALLS"\nexit $FAKE_STATUS\n' "${script##*/}" >"$clone/$script"
        chmod 755 "$clone/$script"
    done
}

# Makes the tool look newer than its sources, so that its commands call only java.
built() {
    mkdir -p "$clone"/{channellist,cmake,host,include,java/src/main,jni,layouts,text} "$clone/build/host/lib"
    : >"$clone/java/CMakeLists.txt"
    touch -d '1 hour ago' "$area/before"
    find "$clone" -exec touch -r "$area/before" {} +
    : >"$clone/build/host/lib/tavro.jar"
    printf '%s\n' "$clone" >"$clone/build/host/.tool_built"
}

as_root() { printf '#!/bin/sh\ncase $1 in -un) echo root;; *) echo 0;; esac\n' >"$bin/id"; chmod 755 "$bin/id"; }

# An ordinary user; sudo exists and refuses.
as_user() {
    printf '#!/bin/sh\ncase $1 in -un) echo user;; *) echo 1000;; esac\n' >"$bin/id"
    fake sudo <<<'exit 1'
}

# tavro STATUS WORD...: runs ./tavro and expects an exit code. The output is in $output and $stderr. Does not use bats's
# run, which takes as long as ./tavro.
tavro() {
    local expected=$1
    shift
    status=0
    "$clone/tavro" "$@" >"$area/.output" 2>"$area/.stderr" || status=$?
    output=$(<"$area/.output")
    stderr=$(<"$area/.stderr")
    [ "$status" = "$expected" ] || show "exit code $status, not $expected: tavro $*"
}

# Fails with a message and the command's output.
show() {
    printf '%s\n' "$*" "--- standard output:" "$output" "--- standard error:" "$stderr" "--- calls:" "$(cat "$FAKE_CALLS")"
    return 1
}

says() { [[ $stderr = *"$1"* ]] || show "standard error does not say: $1"; }
says_not() { [[ $stderr != *"$1"* ]] || show "standard error says: $1"; }
prints() { [[ $output = *"$1"* ]] || show "standard output does not say: $1"; }
called() { grep -qE -- "$1" "$FAKE_CALLS" || show "not called: $1"; }
not_called() { ! grep -qE -- "$1" "$FAKE_CALLS" || show "called: $1"; }
all_commands() { (cd "$clone/help" && printf '%s\n' *.txt) | sed 's/\.txt$//; /^tavro$/d'; }

# on_terminal STATUS WORD...: runs ./tavro on a pseudo-terminal. The output is in $output.
on_terminal() {
    local expected=$1
    shift
    script -qec true /dev/null >/dev/null 2>&1 || skip "this machine has no pseudo-terminals (/dev/pts)"
    run --separate-stderr script -qec "'$clone/tavro' $*" /dev/null
    [ "$status" = "$expected" ] || show "exit code $status, not $expected, on a terminal: tavro $*"
}

# until_true COMMAND...: waits up to 30 s until the command succeeds.
until_true() {
    local end=$((SECONDS + 30))
    until "$@"; do
        [ $SECONDS -lt $end ] || show "never true: $*"
        /bin/sleep 0.05
    done
}
