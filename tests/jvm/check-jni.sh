#!/bin/sh
# Runs a Java command under -Xcheck:jni and fails on what it finds: check-jni.sh LOG JAVA ARGUMENT...
set -u
log=$1
java=$2
shift 2
"$java" -Xcheck:jni "$@" >"$log" 2>&1
status=$?
tail -n 15 "$log"

# The library's calls are contract to the last one, and asking for exceptions after a Java method is not
# among them: that one warning is expected. Every other finding fails.
findings=$(grep -E 'WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native|Warning: Calling other JNI functions' "$log" |
    grep -v 'JNI call made without checking exceptions when required to from Call')
if [ -n "$findings" ]; then
    echo "-Xcheck:jni found:"
    echo "$findings" | sort | uniq -c
    exit 1
fi
exit $status
