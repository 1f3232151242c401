#!/usr/bin/env bats
# The scripts that judge what a virtual machine with checks or sanitizers printed find what counts, and nothing else.

unchecked='WARNING in native method: JNI call made without checking exceptions when required to from CallBooleanMethodV'
native='com.velotra.tv.tavro.services.channellist.VltTvChannelList.nativeAdd(Native Method)'
summary='[         1 tests successful      ]'

# Runs check-jni.sh with a virtual machine that prints the lines and exits with STATUS.
checked() { # STATUS LINE...
    local code=$1 java=$BATS_TEST_TMPDIR/java
    shift
    { printf '#!/bin/sh\ncat <<END\n'; printf '%b\n' "$@"; printf 'END\nexit %s\n' "$code"; } >"$java"
    chmod +x "$java"
    run "$BATS_TEST_DIRNAME/check-jni.sh" "$java" Test
}

@test "JNI: the deliberate warning is counted" {
    checked 0 "$unchecked" "\tat $native" "\tat Test.main(Test.java)" "$summary"
    [ "$status" -eq 0 ]
    [ "$output" = "$summary"$'\n''1 deliberate warnings of -Xcheck:jni and no others' ]
}

@test "JNI: any other line fails" {
    for line in 'WARNING: JNI local refs: 40, exceeds capacity: 32' 'FATAL ERROR in native method: Bad global' 'anything'; do
        checked 0 "$unchecked" "\tat $native" "\tat Test.main(Test.java)" "$line" "$summary"
        [ "$status" -eq 1 ]
        [ "${lines[0]}" = "$line" ]
    done
}

@test "JNI: the deliberate warning outside a native fails" {
    checked 0 "$unchecked" '\tat Other.call(Native Method)' "$summary"
    [ "$status" -eq 1 ]
    [ "${lines[0]}" = "$unchecked" ]
}

@test "JNI: a machine without warnings or with failed tests fails" {
    checked 0 "$summary"
    [ "$status" -eq 1 ]
    [[ $output = *'does it work?' ]]
    checked 3 "$unchecked" "\tat $native" "$summary"
    [ "$status" -eq 3 ]
}

# Runs leaks.awk on a report.
judged() { # LINE...
    printf '%s\n' '=================' '==1==ERROR: LeakSanitizer: detected memory leaks' '' "$@" '' \
        'SUMMARY: AddressSanitizer: 8 byte(s) leaked in 1 allocation(s).' >"$BATS_TEST_TMPDIR/report"
    local cmake=$BATS_TEST_DIRNAME/../../cmake
    run "$cmake/leaks.awk" -v deliberate="$cmake/deliberate-leaks.txt" "$BATS_TEST_TMPDIR/report"
}
leak='Direct leak of 8 byte(s) in 1 object(s) allocated from:'
malloc='    #0 (/usr/lib/libasan.so.8) malloc asan_malloc_linux.cpp:69'
machine='    #1 (/jvm/lib/libjvm.so) jni_GetStringUTFChars <null>'
ours() { echo "    #$1 (/build/lib/libvelotra_tavro_channellist.so) $2"; }
characters=$(ours 2 'JNIEnv_::GetStringUTFChars(_jstring*, unsigned char*) <null>')
keep=$(ours 3 'tavro::Jni::keep_utf_chars(_jstring*) ../jni/env/jni_env.cpp:40')

@test "leaks: those of the virtual machine are ignored" {
    judged "$leak" "$malloc" "$machine" '    #2 (<null>) <null> <null>'
    [ "$status" -eq 0 ]
    judged "$leak" "$malloc" "$machine" "$(ours 2 'JNIEnv_::FindClass(char const*) <null>')"
    [ "$status" -eq 0 ]
    [ "$output" = '' ]
}

@test "leaks: memory of a platform library is reported" {
    judged "$leak" "$malloc" '    #1 (/build/lib/libvelotra_tv_services.so) open_list host/services/lists.cpp:1'
    [ "$status" -eq 1 ]
    [ "${lines[0]}" = "$leak" ]
}

@test "leaks: characters that are not released are reported" {
    judged "$leak" "$malloc" "$machine" "$characters" "$keep" "$(ours 4 'tavro::UtfChars::UtfChars() ../jni/env/jni_env.h:125')"
    [ "$status" -eq 1 ]
    [ "${#lines[@]}" -eq 6 ]
}

@test "leaks: deliberate ones are ignored, by function, caller and file" {
    judged "$leak" "$malloc" "$machine" "$characters" "$keep" "$(ours 4 'put_name ../jni/records/satellite_record.cpp:43')"
    [ "$status" -eq 0 ]
    judged "$leak" "$malloc" "$machine" "$characters" "$keep" "$(ours 4 'put_name ../jni/records/channel_record.cpp:43')"
    [ "$status" -eq 1 ]
    judged "$leak" "$malloc" "$machine" "$characters" "$keep" "$(ours 4 'put_name2 ../jni/records/satellite_record.cpp:43')"
    [ "$status" -eq 1 ]
}

@test "leaks: other errors are printed" {
    judged 'host/services/lists.cpp:1: runtime error: signed integer overflow'
    [ "$status" -eq 1 ]
    [ "$output" = 'host/services/lists.cpp:1: runtime error: signed integer overflow' ]
}
