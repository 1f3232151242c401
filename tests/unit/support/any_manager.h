// The four managers under one interface, for tests that run for every list kind.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tavro::test {

using Bytes = std::vector<std::byte>;

enum LockCall { kLock, kUnlock, kReadLock, kReadUnlock };

// A manager of any kind. Records are passed as bytes.
class AnyManager {
public:
    virtual ~AnyManager() = default;

    virtual bool get_handle(int id, unsigned int& handle) = 0;
    virtual bool set_handle(int id, unsigned int& handle, bool opened) = 0;
    virtual bool delete_handle(int id, unsigned int handle) = 0;
    virtual void clear_handles() = 0;
    virtual int open(int id) = 0;
    virtual int open(int id, const std::string& path) = 0;
    virtual int close(int id) = 0;
    virtual int delete_list(int id) = 0;
    virtual int clean(int id) = 0;
    virtual int copy(int source, int destination) = 0;
    virtual int store(int id, const std::string& path) = 0;
    virtual int lock(LockCall which, int id) = 0;
    virtual int add(int id, Bytes* record) = 0;
    virtual int copy_record(int id, Bytes* record) = 0;
    virtual int update(int id, Bytes& record) = 0;
    virtual int get(int id, int record_id, Bytes& record) = 0;
    virtual int remove(const std::string& identifier) = 0;
    virtual int remove_by_record_id(int id, const std::string& identifier) = 0;
    // Service lists are counted and read by index through a handle, not a list id.
    virtual int get_by_index(int id, int index, int& version, Bytes& record) = 0;
    virtual int count(int id) = 0;
    // Satellite lists have no such operation.
    virtual int update_records(int id) = 0;
};

// `LockCalls` are the manager's lock operations that take a list id, in the order of LockCall.
template <class Manager, class Record, auto... LockCalls>
class ManagerOf : public AnyManager {
    static constexpr bool kReadsByListId = sizeof...(LockCalls) == 4;

public:
    bool get_handle(int id, unsigned int& handle) override { return manager.getMwdbHandle(id, handle); }
    bool set_handle(int id, unsigned int& handle, bool opened) override {
        return manager.setMwdbHandle(id, handle, opened);
    }
    bool delete_handle(int id, unsigned int handle) override { return manager.deleteMwdbHandle(id, handle); }
    void clear_handles() override { manager.clearMwdbHandle(); }
    int open(int id) override { return manager.open(id); }
    int open(int id, const std::string& path) override { return manager.open(id, path); }
    int close(int id) override { return manager.close(id); }
    int delete_list(int id) override { return manager._delete(id); }
    int clean(int id) override { return manager.clean(id); }
    int copy(int source, int destination) override { return manager.copy(source, destination); }
    int store(int id, const std::string& path) override { return manager.store(id, path); }
    int lock(LockCall which, int id) override {
        const std::array<int (Manager::*)(int), sizeof...(LockCalls)> calls = {LockCalls...};
        return (manager.*calls.at(which))(id);
    }
    int add(int id, Bytes* record) override {
        return with(record, [&](Record* native) { return manager.addInfo(id, native); });
    }
    int copy_record(int id, Bytes* record) override {
        return with(record, [&](Record* native) { return manager.copyInfo(id, native); });
    }
    int update(int id, Bytes& record) override {
        return with(&record, [&](Record* native) { return manager.updateInfo(id, native); });
    }
    int get(int id, int record_id, Bytes& record) override {
        return with(&record, [&](Record* native) { return manager.getInfo(id, record_id, native); });
    }
    int remove(const std::string& identifier) override { return manager.removeInfo(identifier); }
    int remove_by_record_id(int id, const std::string& identifier) override {
        return manager.removeInfoByRecId(id, identifier);
    }
    int get_by_index([[maybe_unused]] int id, [[maybe_unused]] int index, [[maybe_unused]] int& version,
                     [[maybe_unused]] Bytes& record) override {
        if constexpr (kReadsByListId) {
            return with(&record, [&](Record* native) { return manager.getInfoByIdx(id, index, &version, native); });
        } else {
            throw std::logic_error("services are read by handle");
        }
    }
    int count([[maybe_unused]] int id) override {
        if constexpr (kReadsByListId) {
            return manager.getInfoListNum(id);
        } else {
            throw std::logic_error("services are counted by handle");
        }
    }
    int update_records(int id) override { return manager.updateInfoList(id); }

private:
    // Makes the call with a record of the manager's type and copies the record back afterwards.
    template <class Call>
    static int with(Bytes* record, Call call) {
        if (record == nullptr) {
            return call(nullptr);
        }
        const auto native = std::make_unique<Record>();
        EXPECT_EQ(record->size(), sizeof(Record));
        std::memcpy(native.get(), record->data(), sizeof(Record));
        const int result = call(native.get());
        std::memcpy(record->data(), native.get(), sizeof(Record));
        return result;
    }

    Manager manager;
};

// The satellite list manager under the other managers' names.
class RenamedSatelliteList : public NativeVltTvSatelliteList {
public:
    bool getMwdbHandle(int id, unsigned int& handle) { return getSatHandle(id, &handle); }
    bool setMwdbHandle(int id, unsigned int& handle, bool opened) { return setSatHandle(id, &handle, opened); }
    bool deleteMwdbHandle(int id, unsigned int handle) { return deleteSatHandle(id, handle); }
    void clearMwdbHandle() { clearSatHandle(); }
    int getInfo(int id, int record_id, _SATL_REC_T* record) {
        return NativeVltTvSatelliteList::getInfo(std::to_string(id) + "," + std::to_string(record_id), record);
    }
    int updateInfoList(int /*id*/) { throw std::logic_error("satellite lists have no updateInfoList"); }
};

using AnyServiceList =
    ManagerOf<NativeVltTvChannelList, _SVL_REC_T, &NativeVltTvChannelList::lockSvl, &NativeVltTvChannelList::unLockSvl>;
using AnyTransportStreamList =
    ManagerOf<NativeVltTvTransportStreamList, _TSL_REC_T, &NativeVltTvTransportStreamList::lockTsl,
              &NativeVltTvTransportStreamList::unLockTsl, &NativeVltTvTransportStreamList::readLockTsl,
              &NativeVltTvTransportStreamList::readUnLockTsl>;
using AnyNetworkList =
    ManagerOf<NativeVltTvNetworkList, _NWL_REC_T, &NativeVltTvNetworkList::lockNwl, &NativeVltTvNetworkList::unLockNwl,
              &NativeVltTvNetworkList::readLockNwl, &NativeVltTvNetworkList::readUnLockNwl>;
using AnySatelliteList =
    ManagerOf<RenamedSatelliteList, _SATL_REC_T, &RenamedSatelliteList::lockSatl, &RenamedSatelliteList::unLockSatl,
              &RenamedSatelliteList::readLockSatl, &RenamedSatelliteList::readUnLockSatl>;

template <class Manager>
std::unique_ptr<AnyManager> make_manager() {
    return std::make_unique<Manager>();
}

} // namespace tavro::test
