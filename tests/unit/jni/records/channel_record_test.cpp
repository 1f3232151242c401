// The bytes that the conversion of service objects writes, its log lines, and the JNI calls that it makes.
#include "fake_jni.h"
#include "jni/records/channel_record.h"
#include "record_calls.h"
#include "script.h"
#include "scripted_test.h"

#include <array>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::Jni;
using tavro::RecordObject;

namespace {

using namespace tavro::test;

using Bytes = std::array<unsigned char, sizeof(_SVL_REC_T)>;

constexpr std::size_t kSpecific = 152; // where the broadcast-specific part begins

// The conversion under test.
enum class Part { kHeader, kDvb, kDtmb };

// An int key and the bytes that it writes.
struct IntKey {
    const char* key;
    const char* field;
    std::size_t offset; // in the record
    std::size_t width;
};

// A flag key and its bit in the 32-bit word at `offset`.
struct FlagKey {
    const char* key;
    const char* field;
    std::size_t offset;
    std::uint32_t bit;
};

const IntKey kHeaderInts[] = {
    {"ServiceId", "serviceId", 24, 2},
    {"BroadcastType", "broadcastType", 38, 1},
    {"ServiceType", "serviceType", 39, 1},
};

const FlagKey kFlags[] = {
    {"VnetActive", "vnetActive", 8, 0x2},
    {"VnetEpg", "vnetEpg", 8, 0x4},
    {"VnetVisible", "vnetVisible", 8, 0x8},
    {"ventChannelBlock", "ventChannelBlock", 8, 0x100},
    {"VnetNumericSelectable", "vnetNumericSelectable", 8, 0x200},
    {"VnetInbList", "vnetInbList", 8, 0x400},
    {"VnetScrambled", "vnetScrambled", 8, 0x800},
    {"VnetBackup1", "vnetBackup1", 8, 0x1000},
    {"ventNewServiceByBGM", "ventNewServiceByBGM", 8, 0x40000},
    {"VnetBrdcstSvc", "vnetBrdcstSvc", 8, 0x100000},
    {"VoptUserTmpUnlock", "voptUserTmpUnlock", 12, 0x4},
    {"VoptChNameEdited", "voptChNameEdited", 12, 0x8},
    {"VoptLcnApplied", "voptLcnApplied", 12, 0x20},
    {"VoptHdSimulcast", "voptHdSimulcast", 12, 0x80},
    {"VoptSdtAvailable", "voptSdtAvailable", 12, 0x200},
    {"VoptChNumEdited", "voptChNumEdited", 12, 0x400},
    {"VoptPortugalHdSiMulcast", "voptPortugalHdSiMulcast", 12, 0x800},
    {"VoptDeletedByUser", "voptDeletedByUser", 12, 0x2000},
    {"VoptStreamReqBlock", "voptStreamReqBlock", 12, 0x400000},
    {"VoptInteractRestrict", "voptInteractRestrict", 12, 0x800000},
    {"Vopt2SdtActualAvailable", "vopt2SdtActualAvailable", 16, 0x40},
    {"vopt2NewServiceByMonitor", "vopt2NewServiceByMonitor", 16, 0x100},
    {"Vopt2SvcEitSchedule", "vopt2SvcEitSchedule", 16, 0x200},
    {"vopt2NewServiceBasedOnOPT", "vopt2NewServiceBasedOnOPT", 16, 0x400},
};

// Offsets from the start of the specific part.
const IntKey kCommonInts[] = {
    {"CaSystemId", "caSystemId", 22, 2},
    {"ServiceRunningStatus", "serviceRunningStatus", 24, 4},
    {"CaReplacementOnId", "caReplacementOnId", 32, 2},
    {"CaReplacementTsId", "caReplacementTsId", 34, 2},
    {"CaRepalacementSvcId", "caRepalacementSvcId", 36, 2},
    {"SvcReplacementOnId", "svcReplacementOnId", 38, 2},
    {"SvcReplacementTsId", "svcReplacementTsId", 40, 2},
    {"SvcReplacementSvcId", "svcReplacementSvcId", 42, 2},
    {"CompleteEitSchOnId", "completeEitSchOnId", 44, 2},
    {"CompleteEitSchTsId", "completeEitSchTsId", 46, 2},
    {"CompleteEitSchSvcId", "completeEitSchSvcId", 48, 2},
    {"HdSimulCastOnId", "hdSimulCastOnId", 50, 2},
    {"HdSimulcastTsId", "hdSimulcastTsId", 52, 2},
    {"HdSimulcastSvcId", "hdSimulcastSvcId", 54, 2},
    {"LinkageDescrMask", "linkageDescrMask", 28, 4},
};

const IntKey kDvbInts[] = {
    {"FreeCaMode", "freeCaMode", 64, 1},
    {"CiHostShunningMode", "ciHostShunningMode", 65, 1},
    {"CiTuneService", "ciTuneService", 72, 1},
    {"EitPfFlag", "eitPfFlag", 107, 1},
    {"LogicalChannelNumber", "logicalChannelNumber", 108, 2},
    {"OriginalLcn", "originalLcn", 110, 2},
    {"LcnIndex", "lcnIndex", 112, 2},
    {"DisplayingIdFlag", "displayingIdFlag", 119, 1},
    {"DisplayingTsId", "displayingTsId", 120, 2},
    {"DisplayingServiceId", "displayingServiceId", 122, 2},
    {"CompDescInfo", "compDescInfo", 128, 4},
    {"SdtServiceType", "sdtServiceType", 132, 1},
    {"CategoryMask", "categoryMask", 172, 4},
    {"TargetRegionLevel", "targetRegionLevel", 209, 1},
    {"SdtStreamContent", "sdtStreamContent", 216, 1},
    {"SdtStreamContentExt", "sdtStreamContentExt", 217, 1},
    {"SdtStreamComponentType", "sdtStreamComponentType", 218, 1},
};

const IntKey kDtmbInts[] = {
    {"FreeCaMode", "freeCaMode", 62, 1},
    {"SdtServiceType", "sdtServiceType", 65, 1},
};

class ChannelRecord : public tavro::test::ScriptedTest {
protected:
    ChannelRecord() {
        log_level("S");
        // No two neighboring bytes are equal, so that a byte that moves is noticed.
        for (std::size_t i = 0; i < before.size(); ++i) {
            before[i] = static_cast<unsigned char>(0xA5 + i * 7);
        }
        std::memcpy(&record, before.data(), before.size());
    }

