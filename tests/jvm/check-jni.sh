#!/usr/bin/env bash
# Runs a JUnit command with -Xcheck:jni and fails if it prints anything but JUnit's summary and the deliberate warnings:
# check-jni.sh JAVA ARGUMENT...
#
# Deliberate: the library's JNI calls are fixed by contract and do not include ExceptionCheck after a called Java method. So
# these four warnings are expected, each with a stack that begins in a native of the list classes. They are counted.
set -euo pipefail
java=$1
shift
# Most of the time would go into printing the stacks of the deliberate warnings, of which the first line is checked.
"$java" -Xcheck:jni -XX:MaxJavaStackTraceDepth=3 "$@" 2>&1 | awk '
    BEGIN {
        unchecked = "WARNING in native method: JNI call made without checking exceptions when required to from "
        deliberate[unchecked "CallBooleanMethodV"]
        deliberate[unchecked "CallIntMethodV"]
        deliberate[unchecked "CallObjectMethodV"]
        deliberate[unchecked "CallVoidMethodV"]
    }
    function report(line) {
        if (++findings <= 50) {
            print line
        }
    }
    warning != "" {
        if (!/^\tat com\.velotra\.tv\.tavro\.services\.channellist\.VltTv[A-Za-z]+List\.native[A-Za-z_]+\(Native Method\)$/) {
            report(warning)
            report($0)
        } else {
            in_stack = 1
        }
        warning = ""
        next
    }
    in_stack && /^\tat / { next }
    { in_stack = 0 }
    $0 in deliberate {
        ++warnings
        warning = $0
        next
    }
    /^$|^Test run finished after [0-9]+ ms$|^\[ +[0-9]+ (tests|containers) [a-z]+ +\]$/ {
        summary = summary $0 "\n"
        next
    }
    { report($0) }
    END {
        if (warning != "") {
            report(warning)
        }
        printf "%s", summary
        if (findings > 0) {
            printf "-Xcheck:jni found something: %d lines, the first of which are above\n", findings
            exit 1
        }
        if (warnings == 0) {
            print "-Xcheck:jni printed none of the deliberate warnings: does it work?"
            exit 1
        }
        printf "%d deliberate warnings of -Xcheck:jni and no others\n", warnings
    }'
