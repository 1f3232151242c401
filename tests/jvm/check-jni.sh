#!/bin/sh
# Runs a Java command with -Xcheck:jni and fails if there are findings: check-jni.sh LOG JAVA ARGUMENT...
set -u
log=$1
java=$2
shift 2
"$java" -Xcheck:jni "$@" >"$log" 2>&1
status=$?
tail -n 15 "$log"

# The library's JNI calls are fixed by contract and do not include ExceptionCheck after a Java method. So that warning is
# expected; every other finding fails.
findings=$(grep -E 'WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native|Warning: Calling other JNI functions' "$log" |
    grep -v 'JNI call made without checking exceptions when required to from Call')
if [ -n "$findings" ]; then
    echo "-Xcheck:jni found:"
    echo "$findings" | sort | uniq -c
    exit 1
fi
exit $status