    void convert(Part part) { convert(part, jni); }
    void convert(Part part, FakeJni& platform) {
        Jni env(platform.env());
        RecordObject object(env, static_cast<jclass>(FakeJni::ref(cls)), FakeJni::ref(channel),
                            tavro::kChannelContainsKey);
        switch (part) {
        case Part::kHeader:
            _set_header_info(object, record.t_header);
            break;
        case Part::kDvb:
            _set_dvb_info(object, record.u_specific.t_dvb);
            break;
        case Part::kDtmb:
            _set_dtmb_info(object, record.u_specific.t_dtmb);
            break;
        }
    }

    Bytes after() const {
        Bytes bytes;
        std::memcpy(bytes.data(), &record, bytes.size());
        return bytes;
    }

    // The record before the conversion, with `width` bytes at `offset` replaced (little-endian).
    Bytes with(std::size_t offset, std::size_t width, std::uint32_t value) const {
        Bytes bytes = before;
        for (std::size_t i = 0; i < width; ++i) {
            bytes[offset + i] = static_cast<unsigned char>(value >> (8 * i));
        }
        return bytes;
    }
    Bytes with_text(std::size_t offset, std::size_t width, const std::string& text) const {
        Bytes bytes = before;
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), width, static_cast<unsigned char>(0));
        std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        return bytes;
    }

    void set(const char* key, const char* field, jint value) {
        channel.keys = {key};
        channel.int_fields = {{field, value}};
    }
    void set(const char* key, const char* field, FakeObject* value) {
        channel.keys = {key};
        channel.object_fields = {{field, value}};
    }

    // Converts a fresh copy of the record.
    Bytes convert_fresh(Part part) {
        std::memcpy(&record, before.data(), before.size());
        convert(part);
        return after();
    }

    FakeJni jni;
    FakeObject& channel = jni.object("channel");
    FakeObject& cls = jni.object("class");
    Bytes before{};
    _SVL_REC_T record;
};

