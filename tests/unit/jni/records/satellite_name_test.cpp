// The satellite's name: 64 bytes, with the terminator's own byte after them.
#include "bridge_test_support.h"

#include <algorithm>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

constexpr std::size_t kNameAt = 282;
constexpr std::size_t kEndAt = 346;

class SatelliteName : public BridgeTest {
protected:
    SatelliteName() : BridgeTest(satellite_kind()) {}

    // A record whose name has no NUL, nor has what comes after it.
    static _SATL_REC_T full_record() {
        _SATL_REC_T record = {};
        std::memset(&record, 'Z', sizeof(record));
        std::memset(record.ac_sat_name, 'n', sizeof(record.ac_sat_name));
        return record;
    }
    static std::string text(const Bytes& bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }
    void carry_name(FakeObject& satellite, const std::string& name) {
        satellite.keys.insert("Name");
        satellite.object_fields["Name"] = &jni.string(name);
    }
    // What an update of the full record with that name hands over.
    std::string updated(const std::string& name) {
        FakeObject& satellite = named("1,12");
        carry_name(satellite, name);
        script::answer("x_satl_get_rec", reads(full_record()));
        EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(satellite)), 0);
        return text(last_record());
    }
    std::string added(const std::string& name) {
        FakeObject& satellite = object();
        carry_name(satellite, name);
        com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
        return text(last_record());
    }
    static std::string line(const std::string& name) {
        return "log 3 -: [jni_VltTvList_Init] ac_sat_name = " + name + " \n";
    }

    const std::string full = std::string(64, 'n');
};

TEST_F(SatelliteName, ThatFillsItsBytesIsReadWithoutTheByteAfterThem) {
    script::always("x_satl_get_rec", reads(full_record()));
    script::always("x_satl_get_rec_by_rec_idx", reads(full_record()));
    script::always("x_satl_get_num_recs", {0, 1, {}, 0, {}});
    FakeObject& keys = jni.list({&jni.string("Name")});
    for (jobject wanted : {static_cast<jobject>(nullptr), FakeJni::ref(keys)}) {
        jni.clear_journal();
        ASSERT_NE(com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, ref(jni.string("1,12")), wanted),
                  nullptr);
        ASSERT_NE(com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 1, wanted), nullptr);
        const std::string set = "VltTvSatelliteInfoBase.setName(" + quoted(full) + ")";
        EXPECT_EQ(jni.journal_with(".setName("), (Lines{set, set}));
    }
}

TEST_F(SatelliteName, ThatIsTooLongIsCutTo64BytesAndTerminatedInTheByteAfterThem) {
    log_level("D");
    for (const std::size_t length : {64U, 65U, 70U}) {
        std::string expected = text(bytes_of(full_record()));
        expected.replace(kNameAt, 64, std::string(64, 'm'));
        expected[kEndAt] = '\0';
        jni.clear_journal();
        EXPECT_EQ(updated(std::string(length, 'm')), expected) << length;
        EXPECT_EQ(jni.journal_with("ac_sat_name"), Lines{line(std::string(64, 'm'))});
        const std::string record = added(std::string(length, 'm'));
        EXPECT_EQ(record.substr(kNameAt, 66), std::string(64, 'm') + std::string(2, '\0')) << length;
    }
}

TEST_F(SatelliteName, ThatIsShorterIsFilledUpWithZerosToItsTerminator) {
    for (const std::size_t length : {0U, 3U, 63U}) {
        std::string expected = text(bytes_of(full_record()));
        expected.replace(kNameAt, 65, std::string(length, 'm') + std::string(65 - length, '\0'));
        EXPECT_EQ(updated(std::string(length, 'm')), expected) << length; // the bytes from 347 on stay
    }
}

} // namespace
