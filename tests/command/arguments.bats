# How ./tavro reads its arguments, which comes before anything else.
load support
. "$BATS_TEST_DIRNAME/../../scripts/arguments.sh"

# Arguments that a command accepts: a value for each word that its usage line requires.
arguments_of() (
    trap - DEBUG # bats runs it for every line
    local word needed=() allowed=0 unlimited=no
    local -A takes short
    root=$clone read_usage "$1"
    for word in "${needed[@]}"; do
        case $word in
        FILE*) echo file ;;
        LIST,RECORD*) echo 1,2 ;;
        ID | LIST) echo 1 ;;
        TARGET) echo identifier ;;
        COMMAND) echo lists ;;
        *) echo "${word%...}" ;;
        esac
    done
)

# The options in a help text, one per line: the short form or -, the long form, and its value if it has one.
options_of() {
    sed -nE 's/^  (-[a-z], |    )(--[a-z][a-z_-]*)(\[?=)?([^] ]*).*/\1 \2 \4/p' "$clone/help/$1.txt" | sed 's/^     /- /; s/,//'
}

refused() { # TEXT WORD...: expects wrong usage: two lines on standard error, and nothing done
    tavro 2 "${@:2}"
    says "$1"
    says "tavro --help" || says "tavro $2 --help"
    [ "$(wc -l <<<"$stderr")" = 2 ] || show "more than two lines"
    [ -z "$output" ] || show "something on standard output"
    nothing_done
}
prints_help() {
    tavro 0 $words
    [ "$output" = "$(<"$clone/help/$command.txt")" ] || show "not the help of $command: $words"
    [ -z "$stderr" ] || show "something on standard error"
}
nothing_done() {
    [ ! -s "$FAKE_CALLS" ] || show "programs were called"
    [ ! -e "$clone/build" ] || show "a build folder was created"
}

@test "without arguments the overview is printed" {
    tavro 0
    [ "$output" = "$(cat "$clone/help/tavro.txt")" ] || show "not the overview"
    nothing_done
}

@test "--help, -h and help print the overview and do nothing else" {
    for words in --help -h help 'help --help'; do
        tavro 0 $words
        [ "$output" = "$(cat "$clone/help/tavro.txt")" ] || show "not the overview"
    done
    nothing_done
}

@test "every command prints its help and does nothing else" {
    [ "$(all_commands | wc -l)" -ge 11 ]
    for command in $(all_commands); do
        for words in "$command --help" "help $command"; do prints_help; done
    done
    for words in 'list -h' 'list 1 --help' 'import --list -h' 'set --help 1,2 name=x'; do
        command=${words%% *}
        prints_help
    done
    nothing_done
}

@test "a failure to write the help or the version is reported" {
    for words in --help 'demo --help' 'help list' --version; do
        run --separate-stderr bash -c '"$@" >/dev/full' bash "$clone/tavro" $words
        [ "$status" = 1 ] || show "exit code $status: $words"
        says "No space left on device"
        says "tavro: "
    done
}

@test "the overview lists exactly the commands that have a help text" {
    diff <(sed -n 's/^  \([a-z][a-z]*\) .*/\1/p' "$clone/help/tavro.txt" | grep -v '^help$' | sort) <(all_commands)
}

