// Operations of the library that must not allocate memory. The allocations of the whole test program are counted.
#include "allocations.h"
#include "jni/env/record_id.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using tavro::test::allocations;

// The counter itself works.
TEST(Allocations, OfALongStringAreCounted) {
    const int before = allocations();
    const std::string text(100, 'x');
    EXPECT_EQ(allocations(), before + 1) << text;
}

TEST(Allocations, AreNotMadeToTakeAnIdentifierApart) {
    // The second is too long for a std::string without an allocation.
    const char* const identifiers[] = {"3,17", "2147483647,65535"};
    for (const char* identifier : identifiers) {
        int list_id = 0;
        int record_id = 0;
        const int before = allocations();
        const bool parsed = trimId(identifier, list_id, record_id);
        EXPECT_EQ(allocations(), before) << identifier;
        EXPECT_TRUE(parsed);
    }
}

TEST(Allocations, AreNotMadeToBuildAShortIdentifier) {
    const int before = allocations();
    const std::string identifier = combineStrMId(65535, 65535);
    EXPECT_EQ(allocations(), before) << identifier;
    EXPECT_EQ(identifier, "65535,65535");
}

} // namespace