TEST_F(ChannelRecord, WithoutAnyKeyStaysByteForByte) {
    for (const Part part : {Part::kHeader, Part::kDvb, Part::kDtmb}) {
        EXPECT_EQ(convert_fresh(part), before);
    }
}

TEST_F(ChannelRecord, EveryIntKeyWritesItsBytesAndNoOther) {
    const auto check = [&](const IntKey& key, Part part, std::size_t base) {
        for (const jint value : {0x12345678, -2, 0}) {
            set(key.key, key.field, value);
            EXPECT_EQ(convert_fresh(part), with(base + key.offset, key.width, static_cast<std::uint32_t>(value)))
                << key.key << " " << value;
        }
    };
    for (const IntKey& key : kHeaderInts) {
        check(key, Part::kHeader, 0);
    }
    for (const IntKey& key : kCommonInts) {
        check(key, Part::kDvb, kSpecific);
        check(key, Part::kDtmb, kSpecific);
    }
    for (const IntKey& key : kDvbInts) {
        check(key, Part::kDvb, kSpecific);
    }
    for (const IntKey& key : kDtmbInts) {
        check(key, Part::kDtmb, kSpecific);
    }
}

TEST_F(ChannelRecord, AFlagIsSetByOneAndClearedByAnyOtherValue) {
    for (const FlagKey& flag : kFlags) {
        for (const std::uint32_t word : {0U, 0xFFFFFFFFU, 0xA5A5A5A5U}) {
            before = with(flag.offset, 4, word);
            for (const jint value : {1, 0, 2, -1}) {
                set(flag.key, flag.field, value);
                EXPECT_EQ(convert_fresh(Part::kHeader),
                          with(flag.offset, 4, value == 1 ? word | flag.bit : word & ~flag.bit))
                    << flag.key << " " << value;
            }
        }
    }
}

TEST_F(ChannelRecord, VisibleZeroClearsItsBitAndChangesNothingElse) {
    before = with(8, 4, 0xFFFFFFFF);
    set("VnetVisible", "vnetVisible", 0);
    EXPECT_EQ(convert_fresh(Part::kHeader), with(8, 4, 0xFFFFFFF7));
}

TEST_F(ChannelRecord, DtmbReadsNoKeyThatOnlyDvbHas) {
    for (const IntKey& key : kDvbInts) {
        if (std::string("FreeCaMode SdtServiceType").find(key.key) == std::string::npos) {
            set(key.key, key.field, 0x12345678);
            EXPECT_EQ(convert_fresh(Part::kDtmb), before) << key.key;
        }
    }
}

TEST_F(ChannelRecord, ALogicalChannelNumberOf70000IsCutTo16Bits) {
    set("LogicalChannelNumber", "logicalChannelNumber", 70000);
    EXPECT_EQ(convert_fresh(Part::kDvb), with(kSpecific + 108, 2, 4464));
}

TEST_F(ChannelRecord, FreeCaModeAndSdtServiceTypeHaveOtherOffsetsForDtmb) {
    channel.keys = {"FreeCaMode", "SdtServiceType"};
    channel.int_fields = {{"freeCaMode", 1}, {"sdtServiceType", 25}};
    Bytes dtmb = with(kSpecific + 62, 1, 1);
    dtmb[kSpecific + 65] = 25;
    EXPECT_EQ(convert_fresh(Part::kDtmb), dtmb);
    Bytes dvb = with(kSpecific + 64, 1, 1);
    dvb[kSpecific + 132] = 25;
    EXPECT_EQ(convert_fresh(Part::kDvb), dvb);
}