@test "every option in a help text is accepted and passed on" {
    built
    seen=0
    for command in $(all_commands); do
        long=() short=() expected=()
        while read -r letter name value; do
            [ "$name" != --help ] || continue
            sample=7
            [ "$name" != --kind ] || sample=networks
            [ "$name" != --tree ] && [ "$name" != --class-path ] || sample=$area
            [ "$name" != --platform ] || sample=scripted
            [ "$command$name" != trace--format ] || sample=text
            [ "$command$name" != trace--output ] || sample=$area/trace.json
            [ "$name" != --java ] || sample=-ea
            long+=("$name${value:+=$sample}")
            [ "$letter" = - ] || short+=("$letter${value:+$sample}")
            [ "$letter" = - ] || expected+=("$name${value:+=$sample}")
            seen=$((seen + 1))
        done < <(options_of "$command")
        for form in "${long[*]}" "${short[*]}"; do
            [ -n "$form" ] || continue
            : >"$FAKE_CALLS"
            tavro 0 $command $form $(arguments_of $command)
            [ "$form" != "${short[*]}" ] || form=${expected[*]}
            case $command in
            test) called '^ctest .*-L quick' ;;
            bench) called "^run.sh $clone/build/host .*-- java .*tool.Main$" ;;
            trace) called "^java .* lists --" ;;
            run) called "^java .* -ea -cp $area:.* PROGRAM$" ;;
            conform) called "^tavro-conform $form$" ;;
            mutate) called "^mutate.sh $clone/build/host/tests/mutants/settings.sh $form$" ;;
            *) called "^java .* $command $form --" ;;
            esac
        done
    done
    [ $seen -ge 10 ]
}

@test "usage lines with groups and optional values are understood" {
    cat >"$clone/help/odd.txt" <<'END'
Usage: ./tavro odd [-h] [--color[=WHEN]] [--columns=NAME[,NAME...]]...
                   --from=OTHER [--to=N | --last] (--up | --down)
                   LIST,RECORD KEY=VALUE...
Description.

      --color[=WHEN]   Text.
      --columns=NAME[,NAME...]
                       Text.
  -f, --from=OTHER     Text.
END
    refused "odd: missing argument LIST,RECORD" odd
    refused "odd: missing argument KEY=VALUE" odd 1,2
    refused "odd: option '--from' needs a value: --from=OTHER" odd --from --color 1,2 a=b
    tavro 0 odd --color --columns a,b --columns=c -f x --color=always 1,2 a=b c=-d e==
    called '^java .* odd --color --columns=a,b --columns=c --from=x --color=always -- 1,2 a=b c=-d e==$'
}

@test "an option's value can be its own word, follow '=' or follow the short form" {
    for words in '--kind streams' '--kind=streams' '-k streams' '-k=streams' '-kstreams'; do
        : >"$FAKE_CALLS"
        tavro 0 list $words 1
        called '^java .* list --kind=streams -- 1$'
    done
}

@test "negative numbers are values, not options" {
    refused "import: '-5' is not a first list id" import --list -5 file
    refused "import: '-6' is not a first list id" import --list=-6 file
    refused "list: '-7' is not a list id" list -7
}

@test "'--' ends the options" {
    tavro 0 import -- --list --help
    called '^java .* import -- --list --help$'
}

@test "'-' is a file name" {
    tavro 0 import - --list 3
    called '^java .* import --list=3 -- -$'
}

@test "an unknown command names the word and the closest command" {
    refused "unknown command 'dmeo'; did you mean 'demo'?" dmeo
    refused "unknown command 'lst'; did you mean 'list'?" lst
    refused "unknown command 'repo'; did you mean 'report'?" repo
    refused "unknown command 'hlep'; did you mean 'help'?" help hlep
}

@test "a word without a close match gets no suggestion" {
    refused "unknown command 'frobnicate'" frobnicate
    says_not "did you mean"
    refused "unknown command 'is'" is
    says_not "did you mean"
    refused "unknown command ''" ''
    says_not "did you mean"
    refused "unknown command 'demo list'" 'demo list'
}

@test "an unknown option names the word and the closest option" {
    refused "demo: unknown option '--quick'" demo --quick
    says_not "did you mean"
    refused "test: unknown option '--qiuck'; did you mean '--quick'?" test --qiuck
    refused "list: unknown option '--knid'; did you mean '--kind'?" list --knid=streams 1
    refused "show: unknown option '-x'" show -x 1,2
    refused "unknown option '--versoin'; did you mean '--version'?" --versoin
}

