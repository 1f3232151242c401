# The starting policy in device/sepolicy, and the check of it.
setup() {
    here=$BATS_TEST_DIRNAME
    rules=$BATS_TEST_TMPDIR/rules
    cp -r "$here/../../../device/sepolicy" "$rules"
}

check() { run "$here/check.sh" "$rules" "$BATS_TEST_TMPDIR/out"; }

refused() { # TEXT
    check
    [ "$status" = 1 ] && [[ $output = *"$1"* ]] || { echo "status $status: $output"; return 1; }
}

@test "checkpolicy compiles the starting policy" {
    check
    [ "$status" = 0 ] || { echo "$output"; return 1; }
    [ -z "$output" ]
    [ -s "$BATS_TEST_TMPDIR/out/policy" ]
}

@test "an unknown type is refused" {
    echo 'allow tavro_client no_such_file:file read;' >>"$rules/tavro_channellist.te"
    refused "unknown type no_such_file"
}

@test "an unknown permission is refused" {
    echo 'allow tavro_client cache_file:file fly;' >>"$rules/tavro_channellist.te"
    refused "permission fly is not defined for class file"
}

@test "a rule that Android forbids is refused" {
    echo 'allow shell vendor_vlt_log_prop:property_service set;' >>"$rules/tavro_channellist.te"
    refused "neverallow"
}

@test "a label of an unknown type is refused" {
    sed -i 's/vendor_vlt_list_file:s0/vendor_vlt_other_file:s0/' "$rules/file_contexts"
    refused "file_contexts: there is no type vendor_vlt_other_file"
}

@test "a context in another form is refused" {
    sed -i 's/ exact string//' "$rules/property_contexts"
    refused "property_contexts: not a line of this file: vendor.vlt"
}

@test "the property's name is the one that the library reads" {
    name=$(sed -nE 's/.*kLogLevelProperty\[\] = "(.*)".*/\1/p' "$here/../../../jni/log/log_gate.h")
    [ "$(grep -v '^#' "$rules/property_contexts" | cut -d ' ' -f 1 | xargs)" = "$name persist.$name" ]
}
