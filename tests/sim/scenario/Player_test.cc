#include "sim/scenario/Player.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/sim/scenario/Reading.h"

using simtest::Lines;

namespace {

/// A switch with a player, and what was performed when: "SECONDS COMMAND".
struct Stage {
    explicit Stage(const std::string &steps)
        : scenario(sim::readScenario(steps, "a.toml", {})), device(sim::makeSwitch(scenario)),
          player(*device, scenario, [this](sim::Simulator &, const std::string &command) { return perform(command); }) {
    }

    std::string perform(const std::string &command) {
        performed.push_back(std::to_string(device->uptime() - 3600) + " " + command);
        if (command == "refuse")
            throw std::invalid_argument("no");
        if (command == "dawdle")
            device->passTime(std::chrono::seconds(10));
        return "did " + command;
    }

    void pass(long seconds) { device->passTime(std::chrono::seconds(seconds)); }

    sim::Scenario scenario;
    std::unique_ptr<sim::Simulator> device;
    Lines performed;
    sim::Player player;
};

} // namespace

TEST(Player, PlaysNothingBeforeItsTime) {
    Stage stage("[[step]]\nat = 5\ndo = \"a\"");
    EXPECT_EQ(stage.player.next(), std::chrono::seconds(3605));
    stage.pass(4);
    EXPECT_TRUE(stage.player.play().empty());
    stage.pass(1);
    EXPECT_EQ(stage.player.play().size(), 1U);
    EXPECT_EQ(stage.player.next(), std::nullopt);
    EXPECT_TRUE(stage.player.playNext().empty());
    EXPECT_EQ(stage.performed, Lines{"5 a"});
}

TEST(Player, PlaysInTheOrderOfTimeAndOfTheFileWhenTimesAreEqual) {
    Stage stage("[[step]]\nat = 3\ndo = \"late\"\n[[step]]\nat = 1\ndo = [\"a\", \"b\"]\n[[step]]\nat = 1\ndo = \"c\"\n"
                "[[step]]\nat = 0\ndo = \"first\"");
    while (!stage.player.playNext().empty()) {
    }
    EXPECT_EQ(stage.performed, (Lines{"0 first", "1 a", "1 b", "1 c", "3 late"}));
}

TEST(Player, RepeatsAStepAsOftenAsItSays) {
    Stage stage("[[step]]\nat = 2\nevery = 10\nrepeat = 3\ndo = \"a\"\n[[step]]\nevery = 15\nrepeat = 1\ndo = \"b\"");
    while (!stage.player.playNext().empty()) {
    }
    EXPECT_EQ(stage.performed, (Lines{"2 a", "12 a", "15 b", "22 a"}));
}

TEST(Player, RepeatsAStepForEverWithoutANumber) {
    Stage stage("[[step]]\nevery = \"1 d\"\ndo = \"a\"");
    for (int day = 0; day < 1000; ++day)
        EXPECT_EQ(stage.player.playNext().size(), 1U);
    EXPECT_EQ(stage.performed.back(), "86400000 a");
    EXPECT_TRUE(stage.player.next());
}

TEST(Player, CatchesUpInOrderWhenTheClockHasGoneOn) {
    Stage stage("[[step]]\nat = 1\nevery = 2\ndo = \"a\"\n[[step]]\nat = 4\ndo = \"b\"");
    stage.pass(6);
    std::vector<long> times;
    for (const sim::Played &played : stage.player.play())
        times.push_back(static_cast<long>(played.at / std::chrono::seconds(1)));
    EXPECT_EQ(times, (std::vector<long>{1, 3, 4, 5}));
    EXPECT_EQ(stage.performed, (Lines{"6 a", "6 a", "6 b", "6 a"}));
}

TEST(Player, ComesBackFromStepsThatLetMoreTimePassThanLiesBetweenThem) {
    Stage stage("[[step]]\nevery = 1\ndo = \"dawdle\"");
    EXPECT_EQ(stage.player.playNext().size(), 1U);
    EXPECT_EQ(stage.player.play().size(), 10U);
}

TEST(Player, BeginsWhenItIsMade) {
    Stage stage("[[step]]\nat = 5\ndo = \"a\"");
    stage.pass(100);
    const sim::Player late(*stage.device, stage.scenario, [](sim::Simulator &, const std::string &) { return ""; });
    EXPECT_EQ(late.next(), std::chrono::seconds(3705));
}