@test "an extra argument is named" {
    refused "demo: unexpected argument 'now'" demo now
    refused "list: unexpected argument '2'" list 1 2
    refused "test: unexpected argument 'quick'; did you mean '--quick'?" test quick
    refused "help: unexpected argument 'me'" help demo me
}

@test "a missing argument is named" {
    refused "list: missing argument ID" list
    refused "show: missing argument LIST,RECORD" show --hex
    refused "import: missing argument FILE" import
    refused "fuzz: missing argument TARGET" fuzz
}

@test "a missing or unexpected option value is named" {
    refused "option '--kind' needs a value: --kind=KIND" list 1 --kind
    refused "option '--kind' needs a value: --kind=KIND" list --kind --first 3
    refused "option '--quick' takes no value: '--quick=yes'" test --quick=yes
}

@test "an unknown preset names the word and the closest preset" {
    refused "build: unknown preset 'hots'; did you mean 'host'?" build hots
    refused "build: unknown preset 'riscv'" build riscv
    refused "report: unknown preset 'ram'; did you mean 'arm'?" report ram
    refused "report: size and load cost of a sanitizer build ('tsan') mean nothing" report tsan
}

@test "the help of build names every preset" {
    diff <(sed -nE 's/^  ([a-z]+)  .*/\1/p' "$clone/help/build.txt") \
        <(sed -n '/buildPresets/,$ s/.*"name": "\([a-z]*\)".*/\1/p' "$clone/CMakePresets.json")
}

