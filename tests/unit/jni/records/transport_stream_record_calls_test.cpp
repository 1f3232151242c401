// The JNI calls that the conversion of transport stream objects makes for their keys, and what its functions log when
// they are called alone. transport_stream_record_test.cpp tests what is stored.

#include "fake_jni.h"
#include "jni/records/transport_stream_record.h"
#include "record_calls.h"
#include "scripted_test.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using tavro::Jni;

namespace {

using namespace tavro::test;

const std::string kPrefix = "log 3 -: [jni_VltTvList_Init] ";

class TransportStreamCalls : public ScriptedTest {
protected:
    void convert() {
        Jni env(jni.env());
        _set_ts_info(env, FakeJni::ref(stream), record);
    }
    FakeObject& alternate() {
        FakeObject& entry = jni.object("entry");
        entry.int_fields = {{"alternateFreq", 474000}, {"alternateBandwidth", 8000}};
        return entry;
    }
    // Gives the object every key that holds a number, with its field. "Standard" reads a second field.
    void carry_numbers() {
        for (const char* key : {"BroadcastType",     "BroadcastMedium",   "NetworkId",
                                "OriginalNetworkId", "TransportStreamId", "Frequency",
                                "Bandwidth",         "BroadcastMode",     "PlpId",
                                "PlpGroupId",        "BarkerChannel",     "FecInner",
                                "Modulation",        "Standard",          "GuardInterval",
                                "TransmissionMode",  "Hierarchy",         "FecOuter",
                                "SymbolRate",        "PilotInsert",       "RollOff",
                                "CodeRate",          "IsHomeTransponder", "TunerPolarizaTion",
                                "SignalStrength",    "SignalQuality",     "RcKeyId"}) {
            std::string field = key;
            field[0] = static_cast<char>(field[0] - 'A' + 'a');
            stream.keys.insert(key);
            reads[key] = int_read(field);
        }
        reads["Standard"] = joined(reads["Standard"], int_read("broadcastMedium"));
    }
    void carry(const std::string& key, const std::string& field, FakeObject* value, const Lines& after) {
        stream.keys.insert(key);
        stream.object_fields[field] = value;
        reads[key] = joined(object_read(field), after);
    }
    void carry_alternates(FakeObject* array, const Lines& after) {
        carry("AlternateFrequencyInfoList", "alternateFrequencyInfoList", array, {});
        reads["AlternateFrequencyInfoList"] = joined(
            object_read("alternateFrequencyInfoList", "[Lcom/velotra/tv/tavro/services/channellist/"
                                                      "VltTvTransportStreamInfoBase$AlternateFrequencyInfoBase;"),
            after);
    }

