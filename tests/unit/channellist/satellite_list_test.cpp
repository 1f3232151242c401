// What the satellite list manager does differently: its getInfo takes an identifier.
#include "manager_test.h"

#include <stdexcept>

using namespace tavro;

namespace {

using namespace tavro::test;

class SatelliteList : public ManagerTest {
protected:
    SatelliteList() : ManagerTest(kSatellites) { given_open(5); }

    NativeVltTvSatelliteList manager;
    _SATL_REC_T record = {};
};

TEST_F(SatelliteList, GetInfoReadsTheRecordThatTheTextNames) {
    const struct {
        const char* identifier;
        int list;
        int record;
    } cases[] = {
        {"5,1207", 5, 1207},         {"5, 1207", 5, 1207},          {" \t+5abc,01207xyz", 5, 1207},
        {"5,1207,9", 5, 1207}, // the first comma counts
        {"65541,1207", 65541, 1207}, {"-65531,1207", -65531, 1207}, {"5,66743", 5, 66743},
        {"5,-64329", 5, -64329},
    };
    const Bytes sample = kind.sample();
    for (const auto& c : cases) {
        record = {};
        answer("get_rec", with_record(0, sample, 3));
        EXPECT_EQ(manager.getInfo(c.identifier, &record), 0) << c.identifier;
        expect_journal(identifier_line("getInfo", c.identifier) + named_line("getInfo", c.list, c.record) + found(5) +
                       call("get_rec(@5, 1207)"));
        EXPECT_EQ(std::memcmp(&record, sample.data(), sample.size()), 0);
    }
}

TEST_F(SatelliteList, GetInfoOfTextWithoutACommaIsAnUnknownRecord) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        for (const char* identifier : {"17", "", "5;17"}) {
            EXPECT_EQ(manager.getInfo(identifier, &record), -1);
            expect_journal(identifier_line("getInfo", identifier) + error("Unknown recId info.\n"));
        }
    }
    EXPECT_EQ(std::memcmp(&record, Bytes(sizeof(record)).data(), sizeof(record)), 0);
}

TEST_F(SatelliteList, GetInfoOfTextThatIsNotANumberRaisesTheConversionError) {
    for (const char* identifier : {",17", "x,17", "5,", "5,x", ",", "-,17"}) {
        EXPECT_THROW(manager.getInfo(identifier, &record), std::invalid_argument) << identifier;
        expect_journal(identifier_line("getInfo", identifier));
    }
    for (const char* identifier : {"2147483648,17", "5,2147483648", "5,-2147483649"}) {
        EXPECT_THROW(manager.getInfo(identifier, &record), std::out_of_range) << identifier;
        expect_journal(identifier_line("getInfo", identifier));
    }
}

TEST(StorageNames, AreLimitedTo65BytesForSatellitesAnd32ForOthers) {
    EXPECT_EQ(SvlKind::kNameBytes, 32);
    EXPECT_EQ(TslKind::kNameBytes, 32);
    EXPECT_EQ(NwlKind::kNameBytes, 32);
    EXPECT_EQ(SatlKind::kNameBytes, 65); // no list id needs that many
}

} // namespace
