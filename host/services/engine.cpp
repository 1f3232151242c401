#include "engine.h"

#include "common/paths.h"
#include "common/report.h"
#include "list_file.h"
#include "status.h"
#include "storage_error.h"

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

namespace tavro::host {

Engine& Engine::instance() {
    // Never destroyed, because other threads may call it until exit. Not allocated, because there may be no memory.
    alignas(Engine) static std::byte memory[sizeof(Engine)];
    static Engine& engine = *new (memory) Engine;
    return engine;
}

namespace {

MwStatus reported(const Failure& failure) {
    report_once(failure.what());
    return failure.status();
}

// Returns the status of the exception that is being handled, and logs its line. Throws if there is no memory for that.
MwStatus report_exception() {
    try {
        throw;
    } catch (const Failure& failure) {
        return reported(failure);
    } catch (const SqlError& error) {
        return reported(storage_failure(error));
    } catch (const std::bad_alloc&) {
        return kHostOutOfMemory;
    } catch (const std::exception& error) {
        return reported({kHostStorageUnavailable, std::string("list storage error: ") + error.what()});
    }
}

// The access that TAVRO_READ_ONLY sets.
Access access_of_environment() {
    const char* const value = std::getenv("TAVRO_READ_ONLY");
    const std::string text = value == nullptr ? "" : value;
    if (text.empty() || text == "0") {
        return Access::kReadWrite;
    }
    if (text != "1") {
        report_once("TAVRO_READ_ONLY is '" + text + "', but must be 0 or 1; this process only reads lists");
    }
    return Access::kReadOnly;
}

} // namespace

// Runs `body`. Turns an exception into a status and a log line.
template <class Body>
MwStatus Engine::guarded(Body body) noexcept {
    try {
        return body();
    } catch (...) {
        try {
            return report_exception();
        } catch (...) {
            return kHostOutOfMemory;
        }
    }
}

Access Engine::access() const { return read_only_ ? Access::kReadOnly : access_of_environment(); }

// Runs `body` with the handle's list while holding the engine's mutex.
template <class Body>
MwStatus Engine::on_list(const Kind& kind, MwdbHandle handle, Body body) noexcept {
    return guarded([&] {
        std::lock_guard<std::mutex> alone(mutex_);
        const OpenList* const open = find(kind, handle);
        return open == nullptr ? kHostBadHandle : body(open->list);
    });
}

// Runs `body` with the handle's list and the lock file, after unlocking the engine's mutex. A process that only reads
// needs no read locks: it sees each list as it was at one moment.
template <class Body>
MwStatus Engine::on_list_lock(const Kind& kind, MwdbHandle handle, LockLevel level, Body body) noexcept {
    return guarded([&] {
        std::unique_lock<std::mutex> alone(mutex_);
        const OpenList* const open = find(kind, handle);
        if (open == nullptr) {
            return kHostBadHandle;
        }
        const ListKey list = open->list;
        if (level == LockLevel::kRead && lists().is_read_only()) {
            return kMwOk;
        }
        const std::shared_ptr<LockFile> file = lists().lock_file();
        const std::uint64_t round = locks_.round();
        alone.unlock();
        return body(list, file, round);
    });
}

// Opens the storage if necessary. A call that began before the last opening failed does not try again: it has waited
// for that one already.
Lists& Engine::lists(Clock::time_point began) {
    LockFile::check_process();
    if (lists_ != nullptr) {
        return *lists_;
    }
    if (failed_opening_ && began < failed_opening_->end) {
        throw Failure(failed_opening_->failure);
    }
    try {
        lists_ = std::make_unique<Lists>(home_directory(), access());
        return *lists_;
    } catch (const Failure& failure) {
        failed_opening_ = {failure, Clock::now()};
    } catch (const SqlError& error) {
        failed_opening_ = {storage_failure(error), Clock::now()};
    }
    throw Failure(failed_opening_->failure);
}

const Engine::OpenList* Engine::find(const Kind& kind, MwdbHandle handle) const {
    const auto found = open_lists_.find(handle);
    return found == open_lists_.end() || found->second.kind != &kind ? nullptr : &found->second;
}

// Makes a handle for the list if `prepare` returns 0, and returns its result. Runs `prepare` while holding the engine's
// mutex. These are the only calls that open the storage, because all others need a handle.
template <class Prepare>
MwStatus Engine::new_handle(const Kind& kind, const ListKey& list, MwdbHandle* handle, Prepare prepare) {
    const Clock::time_point began = Clock::now();
    std::lock_guard<std::mutex> alone(mutex_);
    lists(began);
    // Takes the memory first: a list that was created cannot be taken back.
    std::map<MwdbHandle, OpenList> added{{last_handle_ + 1, OpenList{&kind, list}}};
    const MwStatus status = prepare();
    if (status == kMwOk) {
        *handle = ++last_handle_;
        open_lists_.merge(added);
    }
    return status;
}

// Invalidates a handle and releases the calling thread's locks on the list.
void Engine::drop_handle(MwdbHandle handle) {
    const ListKey list = open_lists_.at(handle).list;
    open_lists_.erase(handle);
    locks_.release(list);
}

MwStatus Engine::open(const Kind& kind, std::uint16_t list_id, MwdbHandle* handle) {
    return guarded([&]() -> MwStatus {
        if (handle == nullptr) {
            return kHostBadArgument;
        }
        const ListKey list{kind.number, list_id};
        return new_handle(kind, list, handle, [&] { return lists().check_exists(list); });
    });
}

MwStatus Engine::create(const Kind& kind, const char* name, std::uint16_t list_id, MwdbHandle* handle) {
    return guarded([&]() -> MwStatus {
        if (handle == nullptr || name == nullptr || list_id == 0) {
            return kHostBadArgument;
        }
        const ListKey list{kind.number, list_id};
        return new_handle(kind, list, handle, [&] { return lists().create(kind, list, name); });
    });
}

MwStatus Engine::close(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey&) {
        drop_handle(handle);
        return kMwOk;
    });
}

