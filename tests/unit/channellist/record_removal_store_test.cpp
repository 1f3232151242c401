// How the removals read a record identifier: "list id, comma, record id".
#include "store_test_support.h"

#include <stdexcept>

namespace {

using namespace tavro::test;

class RecordRemoval : public EachKind {
protected:
    RecordRemoval() {
        given_open(3);
        given_open(4);
    }

    Steps text(const std::string& operation, const std::string& identifier) const {
        return debug("[" + operation + "]: string recId = " + identifier + " \n");
    }
    // The numbers as told; only the transport stream list cuts the record id first.
    Steps numbers(const std::string& operation, const std::string& list_word, const std::string& list,
                  std::uint32_t record) const {
        const std::uint32_t told = kind.is_transport_streams() ? record & 0xFFFF : record;
        return debug("[" + operation + "]: " + list_word + " = " + list + ", " + kind.record_word + " = " +
                     std::to_string(told) + " \n");
    }
    Steps removal(int list, std::uint16_t record) const {
        const std::string at = "@" + std::to_string(list);
        return found(list) + call("lock(" + at + ")") + call("del_rec(" + at + ", " + std::to_string(record) + ")") +
               (kind.is_transport_streams() ? error("i4_ret: 0") : Steps{}) + call("unlock(" + at + ")");
    }
};

TEST_P(RecordRemoval, RemoveInfoTakesListAndRecordFromTheText) {
    const struct {
        const char* identifier;
        const char* list; // as told
        std::uint32_t record;
    } cases[] = {
        {"3,1207", "3", 1207},     {"3, 1207", "3", 1207},      {" \t+3abc,017xyz", "3", 17},
        {"3,17,9", "3", 17}, // the first comma counts
        {"65539,17", "65539", 17}, {"-65533,17", "-65533", 17}, {"3,0", "3", 0},
        {"3,65553", "3", 65553},   {"3,-1", "3", 0xFFFFFFFF},   {"3,2147483647", "3", 2147483647},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(store->remove(c.identifier), 0) << c.identifier;
        expect_journal(text("removeInfo", c.identifier) + numbers("removeInfo", kind.list_word, c.list, c.record) +
                       removal(3, static_cast<std::uint16_t>(c.record)));
    }
}

TEST_P(RecordRemoval, RemoveInfoByRecIdTakesTheListFromItsArgumentAlone) {
    const struct {
        int list;
        const char* identifier;
        std::uint32_t record;
    } cases[] = {
        {4, "3,1207", 1207}, {4, ",1207", 1207}, // whatever stands before the comma
        {4, "list,17", 17},  {4, "99999999999,17", 17}, {4, "3,17,9", 17}, {65540, "3, 65553x", 65553},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(store->remove_by_record_id(c.list, c.identifier), 0) << c.identifier;
        expect_journal(text("removeInfoByRecId", c.identifier) +
                       numbers("removeInfoByRecId", "mwdbId", std::to_string(c.list), c.record) +
                       removal(4, static_cast<std::uint16_t>(c.record)));
    }
}

TEST_P(RecordRemoval, TextWithoutACommaIsAnUnknownRecord) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        for (const char* identifier : {"17", "", "3;17"}) {
            EXPECT_EQ(store->remove(identifier), -1);
            expect_journal(text("removeInfo", identifier) + error("Unknown recId info.\n"));
            EXPECT_EQ(store->remove_by_record_id(3, identifier), -1);
            expect_journal(text("removeInfoByRecId", identifier) + error("Unknown recId info.\n"));
        }
    }
}

TEST_P(RecordRemoval, TextThatIsNoNumberRaisesTheConversionsError) {
    for (const char* identifier : {",17", "x,17", "3,", "3,x", ",", "-,17"}) {
        EXPECT_THROW(store->remove(identifier), std::invalid_argument) << identifier;
        expect_journal(text("removeInfo", identifier));
    }
    for (const char* identifier : {"2147483648,17", "3,2147483648", "3,-2147483649"}) {
        EXPECT_THROW(store->remove(identifier), std::out_of_range) << identifier;
        expect_journal(text("removeInfo", identifier));
    }
    EXPECT_THROW(store->remove_by_record_id(3, "3,x"), std::invalid_argument);
    EXPECT_THROW(store->remove_by_record_id(3, "3,2147483648"), std::out_of_range);
    expect_journal(text("removeInfoByRecId", "3,x") + text("removeInfoByRecId", "3,2147483648"));
    expect_open_lists({{3, handle(3)}, {4, handle(4)}});
}

INSTANTIATE_TEST_SUITE_P(Stores, RecordRemoval, kAllKinds, kind_name);

} // namespace
