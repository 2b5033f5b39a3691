#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/verbs/Commands.h"

using sim::Pace;
using simtest::refusalOf;

namespace {

class ClockVerbs : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();

    std::string tell(const std::string &commands) { return sim::perform(*device, commands); }
};

} // namespace

TEST_F(ClockVerbs, TheClockTellsItsTimeAndHowItGoes) {
    EXPECT_EQ(tell("clock\nclock pass 5 min\nclock"), "3600 s, byhand\n3900 s, byhand");
    EXPECT_EQ(tell("clock pace driven\nclock"), "3900 s, driven");
    EXPECT_EQ(tell("clock pause\nclock step 1050ms\nclock"), "3901.050 s, paused");
}

TEST_F(ClockVerbs, APaceIsChosen) {
    for (const auto &[word, pace] : std::vector<std::pair<std::string, Pace>>{{"running", Pace::running},
                                                                              {"paused", Pace::paused},
                                                                              {"byhand", Pace::byHand},
                                                                              {"driven", Pace::driven}}) {
        tell("clock pace " + word);
        EXPECT_EQ(device->pace(), pace);
    }
    tell("clock run");
    EXPECT_EQ(device->pace(), Pace::running);
}

TEST_F(ClockVerbs, ARunningClockHasASpeedThatStaysUntilAnotherIsSaid) {
    tell("clock pace running speed=2.5");
    EXPECT_EQ(device->speed(), 2.5);
    tell("clock run");
    EXPECT_EQ(device->speed(), 2.5);
    const std::string told = tell("clock");
    EXPECT_EQ(told.substr(told.find(',')), ", running speed=2.5");
    EXPECT_EQ(refusalOf(*device, "clock pace paused speed=2"), "speed= goes with 'running' only");
    EXPECT_EQ(device->pace(), Pace::running);
}

TEST_F(ClockVerbs, TimePassesToTheMillisecond) {
    tell("clock pass 250ms\nclock step 250 ms\nclock pass 2 min");
    EXPECT_EQ(device->clock(), std::chrono::milliseconds(3720500));
    EXPECT_EQ(device->uptime(), 3720);
}

TEST_F(ClockVerbs, TimeDoesNotRunBackwards) {
    EXPECT_THROW(device->passTime(std::chrono::seconds(0), std::chrono::milliseconds(-1)), std::invalid_argument);
    EXPECT_THROW(device->passTime(std::chrono::seconds(-1), std::chrono::milliseconds(2000)), std::invalid_argument);
    EXPECT_EQ(device->clock(), std::chrono::hours(1));
}

TEST_F(ClockVerbs, NotificationsThatAreLateComeWhenTheClockIsStepped) {
    simtest::Client client;
    ASSERT_EQ(client.registerFor({40}), 0);
    tell("clock pace driven\nrule add call=notification late=500ms\ndeliver 40 0 0 0\nclock step 499ms");
    EXPECT_TRUE(client.codes(*device).empty());
    tell("clock step 1ms");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{40});
}
