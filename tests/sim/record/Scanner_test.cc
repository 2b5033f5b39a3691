#include "sim/record/Scanner.h"

#include <gtest/gtest.h>

#include "sim/Record.h"

using sim::Scanner;

TEST(Scanner, TakesWhatIsThereAndNothingElse) {
    Scanner scanner("zone oak");
    EXPECT_FALSE(scanner.take("alias "));
    EXPECT_EQ(scanner.rest(), "zone oak");
    EXPECT_TRUE(scanner.take("zone "));
    EXPECT_EQ(scanner.rest(), "oak");
    EXPECT_FALSE(scanner.atEnd());
    EXPECT_EQ(scanner.before('k'), "oa");
    EXPECT_EQ(scanner.before('!'), "k");
    EXPECT_TRUE(scanner.atEnd());
    EXPECT_FALSE(scanner.take("x"));
}

TEST(Scanner, ReadsNumbersThatTheirTypeHolds) {
    EXPECT_EQ(Scanner("0").number<int32_t>(), 0);
    EXPECT_EQ(Scanner("-1, 2").number<int32_t>(), -1);
    EXPECT_EQ(Scanner("2147483647").number<int32_t>(), 2147483647);
    EXPECT_EQ(Scanner("-2147483648").number<int32_t>(), -2147483647 - 1);
    EXPECT_EQ(Scanner("4294967295").number<uint32_t>(), 4294967295U);
    EXPECT_EQ(Scanner("9223372036854775807").number<int64_t>(), 9223372036854775807);
}

TEST(Scanner, LeavesWhatIsNoNumberOfItsType) {
    for (const char *text : {"", "-", "x1", "2147483648", "-2147483649", "99999999999999999999999"}) {
        Scanner scanner(text);
        EXPECT_FALSE(scanner.number<int32_t>()) << text;
        EXPECT_EQ(scanner.rest(), text);
    }
    EXPECT_FALSE(Scanner("-1").number<uint32_t>());
    EXPECT_FALSE(Scanner("4294967296").number<uint32_t>());
}

TEST(Scanner, FindsTheEndOfArgumentsOutsideOfQuotes) {
    Scanner scanner(R"(1, "a) \") b", #7) = 0)");
    EXPECT_EQ(scanner.beforeUnquoted(')'), R"(1, "a) \") b", #7)");
    EXPECT_EQ(scanner.rest(), ") = 0");
    EXPECT_FALSE(Scanner("\"a)").beforeUnquoted(')'));
}

TEST(Scanner, ReadsBackEveryQuotedText) {
    std::string all;
    for (int c = 0; c < 256; ++c)
        all += static_cast<char>(c);
    const std::string text = sim::quoted(all) + " status 5";
    Scanner scanner(text);
    EXPECT_EQ(scanner.quotedText(), all);
    EXPECT_EQ(scanner.rest(), " status 5");
    EXPECT_EQ(Scanner("\"\"").quotedText(), "");
}

TEST(Scanner, LeavesATextThatNobodyQuoted) {
    for (const char *text :
         {"", "a", "\"a", "\"a\\", "\"a\\\"", "\"\\q\"", "\"\\x\"", "\"\\x4\"", "\"\\xAB\"", "\"\\xg0\""}) {
        Scanner scanner(text);
        EXPECT_FALSE(scanner.quotedText()) << text;
        EXPECT_EQ(scanner.rest(), text);
    }
}
