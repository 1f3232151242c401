#include "engine.h"

#include "common/paths.h"
#include "common/report.h"
#include "list_file.h"
#include "status.h"
#include "storage_error.h"

#include <algorithm>
#include <array>
#include <new>

namespace tavro::host {
namespace {

constexpr std::size_t kLargestRecord =
    std::max({kSvl.record_bytes, kTsl.record_bytes, kNwl.record_bytes, kSatl.record_bytes});

} // namespace

Engine& Engine::instance() {
    static Engine& engine = *new Engine; // never destroyed: other threads may call until the very end
    return engine;
}

// Runs `body` and turns what it throws into a status and a line in the log.
template <class Body>
MwStatus Engine::guarded(Body body) noexcept {
    const auto reported = [](const Failure& failure) {
        report_once(failure.what());
        return failure.status();
    };
    try {
        return body();
    } catch (const Failure& failure) {
        return reported(failure);
    } catch (const SqlError& error) {
        return reported(storage_failure(error));
    } catch (const std::bad_alloc&) {
        return kHostOutOfMemory;
    } catch (const std::exception& error) {
        report_once(std::string("the list storage fails: ") + error.what());
        return kHostStorageUnavailable;
    }
}

// Runs `body` with the list that the handle stands for, alone in the engine.
template <class Body>
MwStatus Engine::on_list(const Kind& kind, MwdbHandle handle, Body body) noexcept {
    return guarded([&] {
        std::lock_guard<std::mutex> alone(mutex_);
        const OpenList* const open = find(kind, handle);
        return open == nullptr ? kHostBadHandle : body(open->list);
    });
}

// Runs `body` with the list that the handle stands for and the lock file, beside other calls.
template <class Body>
MwStatus Engine::on_list_lock(const Kind& kind, MwdbHandle handle, Body body) noexcept {
    return guarded([&] {
        std::unique_lock<std::mutex> alone(mutex_);
        const OpenList* const open = find(kind, handle);
        if (open == nullptr) {
            return kHostBadHandle;
        }
        const ListKey list = open->list;
        const std::shared_ptr<LockFile> file = storage().lock_file();
        alone.unlock();
        return body(list, file);
    });
}

Storage& Engine::storage() {
    if (storage_ == nullptr) {
        storage_ = std::make_unique<Storage>(home_directory());
    }
    return *storage_;
}

const Engine::OpenList* Engine::find(const Kind& kind, MwdbHandle handle) const {
    const auto found = open_lists_.find(handle);
    return found == open_lists_.end() || found->second.kind != &kind ? nullptr : &found->second;
}

MwStatus Engine::give_handle(const Kind& kind, const ListKey& list, MwdbHandle* handle) {
    *handle = ++last_handle_;
    open_lists_.emplace(*handle, OpenList{&kind, list});
    return kMwOk;
}

// Ends a handle, and with it what the thread holds of the list.
void Engine::forget(MwdbHandle handle) {
    const ListKey list = open_lists_.at(handle).list;
    open_lists_.erase(handle);
    locks_.release(list);
}

MwStatus Engine::open(const Kind& kind, std::uint16_t list_id, MwdbHandle* handle) {
    return guarded([&]() -> MwStatus {
        if (handle == nullptr) {
            return kHostBadArgument;
        }
        std::lock_guard<std::mutex> alone(mutex_);
        const ListKey list{kind.number, list_id};
        std::int64_t version = 0;
        const MwStatus status = storage().version(list, &version);
        return status == kMwOk ? give_handle(kind, list, handle) : status;
    });
}

MwStatus Engine::create(const Kind& kind, const char* name, std::uint16_t list_id, MwdbHandle* handle) {
    return guarded([&]() -> MwStatus {
        if (handle == nullptr || name == nullptr || list_id == 0) {
            return kHostBadArgument;
        }
        std::lock_guard<std::mutex> alone(mutex_);
        const ListKey list{kind.number, list_id};
        const MwStatus status = storage().create(list, name);
        return status == kMwOk ? give_handle(kind, list, handle) : status;
    });
}

MwStatus Engine::close(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey&) {
        forget(handle);
        return kMwOk;
    });
}