MwStatus Engine::remove(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey& list) {
        const MwStatus status = lists().remove(list);
        if (status == kMwOk) {
            drop_handle(handle);
        }
        return status;
    });
}

MwStatus Engine::clean(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey& list) { return lists().clean(kind, list); });
}

MwStatus Engine::copy(const Kind& kind, MwdbHandle from, MwdbHandle to) {
    return on_list(kind, from, [&](const ListKey& source) -> MwStatus {
        const OpenList* const target = find(kind, to);
        if (target == nullptr) {
            return kHostBadHandle;
        }
        return target->list == source ? kMwOk : lists().copy(kind, source, target->list);
    });
}

// Reads the file without holding the mutex.
MwStatus Engine::load_file(const Kind& kind, MwdbHandle handle, const char* path) {
    return guarded([&]() -> MwStatus {
        if (path == nullptr || *path == '\0') {
            return kHostBadArgument;
        }
        MwStatus status = on_list(kind, handle, [](const ListKey&) { return kMwOk; });
        if (status != kMwOk) {
            return status;
        }
        StoredRecords records;
        status = read_list_file(resolve_path(path), kind, records);
        if (status != kMwOk) {
            return status;
        }
        return on_list(kind, handle, [&](const ListKey& list) { return lists().replace(kind, list, records); });
    });
}

// Writes the file without holding the mutex.
MwStatus Engine::store_file(const Kind& kind, MwdbHandle handle, const char* path) {
    return guarded([&]() -> MwStatus {
        if (path == nullptr || *path == '\0') {
            return kHostBadArgument;
        }
        std::uint16_t list_id = 0;
        std::string name;
        StoredRecords records;
        const MwStatus status = on_list(kind, handle, [&](const ListKey& list) {
            lists().need_write_access();
            list_id = list.list_id;
            return lists().load(kind, list, name, records);
        });
        if (status != kMwOk) {
            return status;
        }
        const std::string file = resolve_path(path);
        if (is_platform_path(path)) {
            make_parents(file);
        }
        write_list_file(file, kind, list_id, name, records);
        return kMwOk;
    });
}

MwStatus Engine::lock(const Kind& kind, MwdbHandle handle, LockLevel level) {
    return on_list_lock(kind, handle, level,
                        [&](const ListKey& list, const std::shared_ptr<LockFile>& file, std::uint64_t round) {
                            return locks_.lock(file, kind, list, level, round);
                        });
}

MwStatus Engine::unlock(const Kind& kind, MwdbHandle handle, LockLevel level) {
    return on_list_lock(kind, handle, level, [&](const ListKey& list, const std::shared_ptr<LockFile>&, std::uint64_t) {
        return locks_.unlock(list, level);
    });
}

MwStatus Engine::query_record_id(const Kind& kind, MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record_id == nullptr) {
            return kHostBadArgument;
        }
        switch (query) {
        case kMwQueryHighestRecordId:
            return lists().highest_record_id(kind, list, record_id);
        case kMwQueryNextRecordId:
            return lists().next_record_id(kind, list, record_id);
        default:
            return kHostBadArgument;
        }
    });
}

MwStatus Engine::add(const Kind& kind, MwdbHandle handle, const void* record) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr) {
            return kHostBadArgument;
        }
        return record_id_of(kind, record) == kMwNoRecordId ? kHostNoRecordIdLeft : lists().add(kind, list, record);
    });
}

MwStatus Engine::update(const Kind& kind, MwdbHandle handle, const void* record) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        return record == nullptr ? kHostBadArgument : lists().update(kind, list, record);
    });
}

MwStatus Engine::remove_record(const Kind& kind, MwdbHandle handle, std::uint16_t record_id) {
    return on_list(kind, handle, [&](const ListKey& list) { return lists().remove_record(kind, list, record_id); });
}

MwStatus Engine::get(const Kind& kind, MwdbHandle handle, std::uint16_t record_id, void* record,
                     std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        return lists().get(kind, list, record_id, record, version);
    });
}

MwStatus Engine::get_at(const Kind& kind, MwdbHandle handle, const Filter& filter, std::int64_t index, void* record,
                        std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        return lists().get_at(kind, list, filter, index, record, version);
    });
}

MwStatus Engine::count(const Kind& kind, MwdbHandle handle, const Filter& filter, std::uint16_t* count,
                       std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (count == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        return lists().count(kind, list, filter, count, version);
    });
}

void Engine::set_read_only(bool read_only) {
    std::lock_guard<std::mutex> alone(mutex_);
    read_only_ = read_only;
    if (lists_ != nullptr && !lists_->is_read_only()) {
        if (access() == Access::kReadWrite) {
            return;
        }
        locks_.clear();
    }
    failed_opening_.reset();
    lists_.reset();
}

void Engine::open_writable(const std::string& directory) {
    guarded([&] {
        std::lock_guard<std::mutex> alone(mutex_);
        std::error_code ignored;
        if (access() == Access::kReadWrite && std::filesystem::equivalent(directory, home_directory(), ignored)) {
            lists();
        }
        return kMwOk;
    });
}

void Engine::reset() {
    std::lock_guard<std::mutex> alone(mutex_);
    locks_.clear();
    open_lists_.clear();
    lists_.reset();
}

std::uint64_t Engine::work() {
    std::lock_guard<std::mutex> alone(mutex_);
    return lists_ == nullptr ? 0 : lists_->work();
}

} // namespace tavro::host
