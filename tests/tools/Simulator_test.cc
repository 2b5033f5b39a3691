#include "tools/dcache/simulator.h"

#include <gmock/gmock.h>

#include "tools/dcache/failure.h"

// Factories such as a switch library might export.
extern "C" __attribute__((visibility("default"))) sim::Simulator *olderFactory(const char *, int) {
    return nullptr;
}

TEST(SimulatorLookup, FindsTheSimulatedSwitchWhenItIsTheSwitchLibrary) {
    const auto simulator = dcache::makeSimulator();
    ASSERT_NE(simulator, nullptr);
    EXPECT_EQ(simulator->get("Oper.Chassis.0.PowerSupplies"), "2");
}

TEST(SimulatorLookup, SaysSoWhenTheSwitchLibraryIsARealOne) {
    EXPECT_THAT([] { dcache::makeSimulator("no_such_factory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("real switch library")));
}

TEST(SimulatorLookup, SaysSoWhenTheSimulatedSwitchIsOfAnotherVersion) {
    EXPECT_THAT([] { dcache::makeSimulator("olderFactory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("another version")));
}
