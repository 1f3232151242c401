// Behavior that could depend on the width of pointers, size_t and long, on alignment, or on the sign of plain char.
// These tests run on 64 bits (the workstation) and on 32 bits (the TV) and expect the same results.

#include "channellist/HandleMap.h"
#include "fake_jni.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "jni/env/record_id.h"
#include "script.h"
#include "scripted_test.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace tavro;

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

// The first four bytes of a pointer on a little-endian machine: all of it, or its lower half.
jint low_half(const void* address) {
    jint low = 0;
    std::memcpy(&low, &address, sizeof low);
    return low;
}

class TargetWidth : public tavro::test::ScriptedTest {
protected:
    // The number of `width` bytes at an offset of the record that was last added.
    static std::uint32_t added(std::size_t offset, std::size_t width) {
        std::uint32_t number = 0;
        for (const script::Entry& entry : script::journal()) {
            if (entry.text.find("_add_rec(") != std::string::npos) {
                std::memcpy(&number, entry.record.data() + offset, width);
            }
        }
        return number;
    }
};

template <class Manager>
void expect_setup(Manager*& global, jint (*setup)(JNIEnv*, jobject)) {
    Manager* const before = global;
    FakeJni jni;
    EXPECT_EQ(setup(jni.env(), nullptr), low_half(&global));
    Manager* const first = global;
    EXPECT_NE(first, before);
    EXPECT_EQ(setup(jni.env(), nullptr), low_half(&global));
    EXPECT_NE(global, first);
    // The library leaks the first manager on a second set-up; the test does not.
    delete global;
    delete first;
    global = before;
}

TEST_F(TargetWidth, SetupReturnsTheLowBitsOfTheGlobalsAddress) {
    expect_setup(chList, com_velotra_tv_tavro_ch_list_native_setup);
    expect_setup(tsList, com_velotra_tv_tavro_ts_list_native_setup);
    expect_setup(nwList, com_velotra_tv_tavro_nw_list_native_setup);
    expect_setup(satList, com_velotra_tv_tavro_satellitelist_native_setup);
}

TEST_F(TargetWidth, RecordsHaveTheirSizeAndAlignmentBackToBack) {
    EXPECT_EQ(sizeof(_SVL_REC_T[3]), 3U * 552);
    EXPECT_EQ(sizeof(_TSL_REC_T[3]), 3U * 724);
    EXPECT_EQ(sizeof(_NWL_REC_T[3]), 3U * 304);
    EXPECT_EQ(sizeof(_SATL_REC_T[3]), 3U * 412);
    EXPECT_EQ(alignof(_SVL_REC_T), 4U);
    EXPECT_EQ(alignof(_TSL_REC_T), 4U);
    EXPECT_EQ(alignof(_NWL_REC_T), 4U);
    EXPECT_EQ(alignof(_SATL_REC_T), 4U);
}

TEST_F(TargetWidth, HandlesAndStatusesAre32BitsWide) {
    EXPECT_EQ(sizeof(MwdbHandle), 4U);
    EXPECT_EQ(sizeof(MwStatus), 4U);
    HandleMap handles;
    EXPECT_TRUE(handles.insert(7, 0xFFFFFFFEU));
    EXPECT_EQ(*handles.find(7), 0xFFFFFFFEU);
}

TEST_F(TargetWidth, MapKeysAreTheLow16BitsOfAnId) {
    HandleMap handles;
    EXPECT_TRUE(handles.insert(0x7FFF0003, 0x30001));
    EXPECT_FALSE(handles.insert(3, 0x30002));
    for (const int same : {3, 0x10003, 0x7FFF0003, std::numeric_limits<int>::min() + 3}) {
        ASSERT_NE(handles.find(same), nullptr) << same;
        EXPECT_EQ(*handles.find(same), 0x30001U) << same;
    }
    EXPECT_TRUE(handles.insert(-1, 0x3FFFF));
    EXPECT_EQ(*handles.find(65535), 0x3FFFFU);
    for (const int none : {0, 0x10000, std::numeric_limits<int>::min(), 4}) {
        EXPECT_EQ(handles.find(none), nullptr) << none;
    }
    handles.erase(0x20003);
    EXPECT_EQ(handles.find(3), nullptr);
}