MwStatus Engine::remove(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey& list) {
        const MwStatus status = storage().remove(list);
        if (status == kMwOk) {
            forget(handle);
        }
        return status;
    });
}

MwStatus Engine::clean(const Kind& kind, MwdbHandle handle) {
    return on_list(kind, handle, [&](const ListKey& list) { return storage().clean(list); });
}

MwStatus Engine::copy(const Kind& kind, MwdbHandle from, MwdbHandle to) {
    return on_list(kind, from, [&](const ListKey& source) -> MwStatus {
        const OpenList* const target = find(kind, to);
        if (target == nullptr) {
            return kHostBadHandle;
        }
        return target->list == source ? kMwOk : storage().copy(source, target->list);
    });
}

// The file is read without holding other calls up.
MwStatus Engine::load_file(const Kind& kind, MwdbHandle handle, const char* path) {
    return guarded([&]() -> MwStatus {
        if (path == nullptr || *path == '\0') {
            return kHostBadArgument;
        }
        StoredRecords records;
        const MwStatus status = read_list_file(resolve_path(path), kind, records);
        if (status != kMwOk) {
            return on_list(kind, handle, [&](const ListKey&) { return status; });
        }
        return on_list(kind, handle, [&](const ListKey& list) { return storage().replace(list, kind, records); });
    });
}

// The file is written without holding other calls up.
MwStatus Engine::store_file(const Kind& kind, MwdbHandle handle, const char* path) {
    return guarded([&]() -> MwStatus {
        if (path == nullptr || *path == '\0') {
            return kHostBadArgument;
        }
        std::uint16_t list_id = 0;
        std::string name;
        StoredRecords records;
        const MwStatus status = on_list(kind, handle, [&](const ListKey& list) {
            list_id = list.list_id;
            return storage().load(list, kind, name, records);
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
    return on_list_lock(kind, handle, [&](const ListKey& list, const std::shared_ptr<LockFile>& file) {
        return locks_.lock(file, kind, list, level);
    });
}

MwStatus Engine::unlock(const Kind& kind, MwdbHandle handle, LockLevel level) {
    return on_list_lock(kind, handle, [&](const ListKey& list, const std::shared_ptr<LockFile>&) {
        return locks_.unlock(list, level);
    });
}

MwStatus Engine::next_record_id(const ListKey& list, std::uint16_t* record_id) {
    std::uint16_t highest = 0;
    MwStatus status = storage().highest_record_id(list, &highest);
    if (status == kMwEmpty) {
        *record_id = 1;
        return kMwOk;
    }
    if (status != kMwOk || highest < kMwNoRecordId - 1) {
        *record_id = static_cast<std::uint16_t>(highest + 1);
        return status;
    }
    const Order* every = nullptr;
    status = current_order(list, Filter(), &every);
    if (status == kMwOk) {
        *record_id = every->lowest_free_id();
    }
    return status;
}

MwStatus Engine::query_record_id(const Kind& kind, MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record_id == nullptr) {
            return kHostBadArgument;
        }
        switch (query) {
        case kMwQueryHighestRecordId:
            return storage().highest_record_id(list, record_id);
        case kMwQueryNextRecordId:
            return next_record_id(list, record_id);
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
        const std::uint16_t id = record_id_of(kind, record);
        if (id == kMwNoRecordId) {
            return kHostNoRecordIdLeft;
        }
        std::int64_t version = 0;
        const MwStatus status = storage().add(list, kind, record, &version);
        if (status == kMwOk) {
            Orders& orders = orders_[list];
            orders.every.added(id, static_cast<const std::byte*>(record), version);
            orders.chosen.added(id, static_cast<const std::byte*>(record), version);
        }
        return status;
    });
}

MwStatus Engine::update(const Kind& kind, MwdbHandle handle, const void* record) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr) {
            return kHostBadArgument;
        }
        std::int64_t version = 0;
        const MwStatus status = storage().update(list, kind, record, &version);
        if (status == kMwOk) {
            const std::uint16_t id = record_id_of(kind, record);
            Orders& orders = orders_[list];
            orders.every.updated(id, static_cast<const std::byte*>(record), version);
            orders.chosen.updated(id, static_cast<const std::byte*>(record), version);
        }
        return status;
    });
}

