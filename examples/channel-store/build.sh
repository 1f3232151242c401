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

compile() { # FOLDER FILE...
    folder=$1
    shift
    rm -rf "$folder"
    mkdir -p "$folder"
    javac -J-XX:TieredStopAtLevel=1 -J-XX:+UseSerialGC -Xlint:all -Werror --release 17 -encoding UTF-8 -d "$folder" \
        -cp "build/classes:$TAVRO/build/host/lib/tavro.jar:$JUNIT" "$@"
}

compile build/classes src/com/example/channels/*.java
case ${1:-compile} in
compile) ;;
test)
    compile build/tests test/com/example/channels/*.java
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