TEST(Player, ReportsWhatWasRefusedWithItsPlaceAndGoesOn) {
    Stage stage("[[step]]\nat = 1\ndo = [\"a\",\n \"refuse\", \"b\"]");
    const std::vector<sim::Played> played = stage.player.playNext();
    ASSERT_EQ(played.size(), 3U);
    EXPECT_FALSE(played[0].isRefused());
    EXPECT_EQ(played[0].told, "did a");
    EXPECT_EQ(played[0].line(), "1 s: a");
    EXPECT_TRUE(played[1].isRefused());
    EXPECT_EQ(played[1].line(), "a.toml:4:2: 1 s: refuse: no");
    EXPECT_EQ(played[2].told, "did b");
}

TEST(Player, PlaysToTheMillisecond) {
    Stage stage("[[step]]\nat = \"500ms\"\nevery = \"250 ms\"\nrepeat = 2\ndo = \"a\"");
    EXPECT_EQ(stage.player.next(), std::chrono::milliseconds(3600500));
    const std::vector<sim::Played> played = stage.player.playNext();
    ASSERT_EQ(played.size(), 1U);
    EXPECT_EQ(played[0].line(), "0.500 s: a");
    EXPECT_EQ(stage.device->clock(), std::chrono::milliseconds(3600500));
    EXPECT_EQ(stage.player.next(), std::chrono::milliseconds(3600750));
    stage.device->setPace(sim::Pace::driven);
    EXPECT_TRUE(stage.device->waitForUptime(*stage.player.next(), std::chrono::milliseconds(0)));
    EXPECT_EQ(stage.player.play().size(), 1U);
    EXPECT_EQ(stage.player.next(), std::nullopt);
}

TEST(Player, TellsTheRulesThatWaitForANamedStepBeforeItsCommandsEveryTime) {
    Stage stage("[[rule]]\nstep = \"x\"\nstatus = 5\n[[rule]]\nstep = \"y\"\nstatus = 5\n"
                "[[step]]\nevery = 1\nrepeat = 2\nname = \"x\"\ndo = \"a\"\n[[step]]\nat = 3\nname = \"y\"");
    const auto waiting = [&] {
        std::string steps;
        for (const auto &[number, rule] : stage.device->faults())
            steps += rule.step;
        return steps;
    };
    EXPECT_EQ(waiting(), "xy");
    const std::vector<sim::Played> played = stage.player.playNext();
    ASSERT_EQ(played.size(), 2U);
    EXPECT_EQ(played[0].line(), "1 s: step x");
    EXPECT_EQ(played[0].where, "a.toml:7:1");
    EXPECT_EQ(played[1].line(), "1 s: a");
    EXPECT_EQ(waiting(), "y");
    sim::Fault late;
    late.step = "x";
    late.status = 6;
    stage.device->addFault(late);
    EXPECT_EQ(stage.player.playNext().size(), 2U);
    EXPECT_EQ(waiting(), "y");
    EXPECT_EQ(stage.player.playNext().size(), 1U);
    EXPECT_EQ(waiting(), "");
}

TEST(Player, PerformsTheCommandLanguageUnlessToldOtherwise) {
    const sim::Scenario scenario =
        sim::readScenario("[[step]]\nat = 1\ndo = [\"port 3 offline\", \"port 99 offline\"]", "a");
    const auto device = sim::makeSwitch(scenario);
    sim::Player player(*device, scenario);
    const std::vector<sim::Played> played = player.playNext();
    ASSERT_EQ(played.size(), 2U);
    EXPECT_EQ(device->get("Oper.UserPort.0.3.OperState"), "Offline");
    EXPECT_EQ(played[1].error, "there is no port 99; the switch has 24, counted from 0");
}

TEST(Player, AClockThatCannotGoOnEndsThePlay) {
    Stage stage("[[step]]\nat = 5\ndo = \"a\"");
    stage.device->passTime(std::chrono::seconds(std::numeric_limits<long>::max()));
    sim::Player late(*stage.device, stage.scenario);
    EXPECT_TRUE(late.next());
    EXPECT_TRUE(late.playNext().empty());
}

TEST(Player, PlaysOneStepAtATimeWhenAskedTo) {
    Stage stage("[[step]]\nat = 1\nname = \"x\"\ndo = \"a\"\n[[step]]\nat = 1\ndo = \"b\"");
    EXPECT_EQ(stage.player.nextStep()->name, "x");
    EXPECT_TRUE(stage.player.playStep().empty());
    stage.pass(1);
    EXPECT_EQ(stage.player.playStep().size(), 2U);
    EXPECT_EQ(stage.performed, Lines{"1 a"});
    EXPECT_EQ(stage.player.playStep().size(), 1U);
    EXPECT_EQ(stage.player.nextStep(), nullptr);
    EXPECT_TRUE(stage.player.playStep().empty());
}
