// Record identifiers ("list id,record id"): parsing, building, and the conversion of Java text.
#include "fake_jni.h"
#include "jni/env/jni_env.h"
#include "jni/env/record_id.h"
#include "script.h"
#include "scripted_test.h"
#include "text/identifier.h"

#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

constexpr int kUntouched = -77;

class RecordIdentifier : public tavro::test::ScriptedTest {
protected:
    RecordIdentifier() { log_level("d"); }

    int list_id = kUntouched;
    int record_id = kUntouched;
};

TEST_F(RecordIdentifier, IsListIdCommaRecordId) {
    const struct {
        const char* text;
        int list_id;
        int record_id;
    } cases[] = {
        {"3,17", 3, 17},  {"7,0", 7, 0},       {"3,12,9", 3, 12},
        {"3,12,", 3, 12}, {"0007,010", 7, 10}, {"2147483647,65535", std::numeric_limits<int>::max(), 65535},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(trimId(c.text, list_id, record_id)) << c.text;
        EXPECT_EQ(list_id, c.list_id) << c.text;
        EXPECT_EQ(record_id, c.record_id) << c.text;
    }
    EXPECT_EQ(script::lines(), std::vector<std::string>{});
}

TEST_F(RecordIdentifier, WithoutACommaIsRejectedWithALine) {
    EXPECT_FALSE(trimId("7", list_id, record_id));
    EXPECT_EQ(script::lines(), std::vector<std::string>{"log 6 -: Unknown data s_Id.\n"});
    EXPECT_EQ(list_id, kUntouched);
    EXPECT_EQ(record_id, kUntouched);
}

TEST_F(RecordIdentifier, ThatIsEmptyIsRejectedWithALine) {
    EXPECT_FALSE(trimId("", list_id, record_id));
    EXPECT_EQ(script::lines(), std::vector<std::string>{"log 6 -: Invalid param.\n"});
}

TEST_F(RecordIdentifier, WithAnythingButDigitsIsRejectedSilently) {
    for (const char* text : {"a,1", "1,a", "-1,5", "1,-5", "+1,5", " 1,5", "1 ,5", "1, 5", "1.0,5", "1,5x,2"}) {
        EXPECT_FALSE(trimId(text, list_id, record_id)) << text;
        EXPECT_EQ(list_id, kUntouched) << text;
        EXPECT_EQ(record_id, kUntouched) << text;
    }
    EXPECT_EQ(script::lines(), std::vector<std::string>{});
}

TEST_F(RecordIdentifier, WithAnEmptyFieldRaisesTheConversionError) {
    for (const char* text : {",5", "5,", ",", "5,,7"}) {
        EXPECT_THROW(trimId(text, list_id, record_id), std::invalid_argument) << text;
    }
}

TEST_F(RecordIdentifier, WithANumberBeyondAnIntRaisesTheConversionError) {
    for (const char* text : {"2147483648,1", "1,2147483648", "99999999999999999999,1"}) {
        EXPECT_THROW(trimId(text, list_id, record_id), std::out_of_range) << text;
    }
}

TEST_F(RecordIdentifier, NeedNotEndWhereItsTextEnds) {
    EXPECT_TRUE(trimId(std::string_view("3,1799").substr(0, 4), list_id, record_id));
    EXPECT_EQ(list_id, 3);
    EXPECT_EQ(record_id, 17);
}

// The result of a conversion of text to a number: the number, or the name of the exception.
template <class Convert>
std::string outcome(Convert convert) {
    try {
        return std::to_string(convert());
    } catch (const std::invalid_argument&) {
        return "invalid_argument";
    } catch (const std::out_of_range&) {
        return "out_of_range";
    }
}

