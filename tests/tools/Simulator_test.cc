#include "tools/dcache/simulator.h"

#include <fstream>
#include <gmock/gmock.h>

#include "tests/tools/RunDcache.h"
#include "tools/dcache/failure.h"

// Factories such as a switch library might export.
extern "C" __attribute__((visibility("default"))) sim::Simulator *olderFactory(const char *, int) {
    return nullptr;
}
extern "C" __attribute__((visibility("default"))) sim::Play *olderPlayFactory(const char *, const char *, int) {
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

TEST(SimulatorLookup, MakesTheSwitchOfAShippedScenarioInRealTime) {
    const auto play = dcache::makePlay("director");
    ASSERT_NE(play, nullptr);
    EXPECT_EQ(play->device().profile(), "director-8");
    EXPECT_EQ(play->device().pace(), sim::Pace::running);
    EXPECT_EQ(play->device().speed(), 1);
}

TEST(SimulatorLookup, MakesTheSwitchOfAScenarioInAFile) {
    std::ofstream("/tmp/own.toml") << "profile = 'fabric-2'\n";
    const auto play = dcache::makePlay("/tmp/own.toml");
    EXPECT_EQ(play->device().profile(), "fabric-2");
    EXPECT_EQ(play->name(), "/tmp/own.toml");
}

TEST(SimulatorLookup, AnUnknownScenarioIsMisuseThatTellsWhichThereAre) {
    EXPECT_THAT([] { dcache::makePlay("nosuch"); },
                testing::ThrowsMessage<dcache::Misuse>(testing::AllOf(
                    testing::HasSubstr("'nosuch'"), testing::HasSubstr("demo, "), testing::HasSubstr(".toml"))));
}

TEST(SimulatorLookup, MistakesInAFileAreMisuseThatTellsAllOfThem) {
    std::ofstream("/tmp/own.toml") << "colour = 1\nprofile = 2\n";
    EXPECT_THAT([] { dcache::makePlay("/tmp/own.toml"); },
                testing::ThrowsMessage<dcache::Misuse>(
                    testing::AllOf(testing::HasSubstr("/tmp/own.toml:1:1: "), testing::HasSubstr("/tmp/own.toml:2:"))));
}

TEST(SimulatorLookup, AFileThatIsNotThereIsAFailure) {
    EXPECT_THAT([] { dcache::makePlay("/tmp/none.toml"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("cannot read /tmp/none.toml")));
}

TEST(SimulatorLookup, ScenariosAlsoTakeTheSimulatedSwitchOfThisVersion) {
    EXPECT_THAT([] { dcache::makePlay("demo", "no_such_factory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("real switch library")));
    EXPECT_THAT([] { dcache::makePlay("demo", "olderPlayFactory"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("another version")));
}

TEST(SimulatorLookup, ASwitchThatIsServedIsNotOursToMake) {
    support::setVariable("ZOVSIM_SOCKET", "/tmp/switch");
    EXPECT_FALSE(dcache::isSimulated());
    EXPECT_THAT([] { dcache::makeSimulator("fixed-24"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("/tmp/switch")));
    EXPECT_THAT([] { dcache::makePlay("demo"); },
                testing::ThrowsMessage<dcache::Failure>(testing::HasSubstr("zovsim serve --scenario")));
    support::setVariable("ZOVSIM_SOCKET", "");
    EXPECT_TRUE(dcache::isSimulated());
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
    {
        const auto play = dcache::makePlay("demo");
        play->device().passTime(seconds(9));
        EXPECT_GE(dcache::simulatedSeconds(), 9) << "its clock goes by itself, too";
    }
    EXPECT_EQ(dcache::simulatedSeconds(), 0);
}