TEST_F(ChannelRecord, TextsAreCutToTheirFieldPaddedWithZerosAndTerminated) {
    const struct {
        const char* key;
        const char* field;
        Part part;
        std::size_t offset;
        std::size_t length;
    } cases[] = {
        {"ServiceName", "serviceName", Part::kHeader, 40, 64},
        {"ServiceShortName", "serviceShortName", Part::kDvb, kSpecific + 4, 16},
        {"ServiceShortName", "serviceShortName", Part::kDtmb, kSpecific + 4, 16},
        {"DadInfo", "dadInfo", Part::kDvb, kSpecific + 134, 32},
        {"ServiceProfileName", "serviceProfileName", Part::kDvb, kSpecific + 176, 32},
    };
    const std::string long_text = "The first public service of the northern region, with a very long name indeed";
    for (const auto& c : cases) {
        for (const std::size_t length :
             {c.length + 6, c.length + 1, c.length, c.length - 1, std::size_t{1}, std::size_t{0}}) {
            set(c.key, c.field, &jni.string(long_text.substr(0, length)));
            EXPECT_EQ(convert_fresh(c.part),
                      with_text(c.offset, c.length + 1, long_text.substr(0, std::min(length, c.length))))
                << c.key << " " << length;
        }
    }
}

TEST_F(ChannelRecord, ANameOf70BytesKeepsItsFirst64Terminated) {
    const std::string name(70, 'n');
    set("ServiceName", "serviceName", &jni.string(name));
    EXPECT_EQ(convert_fresh(Part::kHeader), with_text(40, 65, name.substr(0, 64)));
}

TEST_F(ChannelRecord, ANullTextStoresNothingAndWritesNoLine) {
    log_level("V");
    set("ServiceName", "serviceName", nullptr);
    EXPECT_EQ(convert_fresh(Part::kHeader), before);
    for (const auto& [key, field] : {std::pair{"ServiceShortName", "serviceShortName"}, {"DadInfo", "dadInfo"}}) {
        set(key, field, nullptr);
        EXPECT_EQ(convert_fresh(Part::kDvb), before);
    }
    EXPECT_EQ(jni.journal_with("log "), Lines{});
}

TEST_F(ChannelRecord, CharactersAreKeptAndTheirStringIsReleasedAfterTheRead) {
    set("ServiceName", "serviceName", &jni.string("One"));
    convert(Part::kHeader);
    EXPECT_EQ(jni.unreleased_chars(), 1);
    EXPECT_EQ(jni.journal_with("\"One\""), (Lines{"GetStringUTFChars(\"One\")", "DeleteLocalRef(\"One\")"}));
    EXPECT_EQ(jni.live_references(), 0);
}

TEST_F(ChannelRecord, ARecordIdentifierSetsListAndRecord) {
    set("TslRecId", "tslRecId", &jni.string("5,9"));
    EXPECT_EQ(convert_fresh(Part::kHeader), with(26, 4, 9U << 16 | 5U));
    set("SatlRecId", "satlRecId", &jni.string("70000,70001"));
    EXPECT_EQ(convert_fresh(Part::kHeader), with(34, 4, 4465U << 16 | 4464U));
}

TEST_F(ChannelRecord, ARecordIdentifierThatCannotBeParsedLeavesBothFields) {
    log_level("E");
    const struct {
        FakeObject* value;
        Lines lines;
    } cases[] = {
        {&jni.string("5;9"), {"log 6 -: Unknown data s_Id.\n"}},
        {&jni.string("x,9"), {}},
        {&jni.string(""), {"log 6 -: Invalid String.\n", "log 6 -: Invalid param.\n"}},
        {nullptr, {"log 6 -: Invalid String.\n", "log 6 -: Invalid param.\n"}},
    };
    for (const auto& [key, field] : {std::pair{"TslRecId", "tslRecId"}, {"SatlRecId", "satlRecId"}}) {
        for (const auto& c : cases) {
            set(key, field, c.value);
            jni.clear_journal();
            EXPECT_EQ(convert_fresh(Part::kHeader), before);
            EXPECT_EQ(jni.journal_with("log "), c.lines);
        }
    }
}

