// Traffic of several threads in several processes over the same lists, properties file and log, used by a test and by
// its child processes.
#pragma once

#include "kinds.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

// Network list 1 gets records with the ids 1, 2, 3, … Each process uses one further list of its own.
class Traffic {
public:
    // Each thread makes this many rounds.
    Traffic(std::string directory, int process, int rounds)
        : directory_(std::move(directory)), process_(process), rounds_(rounds) {}

    // Returns the number of calls that did not do what they should.
    int run() {
        std::vector<std::thread> threads;
        for (const auto work : {&Traffic::add, &Traffic::add, &Traffic::read, &Traffic::exchange, &Traffic::observe}) {
            threads.emplace_back([this, work] {
                tavro::MwdbHandle list = 0;
                expect(x_nwl_open(1, 0, 0, &list) == tavro::kMwOk);
                for (int round = 0; round < rounds_; ++round) {
                    (this->*work)(list, round);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return failures_;
    }

    static constexpr int kAddsInARound = 2; // of one process

private:
    using Handle = tavro::MwdbHandle;

    void expect(bool right) { failures_ += right ? 0 : 1; }

    void add(Handle list, int) {
        expect(x_nwl_lock(list) == tavro::kMwOk);
        auto record = record_of<Networks>(0, 1);
        expect(x_nwl_qry_rec_id(list, tavro::kMwQueryNextRecordId, &record.ui2_nwl_rec_id) == tavro::kMwOk);
        expect(x_nwl_add_rec(list, &record) == tavro::kMwOk);
        expect(x_nwl_unlock(list) == tavro::kMwOk);
    }

    void read(Handle list, int) {
        std::uint16_t count = 0;
        std::int32_t version = 0;
        _NWL_REC_T record{};
        expect(x_nwl_read_lock(list) == tavro::kMwOk);
        expect(x_nwl_get_num_rec(list, &count, &version) == tavro::kMwOk);
        if (count != 0) {
            expect(Networks::get_at(list, static_cast<std::uint16_t>(count - 1), &record, &version) == tavro::kMwOk);
            expect(record.ui2_nwl_rec_id == count);
        }
        expect(x_nwl_read_unlock(list) == tavro::kMwOk);
    }

    // Stores the list to a file and loads that into the process's own list.
    void exchange(Handle list, int round) {
        const auto own = static_cast<std::uint16_t>(100 + process_);
        const std::string file = directory_ + "/list" + std::to_string(process_);
        Handle copy = 0;
        expect((round == 0 ? x_nwl_create("copy", own, tavro::kMwCreateMode, tavro::kMwCreateGrowth, 0, 0, &copy)
                           : x_nwl_open(own, 0, 0, &copy)) == tavro::kMwOk);
        expect(x_nwl_fs_store(list, file.c_str(), 1) == tavro::kMwOk);
        expect(x_nwl_fs_sync(copy, 0, file.c_str(), own) == tavro::kMwOk);
        expect(x_nwl_copy_date(list, copy) == tavro::kMwOk);
        expect(x_nwl_close(copy) == tavro::kMwOk);
    }

    // Changes the properties file, reads it and writes a log line.
    void observe(Handle, int round) {
        const std::string file = directory_ + "/properties";
        const std::string changed = file + std::to_string(process_);
        std::ofstream(changed) << "traffic=" << (round % 2 == 0 ? "even\n" : "odd\n");
        std::rename(changed.c_str(), file.c_str());
        char value[PROPERTY_VALUE_MAX];
        property_get("traffic", value, "none");
        expect(value == std::string("even") || value == std::string("odd"));
        expect(__android_log_print(3, "Traffic", "process %d\nround %d", process_, round) == 1);
    }

    const std::string directory_;
    const int process_;
    const int rounds_;
    std::atomic<int> failures_{0};
};