TEST(Decimal, ReadsWhatStoiReadsAndRaisesItsExceptions) {
    const struct {
        const char* text;
        const char* outcome;
    } cases[] = {
        {"0", "0"},
        {"17", "17"},
        {"0017", "17"},
        {"-17", "-17"},
        {"+17", "17"},
        {" 17", "17"},
        {" \t\n\v\f\r+17", "17"},
        {"17 ", "17"},
        {"17x", "17"},
        {"17,18", "17"},
        {"0x11", "0"},
        {"2147483647", "2147483647"},
        {"-2147483648", "-2147483648"},
        {"2147483648", "out_of_range"},
        {"-2147483649", "out_of_range"},
        {" +2147483648", "out_of_range"},
        {"2147483648x", "out_of_range"},
        {"99999999999999999999", "out_of_range"},
        {"", "invalid_argument"},
        {" ", "invalid_argument"},
        {"+", "invalid_argument"},
        {"-", "invalid_argument"},
        {"+-17", "invalid_argument"},
        {"-+17", "invalid_argument"},
        {"- 17", "invalid_argument"},
        {"x17", "invalid_argument"},
        {",17", "invalid_argument"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(outcome([&] { return tavro::decimal(c.text); }), c.outcome) << '"' << c.text << '"';
        EXPECT_EQ(outcome([&] { return std::stoi(c.text); }), c.outcome) << '"' << c.text << '"';
    }
    EXPECT_EQ(tavro::decimal(std::string_view("1718").substr(0, 2)), 17);
    EXPECT_EQ(tavro::decimal(std::string_view("+1718").substr(0, 3)), 17);
}

TEST_F(RecordIdentifier, IsBuiltFromTwoIdsButCannotBeParsedIfTheyAreNegative) {
    EXPECT_EQ(combineStrMId(2, 15), "2,15");
    EXPECT_EQ(combineStrMId(-1, 3), "-1,3");
    EXPECT_EQ(combineStrMId(std::numeric_limits<int>::min(), 0), "-2147483648,0");
    EXPECT_FALSE(trimId(combineStrMId(-1, 3), list_id, record_id));
}

TEST_F(RecordIdentifier, OfTheUsualFormIsTakenApartAtOnce) {
    for (const char* text : {"3,17", "3,17,", "3,17,x", "003,017", "3,000000017"}) {
        list_id = record_id = kUntouched;
        EXPECT_TRUE(tavro::take_apart(text, list_id, record_id)) << text;
        EXPECT_EQ(list_id, 3) << text;
        EXPECT_EQ(record_id, 17) << text;
    }
    list_id = record_id = kUntouched;
    for (const char* text : {"", ",", "3", "3,", ",17", "3 ,17", "3,17 ", "3,x", "1234567890,17", "3,1234567890"}) {
        EXPECT_FALSE(tavro::take_apart(text, list_id, record_id)) << text;
        EXPECT_EQ(list_id, kUntouched) << text;
        EXPECT_EQ(record_id, kUntouched) << text;
    }
}

TEST_F(RecordIdentifier, OfMoreThanNineDigitsIsParsedFromJavaToo) {
    FakeJni jni;
    tavro::Jni env(jni.env());
    EXPECT_TRUE(tavro::parse_identifier(env, FakeJni::string_ref(jni.string("2147483647,65535")), list_id, record_id));
    EXPECT_EQ(list_id, std::numeric_limits<int>::max());
    EXPECT_EQ(record_id, 65535);
}

TEST_F(RecordIdentifier, IsBuiltForJavaWithALine) {
    FakeJni jni;
    jstring made = combineMId(jni.env(), 1, 37);
    EXPECT_EQ(FakeJni::from(made).text, "1,37");
    EXPECT_EQ(jni.journal(),
              (std::vector<std::string>{"log 3 -: [jni_VltTvList_Init] [combineMId] mwdbId = 1, recId = 37",
                                        "NewStringUTF(\"1,37\")"}));
}

TEST_F(RecordIdentifier, DigitsAreANumberAndSoIsEmptyText) {
    EXPECT_TRUE(AllisNum("0123456789"));
    EXPECT_TRUE(AllisNum(""));
    for (const char* text : {"-1", "1a", " ", "/", ":", "\xd9\xa1"}) {
        EXPECT_FALSE(AllisNum(text)) << text;
    }
}

TEST_F(RecordIdentifier, JavaTextIsCopiedAndItsCharactersReleased) {
    FakeJni jni;
    FakeObject& text = jni.string("/data/list");
    EXPECT_EQ(jstr2str(jni.env(), FakeJni::string_ref(text)), "/data/list");
    EXPECT_EQ(jni.journal(),
              (std::vector<std::string>{"GetStringUTFChars(\"/data/list\")", "ReleaseStringUTFChars(\"/data/list\")"}));
}

TEST_F(RecordIdentifier, EmptyJavaTextIsEmptyWithALineBeforeTheRelease) {
    FakeJni jni;
    FakeObject& text = jni.string("");
    EXPECT_EQ(jstr2str(jni.env(), FakeJni::string_ref(text)), "");
    EXPECT_EQ(jni.journal(), (std::vector<std::string>{"GetStringUTFChars(\"\")", "log 6 -: Invalid String.\n",
                                                       "ReleaseStringUTFChars(\"\")"}));
}

TEST_F(RecordIdentifier, JavaTextWithoutCharactersIsEmptyWithALine) {
    FakeJni jni;
    FakeObject& text = jni.string("3,17");
    jni.fail("GetStringUTFChars(\"3,17\")");
    EXPECT_EQ(jstr2str(jni.env(), FakeJni::string_ref(text)), "");
    EXPECT_EQ(jni.journal(), (std::vector<std::string>{"GetStringUTFChars(\"3,17\")", "log 6 -: Invalid String.\n"}));
}

TEST_F(RecordIdentifier, ANullJavaStringIsEmptyWithALineAndNoJniCall) {
    FakeJni jni;
    EXPECT_EQ(jstr2str(jni.env(), nullptr), "");
    EXPECT_EQ(jni.journal(), std::vector<std::string>{"log 6 -: Invalid String.\n"});
}

} // namespace
