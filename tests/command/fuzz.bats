# ./tavro fuzz and what it runs: tests/fuzz/fuzz.sh with fakes for the fuzz targets.
load support

targets() { sed -nE 's/^  ([a-z_]+)  .*/\1/p' "$clone/help/fuzz.txt"; }

# Puts tests/fuzz into the clone, and a fake for the program of the target "identifier".
fuzz_programs() {
    mkdir -p "$clone/tests" "$clone/build/fuzz/bin"
    cp -r "$top/tests/fuzz" "$clone/tests"
    bin=$clone/build/fuzz/bin fake fuzz_identifier
}

refused() { # TEXT WORD...: expects wrong usage, with nothing done
    tavro 2 "${@:2}"
    says "$1"
    [ ! -s "$FAKE_CALLS" ] || show "programs were called"
}

@test "the help of fuzz names every target that is built" {
    diff <(targets | grep -v '^importers$' | sort) \
        <(sed -nE 's/^tavro_add_fuzzer\(([a-z_]+) .*/\1/p' "$top/tests/fuzz/CMakeLists.txt" | sort)
    diff <(targets) <(sed -nE 's/^run ([a-z_]+) [0-9]+$/\1/p' "$top/tests/fuzz/lane.sh")
}

@test "every target has a corpus" {
    for target in $(targets); do [ -n "$(ls "$top/tests/fuzz/corpus/$target")" ] || show "none: $target"; done
}

@test "an unknown target names the word and the closest target" {
    refused "fuzz: unknown target 'identifer'; did you mean 'identifier'?" fuzz identifer
    refused "fuzz: unknown target 'impotrers'; did you mean 'importers'?" fuzz impotrers 60
    refused "fuzz: unknown target 'frobnicate'" fuzz frobnicate
    says_not "did you mean"
}

@test "a time that is not a number of seconds is refused" {
    for time in 0 1h 31536001 ''; do refused "fuzz: '$time' is not a number of seconds" fuzz natives "$time"; done
}

@test "words that are neither options nor files are refused" {
    refused "fuzz: unknown option '-runs'" fuzz natives -runs=3
    refused "fuzz: 'none' is neither an option of the form -NAME=VALUE nor a file" fuzz natives 60 none
    refused "fuzz: '-seed' is neither an option" fuzz natives -- -seed
}

@test "a target is built and runs for a minute or as long as the user says" {
    fuzz_programs <<<'exit 0'
    tavro 0 fuzz identifier
    called "^cmake --build $clone/build/fuzz --target fuzz_identifier$"
    called "^fuzz_identifier .* -max_total_time=60 $clone/build/fuzz/corpus/identifier $clone/tests/fuzz/corpus/identifier$"
    tavro 0 fuzz identifier 5
    called '^fuzz_identifier .* -max_total_time=5 '
    tavro 0 fuzz identifier 5 -- -seed=1
    called '^fuzz_identifier .* -max_total_time=5 -seed=1 '
    tavro 0 fuzz identifier -- -runs=7
    called '^fuzz_identifier .* -runs=7 '
}

@test "the importers are built and run by Java" {
    fuzz_programs <<<'exit 0'
    tavro 0 fuzz importers -- -runs=7
    called "^cmake --build $clone/build/host --target workstation tavro_tests_jar$"
    called '^java .*\.ImportFuzzer .* -runs=7 '
}

@test "a target runs in an empty folder of its own, which is removed" {
    fuzz_programs <<<'echo "$TAVRO_HOME in $TMPDIR: $(ls -A "$TMPDIR")" >>"$FAKE_CALLS"; echo "$TMPDIR" >"$FAKE_CALLS.folder"'
    TAVRO_HOME=mine TAVRO_PROPERTIES=mine TAVRO_PROP_x=1 tavro 0 fuzz identifier
    folder=$(cat "$FAKE_CALLS.folder")
    called "^$folder/home in $folder: output$"
    [ ! -e "$folder" ] || show "still there: $folder"
}

@test "a failure keeps the input and prints the command that repeats it" {
    fuzz_programs <<'END'
for word in "$@"; do [[ $word != -artifact_prefix=* ]] || prefix=${word#*=}; done
[ ! -f "${!#}" ] || exit 1
echo input >"${prefix}crash-1"
echo "artifact_prefix='$prefix'; Test unit written to ${prefix}crash-1"
exit 77
END
    tavro 1 fuzz identifier
    prints "    ./tavro fuzz identifier -- build/fuzz/crashes/identifier-crash-1"
    : >"$FAKE_CALLS"
    cd "$clone"
    tavro 1 fuzz identifier -- build/fuzz/crashes/identifier-crash-1
    called '^fuzz_identifier .* build/fuzz/crashes/identifier-crash-1$'
}