TEST_F(ChannelRecord, UpToThreeRegionCodesAreStoredAndTheRestZeroed) {
    const auto codes = [&](std::uint16_t a, std::uint16_t b, std::uint16_t c) {
        Bytes bytes = with(kSpecific + 210, 2, a);
        bytes[kSpecific + 212] = static_cast<unsigned char>(b);
        bytes[kSpecific + 213] = static_cast<unsigned char>(b >> 8);
        bytes[kSpecific + 214] = static_cast<unsigned char>(c);
        bytes[kSpecific + 215] = static_cast<unsigned char>(c >> 8);
        return bytes;
    };
    set("TargetRegionCode", "targetRegionCode", &jni.int_array({0x10203, 2, -1}));
    EXPECT_EQ(convert_fresh(Part::kDvb), codes(0x203, 2, 0xFFFF));
    set("TargetRegionCode", "targetRegionCode", &jni.int_array({7, 8}));
    EXPECT_EQ(convert_fresh(Part::kDvb), codes(7, 8, 0));
    set("TargetRegionCode", "targetRegionCode", &jni.int_array({}));
    EXPECT_EQ(convert_fresh(Part::kDvb), codes(0, 0, 0));
    set("TargetRegionCode", "targetRegionCode", &jni.int_array({1, 2, 3, 4}));
    EXPECT_EQ(convert_fresh(Part::kDvb), before);
    set("TargetRegionCode", "targetRegionCode", nullptr);
    EXPECT_EQ(convert_fresh(Part::kDvb), before);
}

TEST_F(ChannelRecord, DebugLinesOfTheHeader) {
    log_level("D");
    channel.keys = {"ServiceId", "SatlRecId", "BroadcastType", "ServiceName", "VnetActive", "VnetEpg", "ServiceType"};
    channel.int_fields = {{"serviceId", 70000}, {"broadcastType", 258}, {"vnetActive", -4}};
    channel.object_fields = {{"satlRecId", &jni.string("no")}, {"serviceName", &jni.string("One")}};
    convert(Part::kHeader);
    EXPECT_EQ(jni.journal_with("log "), (Lines{
                                            "log 3 -: ivalue==70000 _set_header_info,",
                                            "log 3 -: [jni_VltTvList_Init] _set_header_info",
                                            "log 6 -: Unknown data s_Id.\n",
                                            "log 3 -: ibrdcst==258 _set_header_info,",
                                            "log 3 -: iactive==-4 _set_header_info,",
                                        }));
}

TEST_F(ChannelRecord, DebugLinesOfTheSpecificPart) {
    log_level("D");
    channel.keys = {"ServiceShortName", "TargetRegionCode", "DadInfo", "FreeCaMode"};
    channel.object_fields = {{"serviceShortName", &jni.string("A short name of 26 bytes..")},
                             {"targetRegionCode", &jni.int_array({65537, -1})},
                             {"dadInfo", &jni.string("dad")}};
    convert(Part::kDvb);
    EXPECT_EQ(jni.journal_with("log "), (Lines{
                                            "log 3 -: stdvb.s_svc_name==A short name of  _set_dvb_info",
                                            "log 3 -: stdvb.aui2_code[0]==1 _set_sub_dvb_info,",
                                            "log 3 -: stdvb.aui2_code[1]==65535 _set_sub_dvb_info,",
                                        }));
    jni.clear_journal();
    convert(Part::kDtmb);
    EXPECT_EQ(jni.journal_with("log "), Lines{"log 3 -: stdtmb.s_svc_name==A short name of  _set_dtmb_info"});
}

// The order in which keys are asked for, and the JNI calls made for each.

const std::string kMethod =
    "GetMethodID(isContainsKey, (Lcom/velotra/tv/tavro/services/channellist/VltTvChannelInfoBase;Ljava/lang/String;)Z)";

// Looks up the method and asks the object for those keys, of which it has none.
Lines stage(std::initializer_list<const char*> keys) {
    Lines lines{kMethod};
    for (const char* key : keys) {
        lines = joined(lines, asked("channel", key));
    }
    return lines;
}

