// How the removals read a record identifier: "list id, comma, record id".
#include "manager_test.h"

#include <stdexcept>

namespace {

using namespace tavro::test;

class RecordRemoval : public EachKind {
protected:
    RecordRemoval() {
        given_open(3);
        given_open(4);
    }
};

TEST_P(RecordRemoval, RemoveInfoTakesListAndRecordFromTheText) {
    const struct {
        const char* identifier;
        int list;
        int record;
    } cases[] = {
        {"3,1207", 3, 1207},     {"3, 1207", 3, 1207},      {" \t+3abc,017xyz", 3, 17},
        {"3,17,9", 3, 17}, // the first comma counts
        {"65539,17", 65539, 17}, {"-65533,17", -65533, 17}, {"3,0", 3, 0},
        {"3,65553", 3, 65553},   {"3,-1", 3, -1},           {"3,2147483647", 3, 2147483647},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(manager->remove(c.identifier), 0) << c.identifier;
        expect_journal(identifier_line("removeInfo", c.identifier) + removal_line(c.list, c.record) + found(3) +
                       removal(3, c.record));
    }
}

TEST_P(RecordRemoval, RemoveInfoByRecIdTakesTheListFromItsArgumentAlone) {
    const struct {
        int list;
        const char* identifier;
        int record;
    } cases[] = {
        {4, "3,1207", 1207},         {4, ",1207", 1207}, // any text before the comma
        {4, "list,17", 17},          {4, "99999999999,17", 17}, {4, "3,17,9", 17},
        {65540, "3, 65553x", 65553}, {4, "3,-1", -1},           {4, "3,0", 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(manager->remove_by_record_id(c.list, c.identifier), 0) << c.identifier;
        expect_journal(identifier_line("removeInfoByRecId", c.identifier) + removal_by_id_line(c.list, c.record) +
                       found(4) + removal(4, c.record));
    }
}

TEST_P(RecordRemoval, TextWithoutACommaIsAnUnknownRecord) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        for (const char* identifier : {"17", "", "3;17"}) {
            EXPECT_EQ(manager->remove(identifier), -1);
            EXPECT_EQ(manager->remove_by_record_id(3, identifier), -1);
            expect_journal(identifier_line("removeInfo", identifier) + error("Unknown recId info.\n") +
                           identifier_line("removeInfoByRecId", identifier) + error("Unknown recId info.\n"));
        }
    }
}

TEST_P(RecordRemoval, TextThatIsNotANumberRaisesTheConversionError) {
    for (const char* identifier : {",17", "x,17", "3,", "3,x", ",", "-,17"}) {
        EXPECT_THROW(manager->remove(identifier), std::invalid_argument) << identifier;
        expect_journal(identifier_line("removeInfo", identifier));
    }
    for (const char* identifier : {"2147483648,17", "3,2147483648", "3,-2147483649"}) {
        EXPECT_THROW(manager->remove(identifier), std::out_of_range) << identifier;
        expect_journal(identifier_line("removeInfo", identifier));
    }
    EXPECT_THROW(manager->remove_by_record_id(3, "3,x"), std::invalid_argument);
    EXPECT_THROW(manager->remove_by_record_id(3, "3,2147483648"), std::out_of_range);
    expect_journal(identifier_line("removeInfoByRecId", "3,x") + identifier_line("removeInfoByRecId", "3,2147483648"));
    expect_open_lists({{3, handle(3)}, {4, handle(4)}});
}

INSTANTIATE_TEST_SUITE_P(Lists, RecordRemoval, kAllKinds, kind_name);

} // namespace
