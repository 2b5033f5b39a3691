#include "common/numbers.h"

#include <cerrno>
#include <cstdint>

#include <gtest/gtest.h>

namespace {

constexpr int32_t kLeast = INT32_MIN;
constexpr int32_t kGreatest = INT32_MAX;
constexpr uint32_t kAllOnes = UINT32_MAX;

struct Signed {
    const char *text;
    int32_t number;
};

constexpr Signed kDecimals[] = {
    {"", 0},
    {" ", 0},
    {"abc", 0},
    {"-", 0},
    {"+", 0},
    {"0", 0},
    {"-0", 0},
    {"7", 7},
    {"+7", 7},
    {"-7", -7},
    {" \t\n\v\f\r42", 42},
    {"42 ", 42},
    {"42Mb", 42},
    {"4.9", 4},
    {"--4", 0},
    {"010", 10},
    {"0x10", 0},
    {"65535", 65535},
    {"65536", 65536},
    {"-32769", -32769},
    {"2147483646", 2147483646},
    {"2147483647", kGreatest},
    {"2147483648", kGreatest},
    {"4294967295", kGreatest},
    {"4294967296", kGreatest},
    {"4294967297", kGreatest},
    {"-2147483647", -kGreatest},
    {"-2147483648", kLeast},
    {"-2147483649", kLeast},
    {"-4294967295", kLeast},
    {"-4294967296", kLeast},
    {"9223372036854775807", kGreatest},
    {"9223372036854775808", kGreatest},
    {"18446744073709551617", kGreatest},
    {"-9223372036854775808", kLeast},
    {"-9223372036854775809", kLeast},
    {"-99999999999999999999999", kLeast},
};

struct Unsigned {
    const char *text;
    int base;
    uint32_t number;
};

constexpr Unsigned kUnsigneds[] = {
    // decimal
    {"", 10, 0},
    {"x", 10, 0},
    {"-", 10, 0},
    {"-x", 10, 0},
    {"0", 10, 0},
    {"-0", 10, 0},
    {"12", 10, 12},
    {"+12", 10, 12},
    {"  12;13", 10, 12},
    {"012", 10, 12},
    {"0x12", 10, 0},
    {"1F", 10, 1},
    {"2147483648", 10, 0x80000000},
    {"4294967294", 10, 0xFFFFFFFE},
    {"4294967295", 10, kAllOnes},
    {"4294967296", 10, kAllOnes},
    {"4294967297", 10, kAllOnes},
    {"8589934592", 10, kAllOnes},
    {"18446744073709551615", 10, kAllOnes},
    {"18446744073709551616", 10, kAllOnes},
    // counting down from 2^32
    {"-1", 10, kAllOnes},
    {" -1", 10, kAllOnes},
    {"-2", 10, 0xFFFFFFFE},
    {"-2147483648", 10, 0x80000000},
    {"-4294967294", 10, 2},
    {"-4294967295", 10, 1},
    {"-4294967296", 10, kAllOnes},
    {"-18446744073709551615", 10, kAllOnes},
    {"-18446744073709551616", 10, kAllOnes},
    // hexadecimal
    {"", 16, 0},
    {"g", 16, 0},
    {"ff", 16, 0xFF},
    {"FFfffe", 16, 0xFFFFFE},
    {"0x1F", 16, 0x1F},
    {"0X1f", 16, 0x1F},
    {"0xg", 16, 0},
    {"10", 16, 0x10},
    {"ffffffff", 16, kAllOnes},
    {"100000000", 16, kAllOnes},
    {"123456789abcdef01", 16, kAllOnes},
    {"-1", 16, kAllOnes},
    {"-0x10", 16, 0xFFFFFFF0},
    // the text tells the base
    {"", 0, 0},
    {"10", 0, 10},
    {"010", 0, 8},
    {"0x10", 0, 16},
    {"0X10", 0, 16},
    {"08", 0, 0},
    {"9", 0, 9},
    {"0xfffffffe", 0, 0xFFFFFFFE},
    {"037777777777", 0, kAllOnes},
    {"040000000000", 0, kAllOnes},
    {"0x100000000", 0, kAllOnes},
    {"-0x1", 0, kAllOnes},
    {"4294967296", 0, kAllOnes},
};

TEST(Numbers, DecimalReadsTheFirstNumberAndClampsToThe32BitRange) {
    for (const Signed &row : kDecimals)
        EXPECT_EQ(numbers::decimal(row.text), row.number) << '"' << row.text << '"';
}

TEST(Numbers, UnsignedSaturatesToAllOnesAndCountsNegativesDown) {
    for (const Unsigned &row : kUnsigneds)
        EXPECT_EQ(numbers::unsignedNumber(row.text, row.base), row.number) << '"' << row.text << "\" base " << row.base;
}

TEST(Numbers, Decimal16IsTheLowHalfOfWhatWasRead) {
    constexpr Signed rows[] = {
        {"", 0},
        {"65534", 65534},
        {"65535", 65535},
        {"65536", 0},
        {"70000", 4464},
        {"-1", 65535},
        {"-32768", 32768},
        {"2147483647", 65535},
        {"4294967296", 65535}, // clamped before it is cut
        {"-2147483648", 0},
        {"-4294967297", 0},
    };
    for (const Signed &row : rows)
        EXPECT_EQ(numbers::decimal16(row.text), row.number) << '"' << row.text << '"';
}

TEST(Numbers, ErrnoStaysAsItWas) {
    constexpr const char *huge = "99999999999999999999999";
    for (const int before : {0, ERANGE, EBADF}) {
        errno = before;
        EXPECT_EQ(numbers::decimal(huge), kGreatest);
        EXPECT_EQ(errno, before);
        EXPECT_EQ(numbers::unsignedNumber(huge, 10), kAllOnes);
        EXPECT_EQ(errno, before);
        EXPECT_EQ(numbers::decimal("5"), 5);
        EXPECT_EQ(errno, before);
        EXPECT_EQ(numbers::unsignedNumber("5", 10), 5U) << "an error of before is not taken for this number's";
        EXPECT_EQ(errno, before);
    }
}

} // namespace