TEST_F(ChannelRecord, HeaderKeysAreAskedForInOrderWithThreeMethodLookUps) {
    convert(Part::kHeader);
    const Lines expected =
        joined(stage({"ServiceId", "TslRecId", "SatlRecId", "BroadcastType", "ServiceName", "VnetActive", "VnetEpg",
                      "VnetVisible", "VnetNumericSelectable", "VnetScrambled"}),
               stage({"ServiceType",
                      "VoptUserTmpUnlock",
                      "VoptChNameEdited",
                      "VoptLcnApplied",
                      "VoptHdSimulcast",
                      "VoptSdtAvailable",
                      "VoptChNumEdited",
                      "VoptPortugalHdSiMulcast",
                      "VoptDeletedByUser",
                      "Vopt2SdtActualAvailable",
                      "Vopt2SvcEitSchedule",
                      "VnetBrdcstSvc",
                      "VoptStreamReqBlock",
                      "VoptInteractRestrict",
                      "VnetInbList",
                      "VnetBackup1",
                      "ventNewServiceByBGM",
                      "vopt2NewServiceByMonitor",
                      "vopt2NewServiceBasedOnOPT",
                      "ventChannelBlock"}),
               stage({"ventChannelBlock"}));
    EXPECT_EQ(jni.journal(), expected);
}

TEST_F(ChannelRecord, DvbKeysAreAskedForInOrder) {
    convert(Part::kDvb);
    const Lines expected = stage({"LogicalChannelNumber",
                                  "ServiceShortName",
                                  "CaSystemId",
                                  "ServiceRunningStatus",
                                  "CaReplacementOnId",
                                  "CaReplacementTsId",
                                  "CaRepalacementSvcId",
                                  "SvcReplacementOnId",
                                  "SvcReplacementTsId",
                                  "SvcReplacementSvcId",
                                  "CompleteEitSchOnId",
                                  "CompleteEitSchTsId",
                                  "CompleteEitSchSvcId",
                                  "HdSimulCastOnId",
                                  "HdSimulcastTsId",
                                  "HdSimulcastSvcId",
                                  "FreeCaMode",
                                  "CiHostShunningMode",
                                  "OriginalLcn",
                                  "LcnIndex",
                                  "CompDescInfo",
                                  "SdtServiceType",
                                  "DadInfo",
                                  "TargetRegionLevel",
                                  "TargetRegionCode",
                                  "SdtStreamContent",
                                  "SdtStreamContentExt",
                                  "SdtStreamComponentType",
                                  "LinkageDescrMask",
                                  "CiTuneService",
                                  "EitPfFlag",
                                  "DisplayingIdFlag",
                                  "DisplayingTsId",
                                  "DisplayingServiceId",
                                  "ServiceProfileName",
                                  "CategoryMask"});
    EXPECT_EQ(jni.journal(), expected);
}

TEST_F(ChannelRecord, DtmbKeysAreAskedForInOrder) {
    convert(Part::kDtmb);
    const Lines expected = joined(
        stage({"ServiceShortName", "CaSystemId", "ServiceRunningStatus", "CaReplacementOnId", "CaReplacementTsId",
               "CaRepalacementSvcId", "SvcReplacementOnId", "SvcReplacementTsId", "SvcReplacementSvcId",
               "CompleteEitSchOnId", "CompleteEitSchTsId", "CompleteEitSchSvcId", "HdSimulCastOnId", "HdSimulcastTsId",
               "HdSimulcastSvcId", "FreeCaMode", "SdtServiceType", "LinkageDescrMask"}));
    EXPECT_EQ(jni.journal(), expected);
}

