// Makes a call while each of its steps fails in turn, such as each allocation. Afterwards nothing has changed, or all
// of it, and the same call works.
#pragma once

#include "kinds.h"
#include "workspace.h"

#include <filesystem>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <vector>

using namespace tavro;

namespace fs = std::filesystem;

class EachFailure : public Workspace {
protected:
    // Storage before each call: lists 1 and 2, and a list file.
    void SetUp() override {
        fill(created<Networks>(1), {{1, 17}, {3, 51}, {2, 34}});
        fill(created<Networks>(2), {{7, 119}});
        fill(created<Networks>(9), {{8, 136}, {4, 68}});
        ASSERT_EQ(x_nwl_fs_store(opened<Networks>(9), file().c_str(), 9), kMwOk);
        restart();
        database_ = read_file(home() + "/lists.db");
        list_file_ = read_file(file());
    }

    // Lets the step with this number, counted from 1, fail; also all later ones, or only this one.
    virtual void fail(long number, bool later_too) = 0;
    // Ends that. Returns whether a step failed.
    virtual bool end_failures() = 0;
    virtual bool is_expected(MwStatus failure) const = 0;

    std::string file() const { return path("list"); }

    void count_failure(bool failed) { failures_ += failed ? 1 : 0; }

    static void fill(MwdbHandle handle, const Contents& records) {
        for (const auto& [id, fill] : records) {
            ASSERT_EQ(add<Networks>(handle, static_cast<std::uint16_t>(id), static_cast<unsigned char>(fill)), kMwOk);
        }
    }

    // Everything that is stored, as text.
    std::string stored() const {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((home() + "/lists.db").c_str(), &database), SQLITE_OK);
        std::string all;
        const auto take = [](void* text, int columns, char** values, char**) {
            for (int i = 0; i < columns; ++i) {
                *static_cast<std::string*>(text) += values[i] == nullptr ? "none " : std::string(values[i]) + " ";
            }
            return 0;
        };
        for (const char* table : {"SELECT number, name, version, next_position FROM lists ORDER BY number",
                                  "SELECT number, position, hex(bytes) FROM records ORDER BY number"}) {
            EXPECT_EQ(sqlite3_exec(database, table, take, &all, nullptr), SQLITE_OK);
        }
        // Succeeds only if no transaction is open, neither for writing nor for reading.
        int frames = 0;
        EXPECT_EQ(sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, &frames, nullptr),
                  SQLITE_OK);
        sqlite3_close(database);
        return all;
    }

    static Contents contents_of(std::uint16_t list) {
        MwdbHandle handle = 0;
        const MwStatus status = x_nwl_open(list, 0, 0, &handle);
        if (status != kMwOk) {
            return {{-1, status}};
        }
        const Contents all = contents<Networks>(handle);
        x_nwl_close(handle);
        return all;
    }
    static std::vector<Contents> all_contents() { return {contents_of(1), contents_of(2), contents_of(3)}; }

    void start_over() {
        restart();
        fs::remove(home() + "/lists.db-wal");
        write_file(home() + "/lists.db", database_);
        write_file(file(), list_file_);
    }

    // Makes the call again and again, on the same storage, until no more step fails. `later` says whether all
    // steps after the failed one fail, too. `prepare` runs before each and is not disturbed.
    void fail_each(const std::function<void()>& prepare, const std::function<MwStatus()>& call,
                   const std::vector<bool>& later = {false, true}) {
        start_over();
        prepare();
        const std::string before = stored();
        const std::vector<Contents> read_before = all_contents();
        ASSERT_EQ(call(), kMwOk);
        const std::string after = stored();
        const std::string file_after = read_file(file());
        const std::vector<Contents> read_after = all_contents();
        for (const bool later_too : later) {
            bool failed = true;
            for (long number = 1; failed; number += later_too ? 3 : 1) {
                SCOPED_TRACE("step " + std::to_string(number) + (later_too ? " and all later ones" : ""));
                start_over();
                prepare();
                fail(number, later_too);
                const MwStatus status = call();
                failed = end_failures();
                count_failure(failed);
                // Some steps can be done without, or are tried again.
                ASSERT_TRUE(status == kMwOk || (failed && is_expected(status))) << status;
                ASSERT_EQ(all_contents(), status == kMwOk ? read_after : read_before);
                ASSERT_EQ(stored(), status == kMwOk ? after : before);
                ASSERT_EQ(read_file(file()), status == kMwOk ? file_after : list_file_);
                if (status != kMwOk) {
                    ASSERT_EQ(call(), kMwOk);
                    ASSERT_EQ(stored(), after);
                }
                ASSERT_LT(number, 20000);
            }
        }
    }

    // The same for a call that gets a handle of list 1, with its records in memory and without.
    void fail_each(const std::function<MwStatus(MwdbHandle)>& call,
                   const std::vector<bool>& in_memory_or_not = {false, true}) {
        MwdbHandle handle = 0;
        for (const bool in_memory : in_memory_or_not) {
            SCOPED_TRACE(in_memory ? "records in memory" : "records not read");
            fail_each(
                [&] {
                    handle = opened<Networks>(1);
                    other_ = opened<Networks>(2);
                    if (in_memory) {
                        contents<Networks>(handle);
                        contents<Networks>(other_);
                    }
                },
                [&] { return call(handle); }, in_memory ? std::vector<bool>{false} : std::vector<bool>{false, true});
        }
    }

    void TearDown() override {
        EXPECT_GT(failures_, 5);
        RecordProperty("failures", failures_);
    }

    MwdbHandle other_ = 0; // of list 2

private:
    std::string database_;
    std::string list_file_;
    int failures_ = 0;
};
