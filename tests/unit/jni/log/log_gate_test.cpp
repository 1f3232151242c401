// The log gate: which levels pass for which property values, and how often the properties are read.
#include "jni/log/log_gate.h"
#include "script.h"
#include "scripted_test.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace script = tavro::script;

namespace {

constexpr char kProperty[] = "vendor.vlt.broadcast.log.level";
constexpr char kFallback[] = "persist.vendor.vlt.broadcast.log.level";

class LogGate : public tavro::test::ScriptedTest {
protected:
    // The levels from 1 to 5 that pass.
    static std::vector<int> passing() {
        std::vector<int> levels;
        for (int level = 1; level <= 5; ++level) {
            if (__velotra_log_is_loggable(level, kProperty) != 0) {
                levels.push_back(level);
            }
            // The library's own lines use this one.
            EXPECT_EQ(tavro::is_loggable(level), !levels.empty() && levels.back() == level);
        }
        return levels;
    }
};

TEST_F(LogGate, PassesTheLevelsFromTheOneThatThePropertyNames) {
    const struct {
        const char* value;
        std::vector<int> levels;
    } cases[] = {
        {"V", {1, 2, 3, 4, 5}},
        {"v", {1, 2, 3, 4, 5}},
        {"D", {2, 3, 4, 5}},
        {"d", {2, 3, 4, 5}},
        {"I", {3, 4, 5}},
        {"i", {3, 4, 5}},
        {"W", {4, 5}},
        {"w", {4, 5}},
        {"E", {5}},
        {"e", {5}},
        {"F", {}},
        {"A", {}},
        {"S", {}},
        {"3", {}},
        {"f", {}},
        {"@", {}},
        {"", {}},
        {"verbose", {1, 2, 3, 4, 5}},
        {"[", {}},
        {"{", {}},
    };
    for (const auto& c : cases) {
        script::set_property(kProperty, c.value);
        EXPECT_EQ(passing(), c.levels) << '"' << c.value << '"';
    }
}

TEST_F(LogGate, ReturnsOneOrZero) {
    script::set_property(kProperty, "V");
    EXPECT_EQ(__velotra_log_is_loggable(5, kProperty), 1U);
    EXPECT_EQ(__velotra_log_is_loggable(0, kProperty), 0U);
}

TEST_F(LogGate, AsksForThePersistedPropertyWhenThePropertyIsEmpty) {
    script::set_property(kFallback, "d");
    script::journal_properties(true);
    EXPECT_EQ(__velotra_log_is_loggable(2, kProperty), 1U);
    EXPECT_EQ(__velotra_log_is_loggable(5, kProperty), 1U);
    const std::vector<std::string> both = {
        "property_get(\"vendor.vlt.broadcast.log.level\", \"\")",
        "property_get(\"persist.vendor.vlt.broadcast.log.level\", \"\")",
    };
    std::vector<std::string> expected = both;
    expected.insert(expected.end(), both.begin(), both.end());
    EXPECT_EQ(script::lines(), expected);
}

TEST_F(LogGate, APropertyThatIsSetHidesThePersistedOneWhateverItsValue) {
    script::set_property(kFallback, "V");
    script::set_property(kProperty, "x");
    script::journal_properties(true);
    EXPECT_EQ(__velotra_log_is_loggable(5, kProperty), 0U);
    EXPECT_EQ(script::lines(), std::vector<std::string>{"property_get(\"vendor.vlt.broadcast.log.level\", \"\")"});
}

TEST_F(LogGate, ReadsThePropertyAgainAtEveryCall) {
    EXPECT_EQ(passing(), std::vector<int>{});
    script::set_property(kProperty, "W");
    EXPECT_EQ(passing(), (std::vector<int>{4, 5}));
    script::set_property(kProperty, "");
    EXPECT_EQ(passing(), std::vector<int>{});
}

TEST_F(LogGate, TheHighestLevelPassesWhateverThePropertySays) {
    constexpr int kHighest = std::numeric_limits<int>::max();
    for (const char* value : {"", "S", "E"}) {
        script::set_property(kProperty, value);
        EXPECT_EQ(__velotra_log_is_loggable(kHighest, kProperty), 1U);
    }
    EXPECT_EQ(__velotra_log_is_loggable(kHighest - 1, "other.property"), 0U);
}

TEST_F(LogGate, AcceptsAValueOfTheMaximumLength) {
    script::set_property(kProperty, "e" + std::string(90, 'x'));
    EXPECT_EQ(passing(), std::vector<int>{5});
}

TEST_F(LogGate, ArgumentsOfALineAreEvaluatedOnlyWhenTheGateIsOpen) {
    int evaluated = 0;
    TAVRO_LOG_DEBUG(nullptr, "%d", ++evaluated);
    EXPECT_EQ(evaluated, 0);
    script::set_property(kProperty, "d");
    TAVRO_LOG_DEBUG(nullptr, "%d", ++evaluated);
    TAVRO_LOG_ERROR("Tag", "%s\n", "text");
    EXPECT_EQ(script::lines(), (std::vector<std::string>{"log 3 -: 1", "log 6 Tag: text\n"}));
}

} // namespace
