// The satellite list store over the scripted middleware: the words of its transcripts (see
// store_test_support.h for how they are written and compared).
#pragma once

#include "channellist/NativeVltTvSatelliteList.h"
#include "store_test_support.h"

namespace tavro::test {

inline const Kind kSatellites = {"Satellites",
                                 "[SATELITE] NativeVltTvSatelliteList_Cpp",
                                 "[NativeVltTvSatelliteList]",
                                 "",
                                 "x_satl_",
                                 "fs_satl_",
                                 "satId",
                                 "satRecId",
                                 SatlKind::handles(),
                                 nullptr, // its manager has a shape of its own
                                 4,
                                 true,
                                 412,
                                 0,
                                 0,
                                 282,
                                 ""};

class SatelliteStore : public StoreTest {
protected:
    SatelliteStore() : StoreTest(kSatellites) { SatlKind::handles().clear(); }
    ~SatelliteStore() override { SatlKind::handles().clear(); }

    // Starts anew with this log property: no journal, no answers, no open list.
    void start(const char* property) {
        StoreTest::start(property);
        SatlKind::handles().clear();
    }

    // What begins most operations, `id` being told as it was given.
    Steps entry(const std::string& operation, int id) const {
        return debug("[" + operation + "]: satId = " + std::to_string(id) + " \n");
    }
    Steps handle_line(const std::string& operation, int id, const std::string& value) const {
        return debug("#[" + operation + "]: satId = " + key(id) + " satHandle:" + value + "\n");
    }

    // What the look-up of an open list writes, and what is written when a handle is recorded or forgotten.
    Steps found(int id) const { return handle_line("getSatHandle", id, "@" + key(id)); }
    Steps found_zero(int id) const { return handle_line("getSatHandle", id, "0x0"); }
    Steps recorded(int id) const { return handle_line("setSatHandle", id, "@" + key(id)); }
    Steps forgotten(int id) const { return handle_line("deleteSatHandle", id, "@" + key(id)); }
    Steps tried_open(int id) const { return call("open(" + key(id) + ", 0, 0)"); }
    // The opening of a list on its first use.
    Steps opened(int id) const { return tried_open(id) + recorded(id); }
    Steps locked(int id, const Steps& work) const {
        return call("lock(@" + key(id) + ")") + work + call("unlock(@" + key(id) + ")");
    }

    // A record without two neighbouring bytes alike, under record id 17.
    static _SATL_REC_T sample() { return sample_as(17); }
    static _SATL_REC_T sample_as(std::uint16_t record_id) {
        _SATL_REC_T record;
        std::array<unsigned char, sizeof(record)> bytes;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<unsigned char>(i * 31 + 7);
        }
        std::memcpy(&record, bytes.data(), bytes.size());
        record.ui2_satl_rec_id = record_id;
        return record;
    }
    static Bytes bytes_of(const _SATL_REC_T& record) {
        Bytes bytes(sizeof(record));
        std::memcpy(bytes.data(), &record, sizeof(record));
        return bytes;
    }

    NativeVltTvSatelliteList manager;
};

} // namespace tavro::test
