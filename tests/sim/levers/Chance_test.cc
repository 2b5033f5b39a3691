#include "sim/levers/Chance.h"

#include <array>

#include <gtest/gtest.h>

namespace {

TEST(Chance, DrawsTheSameNumbersOnEveryMachine) {
    sim::Chance chance(0);
    EXPECT_EQ(chance.next(), 0xE220A8397B1DCDAFU);
    EXPECT_EQ(chance.next(), 0x6E789E6AA1B965F4U);
    EXPECT_EQ(chance.next(), 0x06C45D188009454FU);
}

TEST(Chance, GoesOnWhereAnotherOneIs) {
    sim::Chance chance(99);
    chance.next();
    sim::Chance other(chance.state());
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(other.next(), chance.next());
}

TEST(Chance, DrawsEveryNumberBelowTheLimitAndNoOther) {
    sim::Chance chance(1);
    std::array<int, 5> drawn{};
    for (int i = 0; i < 1000; ++i)
        ++drawn.at(chance.below(5));
    for (const int count : drawn)
        EXPECT_GT(count, 150);
}

TEST(Chance, HappensAsOftenAsItsPerCent) {
    sim::Chance chance(1);
    int happened = 0;
    for (int i = 0; i < 10000; ++i)
        happened += chance.happens(30) ? 1 : 0;
    EXPECT_NEAR(happened, 3000, 200);
    EXPECT_TRUE(chance.happens(100));
    EXPECT_FALSE(chance.happens(0));
}

} // namespace