@test "--version prints the version in CMakeLists.txt, without a build" {
    tavro 0 --version
    [[ $output =~ ^tavro\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || show "not a version"
    nothing_done
    printf 'cmake_minimum_required(VERSION 3.25)\n%s\nmessage(STATUS "tavro ${PROJECT_VERSION}")\n' \
        "$(grep '^project(' "$clone/CMakeLists.txt" | sed 's/LANGUAGES.*/LANGUAGES NONE)/')" >"$area/CMakeLists.txt"
    [ "$(/usr/bin/cmake -G Ninja -S "$area" -B "$area/out" | sed -n 's/^-- tavro /tavro /p')" = "$output" ] || show "not CMake's"
}

@test "the changelog has a section for this version" {
    tavro 0 --version
    grep -qE "^## ${output#tavro }( |\$)" "$top/CHANGELOG.md" || show "no section"
}

@test "the command 'version' gets a hint to use --version" {
    refused "unknown command 'version'; did you mean '--version'?" version
}

@test "the tool runs in the user's working directory" {
    fake java <<<'pwd >"$FAKE_CALLS.folder"; echo "home $TAVRO_HOME" >>"$FAKE_CALLS"'
    mkdir elsewhere
    cd elsewhere
    TAVRO_HOME=lists tavro 0 import a/file
    [ "$(cat "$FAKE_CALLS.folder")" = "$area/elsewhere" ] || show "in $(cat "$FAKE_CALLS.folder")"
    called '^home lists$'
    called 'import -- a/file$'
}

@test "the tool receives the command as it was typed, quoted for a shell" {
    tavro 0 list 1
    called "-Dtavro.command=$clone/tavro "
    called "-Dtavro.root=$clone "
    (cd "$clone" && bash tavro list 1)
    called '-Dtavro.command=./tavro '
    mv "$clone" "$area/my clone's"
    clone=$area/"my clone's"
    tavro 0 list 1
    called "-Dtavro.command='$area/my clone'\\\\''s/tavro' "
}

@test "out-of-range values are rejected before anything is done" {
    for id in 0 65536 70000 -5 abc '' 99999999999 1.5; do
        refused "list: '$id' is not a list id: it must be from 1 to 65535" list "$id"
        refused "import: '$id' is not a first list id: it must be from 1 to 65533" import "--list=$id" file
    done
    refused "is not a first list id" import --list 65534 file
    for record in 1 0,1 1,65535 70000,1 1, ,1 1,2,3; do
        refused "show: '$record' is not a record: write LIST,RECORD" show "$record"
    done
    refused "list: '-1' is not a number of records" list 1 --first=-1
    refused "list: unknown kind 'stream': use services, streams, networks or satellites" list 1 --kind stream
}

@test "invalid arguments of mutate are rejected before anything is done" {
    mkdir -p "$clone/jni/env" "$clone/host"
    : >"$clone/jni/env/values.cpp"
    : >"$clone/jni/exports.map"
    : >"$clone/host/lists.cpp"
    for number in 0 -1 x 1.5; do refused "mutate: '$number' is not a number of mutants" mutate "--sample=$number"; done
    for number in -1 x 2147483648; do refused "mutate: '$number' is not a seed" mutate "--seed=$number"; done
    refused "mutate: no such file: 'jni/none.cpp'" mutate jni/none.cpp
    refused "mutate: no such file: 'jni'" mutate jni
    for file in jni/exports.map host/lists.cpp; do
        refused "mutate: '$file' is not a source file of the library: name a .cpp or .h file in jni, channellist or text" mutate $file
    done
}

@test "a file for mutate is looked for in the working directory and then in the clone" {
    mkdir -p "$clone/jni/env"
    : >"$clone/jni/env/values.cpp"
    for file in jni/env/values.cpp "$clone/jni/env/values.cpp"; do
        : >"$FAKE_CALLS"
        tavro 0 mutate --sample 3 "$file"
        called "^mutate.sh $clone/build/host/tests/mutants/settings.sh --sample=3 jni/env/values.cpp$"
    done
    cd "$clone/jni/env"
    tavro 0 mutate values.cpp
    called "^mutate.sh .*/settings.sh jni/env/values.cpp$"
    FAKE_STATUS=7 tavro 1 mutate values.cpp
}

@test "invalid benchmark options are rejected before anything is done" {
    for number in 0 101 -1 x ''; do
        refused "bench: '$number' is not a number of repetitions: it must be from 1 to 100" bench "--benchmark_repetitions=$number"
    done
    for time in 1s .5 -1 1.; do refused "bench: '$time' is not a number of seconds" bench "--benchmark_min_time=$time"; done
    refused "bench: 'a(' is not a regular expression" bench --benchmark_filter 'a('
    refused "bench: '$area/none' is not a folder" bench --tree "$area/none"
}

@test "the smallest and largest values are accepted" {
    for id in 1 65535; do tavro 0 list "$id" --first=0; done
    for record in 1,0 65535,65534; do tavro 0 show "$record" --kind satellites; done
    for id in 1 65533; do tavro 0 import --list "$id" file; done
    for number in 1 100; do tavro 0 bench --benchmark_repetitions "$number" --benchmark_min_time 0.5 --benchmark_filter='-a|^b'; done
    [ "$(grep -c '^run.sh .* --benchmark_min_time=0.5 --benchmark_filter=-a|^b ' "$FAKE_CALLS")" = 2 ] || show "not both ran"
    [ "$(grep -c '^java ' "$FAKE_CALLS")" = 6 ] || show "not every command ran"
}

@test "control characters in arguments do not reach the terminal" {
    tavro 2 $'lis\e[31mt'
    says "unknown command 'lis·[31mt'"
    tavro 2 list $'1\e[2J'
    says "'1·[2J' is not a list id"
}

@test "a closed standard input is treated as empty" {
    fake java <<<'cat; exit 0'
    run --separate-stderr bash -c '"$1" import - <&-' bash "$clone/tavro"
    [ "$status" = 0 ] || show "exit code $status"
    [ -z "$output" ] || show "data was read"
}

@test "a deleted working directory is reported" {
    mkdir "$area/gone"
    cd "$area/gone"
    rmdir "$area/gone"
    tavro 1 list 1
    says "the working directory no longer exists; change to another one"
    not_called '^java '
}