TEST_F(ChannelRecord, AFieldIsReadIfItsKeyIsPresentAndWhileTheKeyIsHeld) {
    channel.keys = {"ServiceId", "TslRecId", "ServiceName"};
    channel.int_fields = {{"serviceId", 7}};
    channel.object_fields = {{"tslRecId", &jni.string("5,9")}, {"serviceName", &jni.string("One")}};
    convert(Part::kHeader);
    const Lines& journal = jni.journal();
    const Lines expected = {
        kMethod,
        "NewStringUTF(\"ServiceId\")",
        "channel.isContainsKey(channel, \"ServiceId\")",
        "GetFieldID(serviceId, I)",
        "GetIntField(serviceId)",
        "DeleteLocalRef(\"ServiceId\")",
        "NewStringUTF(\"TslRecId\")",
        "channel.isContainsKey(channel, \"TslRecId\")",
        "GetFieldID(tslRecId, Ljava/lang/String;)",
        "GetObjectField(tslRecId)",
        "GetStringUTFChars(\"5,9\")",
        "ReleaseStringUTFChars(\"5,9\")",
        "DeleteLocalRef(\"5,9\")",
        "DeleteLocalRef(\"TslRecId\")",
        "NewStringUTF(\"SatlRecId\")",
        "channel.isContainsKey(channel, \"SatlRecId\")",
        "DeleteLocalRef(\"SatlRecId\")",
        "NewStringUTF(\"BroadcastType\")",
        "channel.isContainsKey(channel, \"BroadcastType\")",
        "DeleteLocalRef(\"BroadcastType\")",
        "NewStringUTF(\"ServiceName\")",
        "channel.isContainsKey(channel, \"ServiceName\")",
        "GetFieldID(serviceName, Ljava/lang/String;)",
        "GetObjectField(serviceName)",
        "GetStringUTFChars(\"One\")",
        "DeleteLocalRef(\"One\")",
        "DeleteLocalRef(\"ServiceName\")",
    };
    ASSERT_GE(journal.size(), expected.size());
    EXPECT_EQ(Lines(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(expected.size())), expected);
}

TEST_F(ChannelRecord, RegionCodesAreReadAsAnIntArrayThatIsNotReleased) {
    set("TargetRegionCode", "targetRegionCode", &jni.int_array({1}));
    convert(Part::kDvb);
    const Lines array_calls = {"GetFieldID(targetRegionCode, [I)", "GetObjectField(targetRegionCode)",
                               "GetArrayLength(int[])", "GetIntArrayElements(int[])", "DeleteLocalRef(int[])"};
    Lines found;
    for (const std::string& line : jni.journal()) {
        if (line.find("targetRegionCode") != std::string::npos || line.find("int[]") != std::string::npos) {
            found.push_back(line);
        }
    }
    EXPECT_EQ(found, array_calls);
}

// The platform may fail at any call. The conversion ends there, writes nothing more and makes no call that JNI forbids
// while an exception is pending.
TEST_F(ChannelRecord, AnyFailureEndsTheConversionWithTheExceptionPending) {
    channel.keys = {"ServiceId",        "TslRecId",         "SatlRecId", "BroadcastType", "ServiceName",
                    "VnetActive",       "ServiceType",      "VnetEpg",   "LcnIndex",      "LogicalChannelNumber",
                    "ServiceShortName", "TargetRegionCode", "DadInfo"};
    FakeObject& id = jni.string("5,9");
    FakeObject& name = jni.string("One");
    channel.object_fields = {{"tslRecId", &id},      {"satlRecId", &id},
                             {"serviceName", &name}, {"serviceShortName", &name},
                             {"dadInfo", &name},     {"targetRegionCode", &jni.int_array({1, 2, 3})}};
    for (const Part part : {Part::kHeader, Part::kDvb, Part::kDtmb}) {
        bool clean = false;
        for (int n = 1; !clean; ++n) {
            FakeJni failing;
            failing.fail_nth(n);
            std::memcpy(&record, before.data(), before.size());
            convert(part, failing);
            clean = !failing.exception_pending();
            EXPECT_EQ(failing.forbidden_calls(), Lines{}) << n;
            EXPECT_LT(n, 400);
            if (n == 1) {
                EXPECT_EQ(after(), before) << "isContainsKey is missing";
            }
        }
    }
}

} // namespace
