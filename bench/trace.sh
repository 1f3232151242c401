#!/usr/bin/env bash
# Measures what the tracer costs: trace.sh BUILD. Needs the targets workstation, bench_jar and tavro_trace. Prints a
# table: the two operations of TraceBench, and what each call of the middleware and each native takes longer in a trace.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
build=$(readlink -f "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the nanoseconds of both operations.
measure() { # TRACER FORMAT FILE [JNI]
    rm -rf "${work:?}/home" "$work/trace"
    mkdir "$work/home"
    TAVRO_HOME=$work/home LD_PRELOAD=$1 TAVRO_TRACE_FORMAT=$2 TAVRO_TRACE=$3 TAVRO_TRACE_JNI=${4:-0} "$here/java.sh" "$build" TraceBench |
        cut -d ' ' -f 2 | xargs
}

tracer=$build/lib/libtavro_trace.so
{
    echo "not traced, $(measure '' text '')"
    echo "text, $(measure "$tracer" text "$work/trace")"
    echo "JSON, $(measure "$tracer" json "$work/trace")"
    echo "text with JNI calls, $(measure "$tracer" text "$work/trace" 1)"
} | awk -F ', ' '
# The part of a call; with JNI calls, both parts have some of them.
function part(ns) { return NR == 1 || $1 ~ /JNI/ ? "" : sprintf("%.1f µs", ns / 1000) }
BEGIN { print "| Trace | One stream read | 100 streams read | Cost per middleware call | Cost per native |\n|---|---:|---:|---:|---:|" }
{
    split($2, ns, " ")
    if (NR == 1) { one = ns[1]; all = ns[2] }
    call = ((ns[2] - all) - (ns[1] - one)) / 102
    native = (ns[1] - one) - call
    printf "| %s | %.1f µs (%.1fx) | %.0f µs (%.1fx) | %s | %s |\n", $1, ns[1] / 1000, ns[1] / one, ns[2] / 1000, ns[2] / all,
        part(call), part(native)
}'