    FakeJni jni;
    FakeObject& stream = jni.object("stream");
    std::map<std::string, Lines> reads; // the calls for each key that the object has
    _TSL_REC_T record = {};
};

TEST_F(TransportStreamCalls, KeysAreAskedForInOrderOnTheClassFoundByName) {
    convert();
    EXPECT_EQ(jni.journal(), stream_conversion("stream"));
}

TEST_F(TransportStreamCalls, EveryFieldIsReadWhileTheStringOfItsKeyIsHeld) {
    carry_numbers();
    carry("TslNwlRecId", "tslNwlRecId", &jni.string("5,9"), joined(chars("5,9"), given_back(quoted("5,9"))));
    carry("TslSatlRecId", "tslSatlRecId", &jni.string("7,1"), joined(chars("7,1"), given_back(quoted("7,1"))));
    carry("NetworkName", "networkName", &jni.string("One"), joined(chars_kept("One"), given_back(quoted("One"))));
    carry("AcTsName", "acTsName", &jni.string("Two"), joined(chars_kept("Two"), given_back(quoted("Two"))));
    FakeObject& array = jni.object("array");
    array.elements = {&alternate(), nullptr, &alternate()};
    const Lines entry = joined(Lines{"GetObjectClass(entry)"}, int_read("alternateFreq"),
                               int_read("alternateBandwidth"), given_back("class of entry"), given_back("entry"));
    carry_alternates(&array,
                     joined(Lines{"GetArrayLength(array)", "GetObjectArrayElement(0)"}, entry,
                            Lines{"GetObjectArrayElement(1)", "GetObjectArrayElement(2)"}, entry, given_back("array")));
    ASSERT_EQ(reads.size(), 32U);
    for (const int medium : {0, 1, 2, 3, 4}) { // the calls do not depend on it
        jni.count_references_anew();
        jni.clear_journal();
        stream.int_fields["broadcastMedium"] = medium;
        convert();
        EXPECT_EQ(jni.journal(), stream_conversion("stream", reads)) << medium;
        EXPECT_EQ(jni.live_references(), 0);
    }
    EXPECT_EQ(jni.unreleased_chars(), 5 * 2); // of the two names
}

TEST_F(TransportStreamCalls, ANullFieldOrATooLongArrayIsNotReadFurther) {
    carry("TslNwlRecId", "tslNwlRecId", nullptr, {});
    carry("TslSatlRecId", "tslSatlRecId", nullptr, {});
    carry("NetworkName", "networkName", nullptr, {});
    carry("AcTsName", "acTsName", nullptr, {});
    carry_alternates(nullptr, {});
    convert();
    EXPECT_EQ(jni.journal(), stream_conversion("stream", reads));

    jni.clear_journal();
    FakeObject& array = jni.object("array");
    array.elements.assign(6, &alternate());
    carry_alternates(&array, {"GetArrayLength(array)", "DeleteLocalRef(array)"});
    convert();
    EXPECT_EQ(jni.journal(), stream_conversion("stream", reads));
}

TEST_F(TransportStreamCalls, CodeLinesShowTheStoredCodeEvenForAValueOutsideTheTable) {
    log_level("D");
    for (const int value : {0, 1, 9, 10}) {
        TUNER_FEC_INNER_T code = 99;
        _get_fecInner_by_switch(value, code);
    }
    for (const int value : {0, 1, 28, 29}) {
        TUNER_MODULATION_T code = 99;
        _get_mod_by_switch(value, code);
    }
    for (const int value : {1, 2, 9, 10}) {
        TUNER_TRANSMISSION_MODE_T code = 99;
        _get_transmission_mode_by_switch(value, code);
    }
    const std::string fec = kPrefix + "[_get_fecInner_by_switch][2228] fecInner:";
    const std::string modulation = kPrefix + "[_get_mod_by_switch][2320] mod:";
    const std::string mode = kPrefix + "[_get_transmission_mode_by_switch][2352] transMode:";
    EXPECT_EQ(jni.journal(),
              (Lines{fec + "99 ", fec + "2 ", fec + "11 ", fec + "99 ", modulation + "99 ", modulation + "1 ",
                     modulation + "28 ", modulation + "99 ", mode + "99 ", mode + "5 ", mode + "4 ", mode + "99 "}));
}

TEST_F(TransportStreamCalls, TheFrequencyIsStoredForAKnownMediumAndLoggedForAny) {
    log_level("D");
    Lines expected;
    for (std::uint8_t medium = 0; medium <= 4; ++medium) {
        record.e_bcst_medium = medium;
        record.ui4_freq = 12;
        _set_freq_by_medium(record, 474000);
        const std::uint32_t stored = medium >= 1 && medium <= 3 ? 474000 : 12;
        EXPECT_EQ(record.ui4_freq, stored) << int(medium);
        expected.push_back(kPrefix + "[_set_freq_by_medium][2537] ui4_freq:" + std::to_string(stored) +
                           " iFrequency:474000 ");
    }
    EXPECT_EQ(jni.journal(), expected);
}

TEST_F(TransportStreamCalls, ANameWithoutItsNulIsLoggedToTheEndOfItsField) {
    log_level("D");
    std::memset(&record, 0xFF, sizeof(record));
    carry("AcTsName", "acTsName", &jni.string(std::string(41, 'x')), {}); // too long to be stored
    convert();
    EXPECT_EQ(jni.journal_with("ac_ts_name"), Lines{kPrefix + "ac_ts_name = " + std::string(41, '\xFF') + "\n"});
}

} // namespace
