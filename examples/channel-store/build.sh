#!/bin/sh
# Compiles the example into build/, and runs its tests or the example itself:
#
#   ./build.sh [test | run]
#
# TAVRO is the clone with ./tavro (default: the one that this folder is in), and JUNIT the jar of JUnit 5's console.
set -eu
cd "$(dirname "$0")"
TAVRO=${TAVRO:-../..}
JUNIT=${JUNIT:-/usr/share/java/junit-platform-console-standalone.jar}

compile() { # FOLDER CLASS_PATH FILE...
    folder=$1 class_path=$2
    shift 2
    rm -rf "$folder"
    mkdir -p "$folder"
    javac -J-XX:TieredStopAtLevel=1 -J-XX:+UseSerialGC -Xlint:all -Werror --release 17 -encoding UTF-8 -d "$folder" \
        -cp "$class_path" "$@"
}

[ -x "$TAVRO/tavro" ] || {
    echo "build.sh: no clone with ./tavro in '$TAVRO'; set TAVRO to its folder: TAVRO=~/tavro ./build.sh" >&2
    exit 1
}
tavro_jar=$TAVRO/build/host/lib/tavro.jar
[ -f "$tavro_jar" ] || "$TAVRO/tavro" build >/dev/null
compile build/classes "$tavro_jar" src/com/example/channels/*.java
case ${1:-compile} in
compile) ;;
test)
    [ -f "$JUNIT" ] || {
        echo "build.sh: no such file: $JUNIT; install the package junit5, or set JUNIT to the jar of its console" >&2
        exit 1
    }
    compile build/tests "build/classes:$tavro_jar:$JUNIT" test/com/example/channels/*.java
    exec "$TAVRO/tavro" run --platform=scripted --java=-ea --class-path="build/classes:build/tests:$JUNIT" \
        org.junit.platform.console.ConsoleLauncher --disable-banner --disable-ansi-colors --details=tree \
        --details-theme=ascii -c com.example.channels.ChannelStoreTest
    ;;
run) exec "$TAVRO/tavro" run --class-path=build/classes com.example.channels.Main ;;
*)
    echo "build.sh: unknown argument '$1'; write ./build.sh, ./build.sh test or ./build.sh run" >&2
    exit 2
    ;;
esac
