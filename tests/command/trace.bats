# ./tavro trace, with a fake java that prints the variables of the tracer.
load support

setup_trace() {
    fake java <<'END'
printf '%s|' "${LD_PRELOAD#"${0%/bin/java}/clone/"}" "${TAVRO_TRACE-unset}" "${TAVRO_TRACE_FORMAT-}" "${TAVRO_TRACE_JNI-}" \
    "${TAVRO_TRACE_PROPERTIES-}" "${TAVRO_TRACE_EARLY-}" 2>/dev/null
exit $FAKE_STATUS
END
    library=build/host/lib/libtavro_trace.so
}

@test "a command of the tool runs with the tracer and its own options" {
    setup_trace
    tavro 0 trace list 1 --first 3 --kind=streams
    called '^java .* list --first=3 --kind=streams -- 1$'
    [ "$output" = "$library||text|0|0|0|" ] || show "other variables"
    tavro 0 trace --jni --properties --format=json -o out.json -- list -- 1
    called '^java .* list -- 1$'
    [ "$output" = "$library|$area/out.json|json|1|1|0|" ] || show "other variables"
    tavro 0 trace --early list 1
    [ "$output" = "$library||text|0|0|1|" ] || show "other variables"
}

@test "only the traced command is preloaded" {
    setup_trace
    fake cmake <<'END'
[ -z "${LD_PRELOAD-}${TAVRO_TRACE_FORMAT-}" ] || echo "traced" >>"$FAKE_CALLS"
if [ "$1" = -S ]; then
    mkdir -p "$2/build/host"
    echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$2/build/host/CMakeCache.txt"
fi
END
    tavro 0 trace lists
    called '^cmake --build .* --target workstation tavro_trace$'
    not_called '^traced'
}

@test "a program gets its arguments as they are, and the tracer" {
    tavro 0 trace bash -c 'printf "%s|" "${TAVRO_TRACE_FORMAT}" "$@"' name --format=json 'a b' --help
    [ "$output" = 'text|--format=json|a b|--help|' ] || show "other arguments"
}

@test "the exit code is the command's" {
    setup_trace
    FAKE_STATUS=1 tavro 1 trace lists
    FAKE_STATUS=2 tavro 2 trace lists
    for code in 0 1 2; do tavro $code trace bash -c "exit $code"; done
    says_not "tavro:"
    tavro 1 trace bash -c 'exit 3'
    says "tavro: failed: the last program returned exit code 3"
}

@test "what cannot be traced is refused before anything is done" {
    refuse() { # TEXT WORD...
        tavro 2 "${@:2}"
        says "tavro: $1"
        [ ! -s "$FAKE_CALLS" ] || show "programs were called"
        [ ! -e "$clone/build" ] || show "a build folder was created"
        [ "$(cat keep)" = kept ] || show "the file was emptied"
    }
    echo kept >keep
    refuse "trace: missing argument COMMAND" trace --jni
    refuse "trace: unknown format 'xml': use text or json" trace --format=xml -o keep lists
    refuse "trace: option '--output' needs a value: --output=FILE" trace --output= lists
    refuse "trace: --early is for text; JSON has a call when it has returned" trace --early --format=json -o keep lists
    refuse "trace: unknown option '--jin'; did you mean '--jni'?" trace --jin lists
    refuse "trace: 'nonsuch' is neither a command of $clone/tavro nor a program" trace -o keep nonsuch
    refuse "trace: 'lits' is neither a command of $clone/tavro nor a program; did you mean 'list'?" trace lits 1
    refuse "trace: 'build' makes no calls that can be traced; use a command that works with lists, such as list, or a program" \
        trace -o keep build
    refuse "list: missing argument ID" trace -o keep list
    refuse "list: '0' is not a list id: it must be from 1 to 65535" trace -o keep list 0
}

@test "a file that cannot be written is reported, and nothing runs" {
    setup_trace
    tavro 1 trace -o none/out lists
    says "none/out"
    says "tavro: trace: cannot write the trace; the reason is above"
    not_called '^java '
}

@test "a clone whose name has a blank is refused" {
    setup_trace
    mv "$clone" "$area/my clone"
    clone="$area/my clone"
    tavro 1 trace lists
    says "tavro: trace: cannot preload $clone/build/host/lib/libtavro_trace.so: its name has a blank or a colon; use another clone"
    not_called '^java '
}
