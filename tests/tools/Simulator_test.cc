#include "tools/dcache/simulator.h"

#include <gmock/gmock.h>

#include "tools/dcache/failure.h"

// Factories such as a switch library might export.
extern "C" __attribute__((visibility("default"))) sim::Simulator *olderFactory(const char *, int) {
    return nullptr;
}

TEST(SimulatorLookup, FindsTheSimulatedSwitchWhenItIsTheSwitchLibrary) {
    const auto simulator = dcache::makeSimulator("fixed-24");
    ASSERT_NE(simulator, nullptr);
    EXPECT_EQ(simulator->get("Oper.Switch.MaxPorts"), "24");
}

TEST(SimulatorLookup, MakesTheKindOfSwitchThatWasAskedFor) {
    EXPECT_EQ(dcache::makeSimulator("director-8")->get("Oper.Chassis.0.MaxSlots"), "8");
}

TEST(SimulatorLookup, AnUnknownKindIsMisuseThatTellsWhichKindsThereAre) {
    EXPECT_THAT([] { dcache::makeSimulator("toaster"); },
                testing::ThrowsMessage<dcache::Misuse>(
                    testing::AllOf(testing::HasSubstr("'toaster'"), testing::HasSubstr("director-8"))));
}

TEST(SimulatorLookup, SaysSoWhenTheSwitchLibraryIsARealOne) {
    EXPECT_THAT([] { dcache::makeSimulator("fixed-24", "no_such_factory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("real switch library")));
}

TEST(SimulatorLookup, SaysSoWhenTheSimulatedSwitchIsOfAnotherVersion) {
    EXPECT_THAT([] { dcache::makeSimulator("fixed-24", "olderFactory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("another version")));
}

TEST(SimulatorLookup, TellsARealSwitchLibraryFromTheSimulatedOne) {
    EXPECT_TRUE(dcache::isSimulated());
    EXPECT_FALSE(dcache::isSimulated("no_such_factory"));
}

TEST(SimulatorLookup, TheClockOfTheSwitchMadeLastIsTheOneThatCounts) {
    using std::chrono::seconds;
    EXPECT_EQ(dcache::simulatedSeconds(), 0) << "there is no switch yet";
    const auto first = dcache::makeSimulator("fixed-24");
    EXPECT_EQ(dcache::simulatedSeconds(), 0) << "only what passes from now on counts";
    first->passTime(seconds(5));
    EXPECT_EQ(dcache::simulatedSeconds(), 5);
    {
        const auto second = dcache::makeSimulator("fixed-24");
        second->passTime(seconds(7));
        first->passTime(seconds(100));
        EXPECT_EQ(dcache::simulatedSeconds(), 7);
    }
    EXPECT_EQ(dcache::simulatedSeconds(), 0) << "that switch is gone";
    first->passTime(seconds(1));
}