TEST_F(TargetWidth, NumbersAreCutToTheirFieldWhateverTheirSign) {
    const struct {
        jint given;
        std::uint32_t byte, half, word; // as stored
    } cases[] = {
        {-1, 0xFF, 0xFFFF, 0xFFFFFFFF},
        {-193, 0x3F, 0xFF3F, 0xFFFFFF3F},
        {0x12345678, 0x78, 0x5678, 0x12345678},
        {std::numeric_limits<jint>::min(), 0, 0, 0x80000000},
    };
    auto channels = std::make_unique<NativeVltTvChannelList>();
    auto satellites = std::make_unique<NativeVltTvSatelliteList>();
    chList = channels.get();
    satList = satellites.get();
    for (const auto& c : cases) {
        FakeJni jni;
        FakeObject& channel = jni.object("channel");
        channel.keys = {"ServiceId", "ServiceType"};
        channel.int_fields = {{"serviceId", c.given}, {"serviceType", c.given}};
        com_velotra_tv_tavro_channellist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(channel));
        EXPECT_EQ(added(24, 2), c.half) << c.given;
        EXPECT_EQ(added(39, 1), c.byte) << c.given;

        FakeObject& satellite = jni.object("satellite");
        satellite.keys = {"OrbitPosition", "LnbType"};
        satellite.int_fields = {{"OrbitPosition", c.given}, {"LnbType", c.given}};
        com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
        EXPECT_EQ(added(280, 2), c.half) << c.given;
        EXPECT_EQ(added(8, 4), c.word) << c.given;
    }
    chList = nullptr;
    satList = nullptr;
}

// std::stoi first reads a long: 64 bits wide on one machine, 32 on the other.
TEST_F(TargetWidth, IdentifiersBeyondTheLargestIntAreOutOfRange) {
    int list = 0;
    int record = 0;
    EXPECT_TRUE(trimId("2147483647,2147483647", list, record));
    EXPECT_EQ(list, std::numeric_limits<int>::max());
    EXPECT_EQ(record, std::numeric_limits<int>::max());
    for (const char* beyond : {"2147483648,1", "1,2147483648", "4294967297,1", "1,9223372036854775808"}) {
        EXPECT_THROW(trimId(beyond, list, record), std::out_of_range) << beyond;
    }
}

// Plain char is signed on one machine and unsigned on the other.
TEST_F(TargetWidth, BytesBeyondAsciiAreNotDigits) {
    for (int byte = 128; byte < 256; ++byte) {
        EXPECT_FALSE(AllisNum(std::string("1") + static_cast<char>(byte))) << byte;
    }
}

// The largest list takes 47 million bytes. Its last record must be where Java looks for it.
TEST_F(TargetWidth, AListOf65535StreamsIsOneArrayUpToItsLastByte) {
    constexpr int kCount = 65535;
    constexpr std::size_t kSize = 724;
    NativeVltTvTransportStreamList manager;
    tsList = &manager;
    ASSERT_TRUE(TslKind::handles().insert(1, 0x20001));
    script::always("x_tsl_get_num_recs", {0, kCount, {}, 0, {}});
    for (int index = 0; index < kCount; ++index) {
        script::Answer answer;
        answer.record = {static_cast<std::byte>(index), static_cast<std::byte>(index >> 8)};
        if (index == kCount - 1) {
            answer.record.resize(kSize, std::byte{0xA5});
        }
        script::answer("x_tsl_get_rec_by_rec_idx", answer);
    }
    FakeJni jni;
    jbyteArray array = com_velotra_tv_tavro_transportstreamlist_getInfoList(jni.env(), nullptr, 1);
    tsList = nullptr;
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(jni.journal_with("NewByteArray"), std::vector<std::string>{"NewByteArray(47447340)"});
    EXPECT_EQ(jni.journal_with("SetByteArrayRegion").back(), "SetByteArrayRegion(47446616, 724)");
    const std::vector<jbyte>& bytes = FakeJni::from(array).bytes;
    ASSERT_EQ(bytes.size(), 47447340U);
    for (std::size_t index = 0; index < kCount; ++index) {
        const auto low = static_cast<std::uint8_t>(bytes[index * kSize]);
        const auto high = static_cast<std::uint8_t>(bytes[index * kSize + 1]);
        ASSERT_EQ(low | high << 8, static_cast<int>(index));
    }
    const std::vector<jbyte> last(bytes.end() - static_cast<std::ptrdiff_t>(kSize) + 2, bytes.end());
    EXPECT_EQ(last, std::vector<jbyte>(kSize - 2, static_cast<jbyte>(0xA5)));
}

TEST_F(TargetWidth, AListOf65535ServicesReachesJavaThroughOneBuffer) {
    constexpr int kCount = 65535;
    constexpr std::size_t kSize = 552;
    NativeVltTvChannelList manager;
    chList = &manager;
    script::always("x_svl_get_num_rec_by_brdcst_type", {0, kCount, {}, 0, {}});
    script::Answer every;
    every.record.resize(kSize, std::byte{0x5A});
    script::always("x_svl_get_rec_by_brdcst_type", every);
    FakeJni jni;
    jbyteArray array = com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1);
    chList = nullptr;
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(jni.journal_with("SetByteArrayRegion"), std::vector<std::string>{"SetByteArrayRegion(0, 36175320)"});
    EXPECT_EQ(FakeJni::from(array).bytes, std::vector<jbyte>(36175320, 0x5A));
}

} // namespace
