// List changes written as lines of text, used by a test and by its child process.
#pragma once

#include "kinds.h"

#include <fstream>
#include <map>
#include <sstream>
#include <string>

// Applies changes to lists of one kind, which are opened on first use:
//
//     create LIST            clean LIST             delete LIST
//     add LIST ID FILL       update LIST ID FILL    remove LIST ID
//     copy FROM TO           store LIST PATH        load LIST PATH
//     lock LIST              unlock LIST
//     fill LIST              adds records until that fails ten times in a row
//     ballast 0 PATH         writes a file until the file system is full
template <class Kind>
class Changes {
public:
    // Returns the status of the change.
    tavro::MwStatus apply(const std::string& line) {
        std::istringstream words(line);
        std::string change;
        std::uint16_t list = 0;
        words >> change >> list;
        if (change == "create") {
            return Kind::create("list", list, tavro::kMwCreateMode, tavro::kMwCreateGrowth, 0, 0, &handles_[list]);
        }
        if (change == "ballast") {
            return write_ballast(words);
        }
        const tavro::MwdbHandle handle = handle_of(list);
        if (change == "lock" || change == "unlock") {
            return change == "lock" ? Kind::lock(handle) : Kind::unlock(handle);
        }
        if (change == "fill") {
            return fill(handle);
        }
        if (change == "clean") {
            return Kind::clean(handle);
        }
        if (change == "delete") {
            handles_.erase(list);
            return Kind::remove(handle);
        }
        if (change == "store" || change == "load") {
            std::string path;
            words >> path;
            return change == "store" ? Kind::store(handle, path.c_str(), list)
                                     : Kind::sync(handle, 0, path.c_str(), list);
        }
        std::uint16_t id = 0;
        int fill = 0;
        words >> id >> fill;
        if (change == "copy") {
            return Kind::copy(handle, handle_of(id));
        }
        if (change == "remove") {
            return Kind::remove_record(handle, id);
        }
        auto record = record_of<Kind>(id, static_cast<unsigned char>(fill));
        return change == "add" ? Kind::add(handle, &record) : Kind::update(handle, &record, tavro::kMwUpdatePlain);
    }

private:
    static tavro::MwStatus fill(tavro::MwdbHandle handle) {
        tavro::MwStatus status = tavro::kMwOk;
        int failures = 0;
        for (std::uint16_t id = 1; id < tavro::kMwNoRecordId && failures < 10; ++id) {
            auto record = record_of<Kind>(id, 0x11);
            status = Kind::add(handle, &record);
            failures = status == tavro::kMwOk ? 0 : failures + 1;
        }
        return status;
    }

    static tavro::MwStatus write_ballast(std::istringstream& words) {
        std::string path;
        words >> path;
        std::ofstream file(path, std::ios::binary);
        for (const std::string& block : {std::string(4096, 'x'), std::string("x")}) {
            while (file << block << std::flush) {
            }
            file.clear();
        }
        return tavro::kMwOk;
    }

    tavro::MwdbHandle handle_of(std::uint16_t list) {
        tavro::MwdbHandle& handle = handles_[list];
        if (handle == 0) {
            Kind::open(list, 0, 0, &handle);
        }
        return handle;
    }

    std::map<std::uint16_t, tavro::MwdbHandle> handles_;
};
