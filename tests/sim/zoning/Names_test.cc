#include "sim/zoning/Names.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

TEST(Names, BeginWithALetterAndGoOnWithLettersDigitsAndFourSigns) {
    for (const char *name : {"a", "Z", "oak", "a1", "A$-^_9", "z_"})
        EXPECT_EQ(zov_ZonesetTestName(name), 0) << name;
    for (const char *name : {"",    "1a", "$a", "-a", "^a", "_a", " a", "a b", "a.b",  "a/b",
                             "a\n", "a#", "@a", "[a", "`a", "{a", "a:", "a;",  "\xE4", "a\xE4"})
        EXPECT_EQ(zov_ZonesetTestName(name), simtest::kBadName) << name;
}

TEST(Names, HaveAtMost64Characters) {
    EXPECT_EQ(zov_ZonesetTestName(std::string(64, 'n').c_str()), 0);
    EXPECT_EQ(zov_ZonesetTestName(std::string(65, 'n').c_str()), simtest::kBadName);
    EXPECT_EQ(zov_ZonesetTestName(std::string(5000, 'n').c_str()), simtest::kBadName);
}

TEST(Names, NullIsNoName) {
    EXPECT_EQ(zov_ZonesetTestName(nullptr), simtest::kBadArgument);
}
