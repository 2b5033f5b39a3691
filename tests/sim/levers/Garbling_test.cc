#include "sim/levers/Garbling.h"

#include <set>

#include <gtest/gtest.h>

namespace {

constexpr size_t kLimit = 255;

TEST(Garbling, MakesAnotherTextOfEveryText) {
    for (const std::string &value : {std::string(), std::string("1"), std::string("100000C0DD00A1B2"),
                                     std::string(kLimit, 'v'), std::string("\xFF\x01")})
        for (uint64_t seed = 0; seed < 300; ++seed) {
            const std::string other = sim::garbled(value, seed, kLimit);
            EXPECT_NE(other, value) << seed;
            EXPECT_LE(other.size(), kLimit) << seed;
            EXPECT_EQ(other.find('\0'), std::string::npos) << seed;
        }
}

TEST(Garbling, CutsLengthensAndChanges) {
    const std::string value = "100000C0DD00A1B2";
    std::set<int> lengths;
    for (uint64_t seed = 0; seed < 300; ++seed) {
        const std::string other = sim::garbled(value, seed, kLimit);
        lengths.insert(other.size() < value.size() ? -1 : other.size() > value.size() ? 1 : 0);
    }
    EXPECT_EQ(lengths, (std::set<int>{-1, 0, 1}));
}

TEST(Garbling, IsTheSameForTheSameSeedOnEveryMachine) {
    const std::string value = "100000C0DD00A1B2";
    EXPECT_EQ(sim::garbled(value, 1, kLimit), "100000C");
    EXPECT_EQ(sim::garbled(value, 3, kLimit), "100000C0D900A1B2");
    EXPECT_EQ(sim::garbled(value, 6, kLimit), "100000C0D\x8e"
                                              "00A1B2");
}

} // namespace
