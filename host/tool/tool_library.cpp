// The natives of com.velotra.tv.tavro.tool.storage.ToolLibrary, which reads storage directories and list files without
// the channel list library: other directories than TAVRO_HOME, and the reasons of failures.
#include "common/paths.h"
#include "common/user_file.h"
#include "faults/faults.h"
#include "faults/setting.h"
#include "services/control.h"
#include "services/failure.h"
#include "services/list_file.h"
#include "services/snapshot.h"
#include "services/status.h"
#include "tool/java_values.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

using namespace tavro;
using namespace tavro::tool;

using tavro::host::Failure;
using tavro::host::Kind;
using tavro::host::ListFile;
using tavro::host::ListFileState;
using tavro::host::ListKey;
using tavro::host::Snapshot;
using tavro::host::StoredRecords;

namespace {

const Kind& kind_of(jint number) {
    const Kind* const kind = host::find_kind(number);
    if (kind == nullptr) {
        throw Failure(kHostBadArgument, "unknown kind of list: " + std::to_string(number));
    }
    return *kind;
}

Snapshot& snapshot_of(jlong handle) {
    return *reinterpret_cast<Snapshot*>(static_cast<std::intptr_t>(handle)); // NOLINT(performance-no-int-to-ptr)
}

// The handle of a new snapshot; closeSnapshot takes it back.
jlong open_snapshot(JNIEnv* env, jclass, jbyteArray directory) {
    return native(env, [&]() -> jlong {
        const std::string path = to_string(env, directory);
        tavro_host_open_writable(path.c_str());
        auto snapshot = std::make_unique<Snapshot>(path);
        snapshot->begin();
        return static_cast<jlong>(reinterpret_cast<std::intptr_t>(snapshot.release()));
    });
}

void close_snapshot(JNIEnv*, jclass, jlong handle) { delete &snapshot_of(handle); }

jobjectArray lists(JNIEnv* env, jclass, jlong handle, jint first, jint last) {
    return native(env, [&] { return to_java(env, snapshot_of(handle).lists(first, last)); });
}

jobject list(JNIEnv* env, jclass, jlong handle, jint kind_number, jint list_id) {
    return native(env, [&]() -> jobject {
        const Kind& kind = kind_of(kind_number);
        const ListKey key{kind.number, static_cast<std::uint16_t>(list_id)};
        std::string name;
        StoredRecords records;
        if (snapshot_of(handle).load(key, kind, name, records) != kMwOk) {
            return nullptr;
        }
        const auto count = static_cast<std::int64_t>(records.ids.size());
        return to_java(env, JavaList{kind.number, list_id, name, count, 0, -1, &records.bytes});
    });
}

// Throws Failure unless the file is sound. `name` is for the message.
void check_state(ListFileState state, const std::string& name) {
    const auto fail = [&](const char* cause) {
        throw Failure(kMwNotAListFile, "cannot read list file " + name + ": " + cause);
    };
    switch (state) {
    case ListFileState::kSound:
        return;
    case ListFileState::kNoFile:
        return fail("no such file");
    case ListFileState::kNotAListFile:
        return fail("it is not a list file; store one with ./tavro store");
    case ListFileState::kOtherVersion:
        return fail("it was written by another version; use that version");
    case ListFileState::kDamaged:
        return fail("it is damaged; store the list again");
    }
}

jobject to_java(JNIEnv* env, const ListFile& file) {
    return to_java(env, JavaList{file.kind->number, file.list_id, file.name,
                                 static_cast<std::int64_t>(file.records.ids.size()), 0, -1, &file.records.bytes});
}

jobject read_file(JNIEnv* env, jclass, jbyteArray path) {
    return native(env, [&] {
        const std::string name = to_string(env, path);
        ListFile file;
        check_state(host::read_list_file(name, file), name);
        return to_java(env, file);
    });
}

jobject parse_file(JNIEnv* env, jclass, jbyteArray content, jbyteArray name) {
    return native(env, [&] {
        const std::vector<std::byte> bytes = to_bytes(env, content);
        ListFile file;
        check_state(host::parse_list_file(bytes.data(), bytes.size(), file), to_string(env, name));
        return to_java(env, file);
    });
}

// The ids of the records, which must differ and be ids that records can have.
std::vector<std::uint16_t> ids_of(const std::vector<std::byte>& records, const Kind& kind, const std::string& path) {
    std::vector<std::uint16_t> ids;
    std::vector<bool> seen(kMwNoRecordId, false);
    for (std::size_t offset = 0; offset < records.size(); offset += kind.record_bytes) {
        const std::uint16_t id = host::record_id_of(kind, records.data() + offset);
        if (id == kMwNoRecordId || seen[id]) {
            throw Failure(kHostBadArgument, "cannot write list file " + path + ": record id " + std::to_string(id) +
                                                (id == kMwNoRecordId ? " is not valid" : " occurs twice"));
        }
        seen[id] = true;
        ids.push_back(id);
    }
    return ids;
}

void write_file(JNIEnv* env, jclass, jbyteArray path, jint kind_number, jint list_id, jbyteArray name,
                jbyteArray records) {
    native(env, [&] {
        const Kind& kind = kind_of(kind_number);
        const std::string file = to_string(env, path);
        StoredRecords stored;
        stored.bytes = to_bytes(env, records);
        stored.ids = ids_of(stored.bytes, kind, file);
        host::write_list_file(file, kind, static_cast<std::uint16_t>(list_id), to_string(env, name), stored);
    });
}

// Whether a file is a SQLite database with the application id of list files; it may be damaged.
jboolean is_list_file(JNIEnv* env, jclass, jbyteArray path) {
    return native(env, [&]() -> jboolean {
        constexpr char kMagic[] = "SQLite format 3"; // with its NUL
        constexpr std::size_t kApplicationOffset = 68;
        constexpr unsigned char kApplication[] = {'T', 'v', 'L', 'F'};
        unsigned char header[kApplicationOffset + sizeof kApplication];
        const std::string name = to_string(env, path);
        if (host::is_storage_file(name) || host::find_regular_file(name) != 0) {
            return JNI_FALSE;
        }
        std::uint64_t size = 0;
        const host::File file = host::open_to_read("read", name, size);
        std::size_t count = sizeof header;
        const bool read = file.is_open() && host::read_all(file, header, count) == 0 && count == sizeof header;
        return read && std::memcmp(header, kMagic, sizeof kMagic) == 0 &&
                       std::equal(std::begin(kApplication), std::end(kApplication), header + kApplicationOffset)
                   ? JNI_TRUE
                   : JNI_FALSE;
    });
}

void set_read_only(JNIEnv*, jclass, jboolean read_only) { tavro_host_set_read_only(read_only == JNI_TRUE ? 1 : 0); }

// Nothing changes if an entry is invalid.
void set_faults(JNIEnv* env, jclass, jbyteArray text) {
    native(env, [&] {
        if (text == nullptr) {
            tavro_host_set_faults(nullptr);
            return;
        }
        const std::string faults = to_string(env, text);
        const std::vector<std::string> errors = host::read_fault_setting(faults).errors;
        if (!errors.empty()) {
            throw Failure(kHostBadArgument, errors.front());
        }
        tavro_host_set_faults(faults.c_str());
    });
}

#define NATIVE(NAME, SIGNATURE, FUNCTION)                                                                              \
    JNINativeMethod { const_cast<char*>(NAME), const_cast<char*>(SIGNATURE), reinterpret_cast<void*>(FUNCTION) }
#define RAW_LIST "Lcom/velotra/tv/tavro/tool/storage/RawList;"

const JNINativeMethod kNatives[] = {
    NATIVE("openSnapshot", "([B)J", open_snapshot), NATIVE("closeSnapshot", "(J)V", close_snapshot),
    NATIVE("lists", "(JII)[" RAW_LIST, lists),      NATIVE("list", "(JII)" RAW_LIST, list),
    NATIVE("readFile", "([B)" RAW_LIST, read_file), NATIVE("parseFile", "([B[B)" RAW_LIST, parse_file),
    NATIVE("writeFile", "([BII[B[B)V", write_file), NATIVE("isListFile", "([B)Z", is_list_file),
    NATIVE("setReadOnly", "(Z)V", set_read_only),   NATIVE("setFaults", "([B)V", set_faults),
};

constexpr jint kVersion = JNI_VERSION_1_8;

JNIEnv* environment(JavaVM* vm) {
    void* env = nullptr;
    return vm->GetEnv(&env, kVersion) == JNI_OK ? static_cast<JNIEnv*>(env) : nullptr;
}

} // namespace

// A class or method that is missing stays pending as a Java exception, so that the caller sees which one.
jint JNI_OnLoad(JavaVM* vm, void*) {
    JNIEnv* const env = environment(vm);
    if (env == nullptr) {
        return JNI_ERR;
    }
    return native(env, [&]() -> jint {
        look_up_classes(env);
        const Local<jclass> library(env, checked(env->FindClass("com/velotra/tv/tavro/tool/storage/ToolLibrary")));
        const bool registered = env->RegisterNatives(library.get(), kNatives, std::size(kNatives)) == JNI_OK;
        return registered ? kVersion : JNI_ERR;
    });
}

void JNI_OnUnload(JavaVM* vm, void*) {
    JNIEnv* const env = environment(vm);
    if (env != nullptr) {
        forget_classes(env);
    }
}
