# ./tavro run: what it builds, how it starts the program, and what it refuses.
load support

program() { : >"$area/Program.java"; }

@test "a program over the stand-ins gets the library and tavro.jar" {
    program
    tavro 0 run Program.java
    called '^cmake --build .*/build/host --target workstation$'
    called "^java -XX:TieredStopAtLevel=1 -XX:.UseSerialGC -Djava.library.path=$clone/build/host/lib:$clone/build/host/lib/scripted -cp .:$clone/build/host/lib/tavro.jar Program.java$"
}

@test "a program over the scripted platform gets it built and selected" {
    program
    fake java <<<'echo "library path ${LD_LIBRARY_PATH:-}" >>"$FAKE_CALLS"'
    tavro 0 run --platform=scripted Program.java
    called '^cmake --build .*/build/host --target workstation scripted_platform$'
    called "^library path $clone/build/host/lib/scripted$"
}

@test "words after the program are its own" {
    mkdir -p "$area/classes"
    tavro 0 run --class-path=classes --java=-ea --java=-Xcheck:jni org.example.Main --help -- --platform=x -h 3,17
    called "^java -XX:TieredStopAtLevel=1 -XX:.UseSerialGC -Djava.library.path=[^ ]* -ea -Xcheck:jni -cp classes:[^ ]*/tavro.jar org.example.Main --help -- --platform=x -h 3,17$"
}

@test "a jar file starts its main class" {
    mkdir -p "$area/META-INF"
    printf 'Manifest-Version: 1.0\r\nMain-Class: org.example.a.long.name.that.takes.two.lines.of.the.manife\r\n st.Main\r\nX: y\r\n' >"$area/META-INF/MANIFEST.MF"
    (cd "$area" && /usr/bin/jar --create --file program.jar --manifest META-INF/MANIFEST.MF META-INF/MANIFEST.MF)
    ln -s "$(readlink -f /usr/bin/jar)" "$bin/jar"
    tavro 0 run program.jar 1
    called "^java .* -cp $area/program.jar:[^ ]*/tavro.jar org.example.a.long.name.that.takes.two.lines.of.the.manifest.Main 1$"
    echo text >"$area/text.jar"
    tavro 1 run text.jar
    says "tavro: run: 'text.jar' is not a jar file with a Main-Class; name its class: --class-path=text.jar CLASS"
}

@test "the exit code of a program is 0 or 1" {
    program
    for code in 1 2 7; do
        FAKE_STATUS=$code tavro 1 run Program.java
    done
}

@test "wrong programs, platforms, class paths and options are refused" {
    program
    refused() { : >"$FAKE_CALLS"; tavro 2 run "${@:2}"; says "$1"; not_called .; }
    refused 'tavro: run: missing argument PROGRAM'
    refused "tavro: run: unknown platform 'memory': use stand-in or scripted" --platform=memory Program.java
    refused "tavro: run: no such class path entry: 'nowhere'" --class-path=.:nowhere Main
    refused "tavro: run: 'ea' is not an option of the virtual machine, such as -ea or -Xcheck:jni" --java=ea Main
    refused "tavro: run: no such file: 'Missing.java'" Missing.java
    refused "tavro: run: no such file: 'missing.jar'" missing.jar
    refused "tavro: run: '1,2' is not a class name, a .java file or a .jar file" 1,2
    refused "tavro: run: unknown option '--platfrom'; did you mean '--platform'?" --platfrom=scripted Main
}

@test "a copy of the example says that it needs a clone" {
    cp -r "$top/examples/channel-store" store
    unset TAVRO
    run ./store/build.sh run
    [ "$status" = 1 ]
    [ "$output" = "build.sh: no clone with ./tavro in '../..'; set TAVRO to its folder: TAVRO=~/tavro ./build.sh" ]
    [ ! -e store/build/classes ]
}
