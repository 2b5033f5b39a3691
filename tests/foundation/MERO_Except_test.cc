// The record of a failure.
#include <cstring>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "foundation/MERO_Except.h"
#include "tests/support/Memory.h"

namespace {

static_assert(!std::is_polymorphic_v<MERO_Except>);
static_assert(std::is_trivially_destructible_v<MERO_Except>);
static_assert(std::is_standard_layout_v<MERO_Except>);
static_assert(std::is_same_v<std::underlying_type_t<except_enum>, int32_t>);
static_assert(EXCEPT_CRIT == 0 && EXCEPT_INFO == 1);
static_assert(offsetof(MERO_Except, file) < offsetof(MERO_Except, function) &&
              offsetof(MERO_Except, function) < offsetof(MERO_Except, line) &&
              offsetof(MERO_Except, line) < offsetof(MERO_Except, message) &&
              offsetof(MERO_Except, kind) == offsetof(MERO_Except, message) + 2024);

constexpr const char *kFile = "Source.cc";
constexpr const char *kFunction = "function";

TEST(MeroExcept, KeepsWhatItIsGiven) {
    const MERO_Except record(kFile, kFunction, 930, EXCEPT_CRIT, "Internal consistency error");
    EXPECT_EQ(record.file, kFile) << "the very text, not a copy";
    EXPECT_EQ(record.function, kFunction);
    EXPECT_EQ(record.line, 930);
    EXPECT_EQ(record.kind, EXCEPT_CRIT);
    EXPECT_STREQ(record.message, "Internal consistency error");
    EXPECT_EQ(MERO_Except(kFile, kFunction, 1, EXCEPT_INFO, "x").kind, EXCEPT_INFO);
    EXPECT_EQ(MERO_Except(nullptr, nullptr, -1, EXCEPT_INFO, "x").file, nullptr);
}

TEST(MeroExcept, FormatsItsMessageAtOnce) {
    std::string word = "zone";
    const MERO_Except record(kFile, kFunction, 1, EXCEPT_INFO, "%s %d of %5.2f%%", word.c_str(), -7, 1.5);
    word = "else";
    EXPECT_STREQ(record.message, "zone -7 of  1.50%");
    EXPECT_STREQ(MERO_Except(kFile, kFunction, 1, EXCEPT_INFO, "%s", "").message, "");
}

TEST(MeroExcept, CutsAMessageTo2023Characters) {
    for (const std::size_t length : {2022U, 2023U, 2024U, 2025U, 50000U}) {
        const std::string text(length, 'x');
        const MERO_Except record(kFile, kFunction, 7, EXCEPT_CRIT, "%s", text.c_str());
        EXPECT_EQ(record.message, text.substr(0, 2023));
        EXPECT_EQ(record.kind, EXCEPT_CRIT);
    }
}

TEST(MeroExcept, NoFormatMakesAnEmptyMessage) {
    const MERO_Except record(kFile, kFunction, 7, EXCEPT_INFO, nullptr);
    EXPECT_STREQ(record.message, "");
    EXPECT_EQ(record.line, 7);
}

TEST(MeroExcept, IsThrownAndCopiedWhole) {
    try {
        throw MERO_Except(kFile, kFunction, 905, EXCEPT_CRIT, "%s", "thrown");
    } catch (const MERO_Except &caught) {
        const MERO_Except copy = caught; // NOLINT(performance-unnecessary-copy-initialization): it is what is tested
        EXPECT_STREQ(copy.message, "thrown");
        EXPECT_EQ(copy.line, 905);
        EXPECT_NE(static_cast<const char *>(copy.message), static_cast<const char *>(caught.message));
    }
}

TEST(MeroExcept, NeedsNoMemory) {
    const long before = support::blocks_asked_for;
    const MERO_Except record(kFile, kFunction, 930, EXCEPT_CRIT, "%s %d", "text", 5);
    const MERO_Except copy = record; // NOLINT(performance-unnecessary-copy-initialization): it is what is tested
    EXPECT_EQ(support::blocks_asked_for, before);
    EXPECT_STREQ(copy.message, "text 5");
}

} // namespace