MwStatus Engine::remove_record(const Kind& kind, MwdbHandle handle, std::uint16_t record_id) {
    return on_list(kind, handle, [&](const ListKey& list) {
        std::int64_t version = 0;
        const MwStatus status = storage().remove_record(list, record_id, &version);
        if (status == kMwOk) {
            Orders& orders = orders_[list];
            orders.every.removed(record_id, version);
            orders.chosen.removed(record_id, version);
        }
        return status;
    });
}

MwStatus Engine::get(const Kind& kind, MwdbHandle handle, std::uint16_t record_id, void* record,
                     std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        std::int64_t list_version = 0;
        const MwStatus status = storage().get(list, kind, record_id, record, &list_version);
        if (status == kMwOk) {
            *version = static_cast<std::int32_t>(list_version);
        }
        return status;
    });
}

// The order that is kept for a filter, which may be behind the list.
Order& Engine::order_of(const ListKey& list, const Filter& filter) {
    Orders& orders = orders_[list];
    if (filter.is_everything()) {
        return orders.every;
    }
    if (!(orders.chosen.filter() == filter)) {
        orders.chosen = Order(filter);
    }
    return orders.chosen;
}

MwStatus Engine::current_order(const ListKey& list, const Filter& filter, const Order** current) {
    Order& order = order_of(list, filter);
    std::int64_t version = 0;
    MwStatus status = storage().version(list, &version);
    if (status == kMwOk && version != order.version()) {
        status = storage().load_order(list, order);
    }
    *current = &order;
    return status;
}

MwStatus Engine::get_at(const Kind& kind, MwdbHandle handle, const Filter& filter, std::int64_t index, void* record,
                        std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (record == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        Order& order = order_of(list, filter);
        for (;;) {
            const std::uint16_t id = index < 0 ? kMwNoRecordId : order.at(index);
            std::array<std::byte, kLargestRecord> found{};
            std::int64_t list_version = 0;
            const MwStatus status = storage().get(list, kind, id, found.data(), &list_version);
            if (status == kHostNoSuchList) {
                return status;
            }
            if (list_version == order.version()) {
                if (status != kMwOk) {
                    return kHostIndexOutOfRange;
                }
                std::memcpy(record, found.data(), kind.record_bytes);
                *version = static_cast<std::int32_t>(list_version);
                return kMwOk;
            }
            const MwStatus loaded = storage().load_order(list, order);
            if (loaded != kMwOk) {
                return loaded;
            }
        }
    });
}

MwStatus Engine::count(const Kind& kind, MwdbHandle handle, const Filter& filter, std::uint16_t* count,
                       std::int32_t* version) {
    return on_list(kind, handle, [&](const ListKey& list) -> MwStatus {
        if (count == nullptr || version == nullptr) {
            return kHostBadArgument;
        }
        const Order* order = nullptr;
        const MwStatus status = current_order(list, filter, &order);
        if (status == kMwOk) {
            *count = order->size();
            *version = static_cast<std::int32_t>(order->version());
        }
        return status;
    });
}

void Engine::reset() {
    std::lock_guard<std::mutex> alone(mutex_);
    locks_.clear();
    open_lists_.clear();
    orders_.clear();
    storage_.reset();
}

std::uint64_t Engine::work() {
    std::lock_guard<std::mutex> alone(mutex_);
    return storage_ == nullptr ? 0 : storage_->work();
}

} // namespace tavro::host
