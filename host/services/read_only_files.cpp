#include "read_only_files.h"

#include <cstring>
#include <sqlite3.h>

namespace tavro::host {
namespace {

// A file without content.
const sqlite3_io_methods* empty_file() {
    static const sqlite3_io_methods kMethods = [] {
        sqlite3_io_methods methods{};
        methods.iVersion = 1;
        methods.xClose = [](sqlite3_file*) { return SQLITE_OK; };
        methods.xRead = [](sqlite3_file*, void* bytes, int count, sqlite3_int64) {
            std::memset(bytes, 0, static_cast<std::size_t>(count));
            return SQLITE_IOERR_SHORT_READ;
        };
        methods.xWrite = [](sqlite3_file*, const void*, int, sqlite3_int64) { return SQLITE_READONLY; };
        methods.xTruncate = [](sqlite3_file*, sqlite3_int64) { return SQLITE_READONLY; };
        methods.xSync = [](sqlite3_file*, int) { return SQLITE_OK; };
        methods.xFileSize = [](sqlite3_file*, sqlite3_int64* size) {
            *size = 0;
            return SQLITE_OK;
        };
        methods.xLock = [](sqlite3_file*, int) { return SQLITE_OK; };
        methods.xUnlock = [](sqlite3_file*, int) { return SQLITE_OK; };
        methods.xCheckReservedLock = [](sqlite3_file*, int* reserved) {
            *reserved = 0;
            return SQLITE_OK;
        };
        methods.xFileControl = [](sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; };
        methods.xSectorSize = [](sqlite3_file*) { return 4096; };
        methods.xDeviceCharacteristics = [](sqlite3_file*) { return 0; };
        return methods;
    }();
    return &kMethods;
}

// The usual methods, but without shared memory. The status lets SQLite make an index of the log in its own memory.
const sqlite3_io_methods* without_shared_memory(const sqlite3_io_methods* usual) {
    static const sqlite3_io_methods kMethods = [usual] {
        sqlite3_io_methods methods = *usual;
        methods.xShmMap = [](sqlite3_file*, int, int, int, void volatile** region) {
            *region = nullptr;
            return SQLITE_READONLY_CANTINIT;
        };
        methods.xShmLock = [](sqlite3_file*, int, int, int) { return SQLITE_OK; };
        methods.xShmBarrier = [](sqlite3_file*) {}; // only this connection, in one thread at a time, uses that memory
        methods.xShmUnmap = [](sqlite3_file*, int) { return SQLITE_OK; };
        return methods;
    }();
    return &kMethods;
}

constexpr int kWriting = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;

template <bool kShared>
class ReadOnlyFiles {
public:
    static const char* name() {
        static const ReadOnlyFiles registered;
        return kName;
    }

private:
    static constexpr const char* kName = kShared ? "tavro-read-only-shared" : "tavro-read-only-unshared";

    ReadOnlyFiles() {
        usual = sqlite3_vfs_find(nullptr);
        static sqlite3_vfs own = *usual;
        own.zName = kName;
        own.pNext = nullptr;
        own.xOpen = open;
        own.xDelete = [](sqlite3_vfs*, const char*, int) { return SQLITE_IOERR_DELETE; };
        sqlite3_vfs_register(&own, /*makeDflt*/ 0);
    }

    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
        constexpr int kInMemory = SQLITE_OPEN_TEMP_DB | SQLITE_OPEN_TEMP_JOURNAL | SQLITE_OPEN_TRANSIENT_DB;
        if ((flags & kInMemory) != 0) {
            return SQLITE_CANTOPEN;
        }
        const int reading = (flags & ~kWriting) | SQLITE_OPEN_READONLY;
        const bool is_log = (flags & SQLITE_OPEN_WAL) != 0;
        if (!kShared && is_log) {
            int exists = 0;
            const int code = usual->xAccess(usual, name, SQLITE_ACCESS_EXISTS, &exists);
            if (code == SQLITE_OK && exists == 0) {
                file->pMethods = empty_file();
                if (out_flags != nullptr) {
                    *out_flags = reading;
                }
                return SQLITE_OK;
            }
        }
        const int code = usual->xOpen(usual, name, file, reading, out_flags);
        const bool is_database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
        if (!kShared && is_database && code == SQLITE_OK) {
            file->pMethods = without_shared_memory(file->pMethods);
        }
        return code;
    }

    static inline sqlite3_vfs* usual = nullptr;
};

} // namespace

const char* shared_read_only_files() { return ReadOnlyFiles<true>::name(); }
const char* unshared_read_only_files() { return ReadOnlyFiles<false>::name(); }

} // namespace tavro::host
