#include "sim/core/Clock.h"

#include <cmath>
#include <future>
#include <limits>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using namespace std::chrono_literals;
using sim::Pace;
using simtest::Client;
using simtest::kPatience;
using std::chrono::milliseconds;

namespace {

/// A step of real time that is long for a computer and short for a person.
constexpr milliseconds kMoment{20};

class Clock : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    /// The next read takes this long.
    void delay(milliseconds time, milliseconds hang = 0ms) {
        sim::Fault fault;
        fault.call = "zov_smlGet";
        fault.delay = time;
        fault.hang = hang;
        device->addFault(fault);
    }
    int32_t read() const { return client.get("Oper.Switch.DomainID").status; }
    std::future<int32_t> readMeanwhile() {
        return std::async(std::launch::async, [this] { return read(); });
    }
    /// How long something takes, really and by the switch's clock.
    template <class Action> static milliseconds realTimeOf(const Action &action) {
        const auto start = std::chrono::steady_clock::now();
        action();
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
    }
    template <class Action> milliseconds timeOf(const Action &action) const {
        const milliseconds start = device->clock();
        action();
        return device->clock() - start;
    }
    /// A peer that answers for its ports after so many seconds.
    void addSlowPeer(unsigned seconds) {
        simtest::addChain(*device, 2);
        sim::Peer peer = device->peers().at(0);
        peer.topology.seconds = seconds;
        device->changePeer(peer);
    }
    static constexpr const char *kSlowKey = "Oper.TopologyAll.2.PortEntries";
};

} // namespace

TEST_F(Clock, GoesByHandAtFirst) {
    EXPECT_EQ(device->pace(), Pace::byHand);
    EXPECT_EQ(device->speed(), 1);
    EXPECT_EQ(device->clock(), 3600s);
    delay(kMoment);
    EXPECT_GE(realTimeOf([&] { EXPECT_EQ(read(), 0); }), kMoment);
    EXPECT_EQ(device->clock(), 3600s);
    EXPECT_FALSE(device->waitForUptime(3601s, 1ms));
    EXPECT_TRUE(device->waitForUptime(3600s, 1ms));
}

TEST_F(Clock, WhoWaitsForATimeByHandIsToldWhenItIsPassed) {
    std::future<bool> waiting = std::async(std::launch::async, [&] { return device->waitForUptime(4000s, kPatience); });
    device->passTime(399s);
    EXPECT_EQ(waiting.wait_for(kMoment), std::future_status::timeout);
    device->passTime(1s);
    EXPECT_TRUE(waiting.get());
}

TEST_F(Clock, RunsWithRealTimeTimesItsSpeed) {
    const auto start = std::chrono::steady_clock::now();
    device->setPace(Pace::running, 1000);
    EXPECT_EQ(device->pace(), Pace::running);
    EXPECT_EQ(device->speed(), 1000);
    EXPECT_TRUE(device->waitForUptime(3620s, kPatience));
    const auto real = std::chrono::steady_clock::now() - start;
    EXPECT_GE(device->uptime(), 3620);
    EXPECT_GE(real, 20ms);
    EXPECT_FALSE(device->waitForUptime(24h, 1ms));
}

TEST_F(Clock, DelaysFollowItsSpeed) {
    device->setPace(Pace::running, 10000);
    delay(200s);
    EXPECT_GE(timeOf([&] { EXPECT_LT(realTimeOf([&] { EXPECT_EQ(read(), 0); }), 100s); }), 200s);
}

TEST_F(Clock, GoesOnFromWhereItWasAtEveryOtherPace) {
    device->setPace(Pace::running, 100000);
    ASSERT_TRUE(device->waitForUptime(7200s, kPatience));
    device->setPace(Pace::paused);
    const milliseconds stopped = device->clock();
    EXPECT_GE(stopped, 7200s);
    EXPECT_FALSE(device->waitForUptime(stopped + 1ms, kMoment));
    EXPECT_EQ(device->clock(), stopped);
    device->setPace(Pace::driven);
    EXPECT_EQ(device->clock(), stopped);
    device->setPace(Pace::byHand);
    EXPECT_EQ(device->clock(), stopped);
    device->setPace(Pace::running, 1000);
    EXPECT_TRUE(device->waitForUptime(stopped + 10s, kPatience));
}

TEST_F(Clock, WhoIsDelayedWhileItIsPausedWaitsForItsSteps) {
    device->setPace(Pace::paused);
    delay(1h);
    std::future<int32_t> delayed = readMeanwhile();
    EXPECT_EQ(delayed.wait_for(kMoment), std::future_status::timeout);
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (delayed.wait_for(1ms) == std::future_status::timeout && std::chrono::steady_clock::now() < deadline)
        device->passTime(10min);
    ASSERT_EQ(delayed.wait_for(0s), std::future_status::ready);
    EXPECT_GE(device->clock(), 2h);
}

TEST_F(Clock, WhoIsDelayedGoesOnWhenItRunsAgain) {
    device->setPace(Pace::paused);
    delay(100s);
    std::future<int32_t> delayed = readMeanwhile();
    EXPECT_EQ(delayed.wait_for(kMoment), std::future_status::timeout);
    device->setPace(Pace::running, 100000);
    EXPECT_EQ(delayed.wait_for(kPatience), std::future_status::ready);
}

TEST_F(Clock, SwitchingTheSwitchOffEndsEveryWait) {
    device->setPace(Pace::paused);
    delay(1h);
    delay(0ms, 1h);
    std::future<int32_t> delayed = readMeanwhile();
    std::future<int32_t> hanging = readMeanwhile();
    device.reset();
    EXPECT_EQ(delayed.get(), simtest::kBadHandle);
    EXPECT_EQ(hanging.get(), simtest::kBadHandle);
}

TEST_F(Clock, DrivenItGoesOnWithDelaysThatTakeNoTime) {
    device->setPace(Pace::driven);
    delay(24h);
    EXPECT_EQ(timeOf([&] { EXPECT_LT(realTimeOf([&] { EXPECT_EQ(read(), 0); }), 1h); }), 24h);
    delay(1500ms);
    EXPECT_EQ(timeOf([&] { EXPECT_EQ(read(), 0); }), 1500ms);
    EXPECT_EQ(device->uptime(), 3600 + 86400 + 1);
    EXPECT_TRUE(device->waitForUptime(48h, 0ms)); // it is moved on
    EXPECT_EQ(device->clock(), 48h);
    EXPECT_TRUE(device->waitForUptime(1h, 0ms));
    EXPECT_EQ(device->clock(), 48h);
}

TEST_F(Clock, AHangTakesRealTimeHoweverItGoes) {
    for (const Pace pace : {Pace::byHand, Pace::paused, Pace::driven}) {
        device->setPace(pace);
        delay(0ms, kMoment);
        EXPECT_EQ(timeOf([&] { EXPECT_GE(realTimeOf([&] { EXPECT_EQ(read(), 0); }), kMoment); }), 0s);
    }
    device->setPace(Pace::running, 1000000);
    delay(0ms, kMoment);
    EXPECT_GE(realTimeOf([&] { EXPECT_EQ(read(), 0); }), kMoment);
}

TEST_F(Clock, SlowAnswersTakeTheirTimeAtOnceByHandAndDriven) {
    addSlowPeer(30);
    for (const Pace pace : {Pace::byHand, Pace::driven}) {
        device->setPace(pace);
        EXPECT_EQ(timeOf([&] { EXPECT_EQ(client.get(kSlowKey).status, 0); }), 30s);
        EXPECT_EQ(timeOf([&] { client.getBatch({"Oper.Switch.WWN", kSlowKey, kSlowKey}); }), 60s);
    }
}

TEST_F(Clock, SlowAnswersAreWaitedForWhileItRuns) {
    addSlowPeer(300);
    device->setPace(Pace::running, 10000);
    EXPECT_GE(timeOf([&] { EXPECT_GE(realTimeOf([&] { EXPECT_EQ(client.get(kSlowKey).status, 0); }), 29ms); }), 300s);
}

TEST_F(Clock, ASlowAnswerHoldsUpNobodyElse) {
    addSlowPeer(300);
    device->setPace(Pace::paused);
    std::future<simtest::Answer> slow = std::async(std::launch::async, [] { return Client().get(kSlowKey); });
    EXPECT_EQ(slow.wait_for(kMoment), std::future_status::timeout);
    EXPECT_EQ(read(), 0);
    device->set("Oper.Switch.OperState", "Offline");
    device->setPace(Pace::running, 100000);
    EXPECT_EQ(slow.get().value, "24");
}

TEST_F(Clock, HasNoSpeedThatCannotBe) {
    for (const double speed : {0.0, -1.0, 1000001.0, std::nan(""), std::numeric_limits<double>::infinity()})
        EXPECT_THROW(device->setPace(Pace::running, speed), std::invalid_argument) << speed;
    EXPECT_EQ(device->pace(), Pace::byHand);
    EXPECT_NO_THROW(device->setPace(Pace::running, 0.001));
}

TEST_F(Clock, StandsAtTheLastTimeItCanTellAtEveryPace) {
    for (const Pace pace : {Pace::driven, Pace::running, Pace::paused, Pace::byHand}) {
        device->setPace(pace);
        device->passTime(std::chrono::seconds::max());
        EXPECT_EQ(device->uptime(), std::numeric_limits<long>::max());
        EXPECT_GT(device->clock(), 24h * 365 * 60); // 32 bits of seconds are 68 years
    }
    delay(1h);
    EXPECT_EQ(read(), 0); // no time is left that it could take
}

// ---- the driven clock and notifications ---------------------------------------------------------------

namespace {

/// What comes when, and on which thread.
class DrivenClock : public Clock {
protected:
    void SetUp() override {
        device->setPace(Pace::driven);
        client.inCallback([this](void *, zov_event_s *event) {
            arrivals.push_back(std::to_string(event->code) + " at " + std::to_string(device->uptime() - 3600));
            elsewhere |= std::this_thread::get_id() != driver;
            if (during)
                during();
        });
        ASSERT_EQ(client.registerFor({32, 33, 82}), 0);
    }
    void late(int32_t code, milliseconds time) {
        sim::Fault fault;
        fault.call = sim::kNotificationCall;
        fault.key = std::to_string(code);
        fault.delay = time;
        device->addFault(fault);
    }

    const std::thread::id driver = std::this_thread::get_id();
    std::vector<std::string> arrivals;
    bool elsewhere = false;
    std::function<void()> during;
};

using Arrivals = std::vector<std::string>;

} // namespace

TEST_F(DrivenClock, NotificationsComeWhenTheDriverAsksForThemAndOnItsThread) {
    device->deliver(32, {0, 0, 0}, "one");
    device->deliver(33, {0, 0, 0}, "two");
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(arrivals, Arrivals());
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_EQ(arrivals, (Arrivals{"32 at 0", "33 at 0"}));
    device->deliver(82, {0, 0, 0}, "three");
    device->passTime(10s);
    EXPECT_EQ(arrivals, (Arrivals{"32 at 0", "33 at 0", "82 at 0"}));
    EXPECT_EQ(device->uptime(), 3610);
    EXPECT_FALSE(elsewhere);
}

TEST_F(DrivenClock, LateNotificationsComeAtTheirTime) {
    late(32, 30s);
    late(33, 10s);
    for (const int32_t code : {32, 33, 82})
        device->deliver(code, {0, 0, 0}, "");
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_EQ(arrivals, (Arrivals{"82 at 0"}));
    device->passTime(29s);
    EXPECT_EQ(arrivals, (Arrivals{"82 at 0", "33 at 10"}));
    EXPECT_TRUE(device->waitForUptime(4000s, 0ms));
    EXPECT_EQ(arrivals, (Arrivals{"82 at 0", "33 at 10", "32 at 30"}));
    EXPECT_EQ(device->uptime(), 4000);
}

TEST_F(DrivenClock, WhatCallbacksSendComesAtTheSameTime) {
    late(32, 30s);
    device->deliver(32, {0, 0, 0}, "");
    during = [this] {
        during = nullptr;
        device->deliver(33, {0, 0, 0}, "");
    };
    device->passTime(60s);
    EXPECT_EQ(arrivals, (Arrivals{"32 at 30", "33 at 30"}));
    EXPECT_EQ(device->uptime(), 3660);
}

TEST_F(DrivenClock, ACallbackThatPassesTimeMovesItAndNothingElse) {
    late(33, 15s);
    device->deliver(33, {0, 0, 0}, "");
    device->deliver(32, {0, 0, 0}, "");
    during = [this] {
        during = nullptr;
        device->passTime(20s);
        arrivals.emplace_back("passed");
    };
    device->passTime(10s);
    EXPECT_EQ(arrivals, (Arrivals{"32 at 0", "passed"}));
    EXPECT_EQ(device->uptime(), 3620); // further than it was to go
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_EQ(arrivals, (Arrivals{"32 at 0", "passed", "33 at 20"}));
}

TEST_F(DrivenClock, TimeThatCallbacksSpendIsPartOfWhatPasses) {
    addSlowPeer(4);
    late(32, 500ms);
    device->deliver(32, {0, 0, 0}, "");
    during = [this] { client.get(kSlowKey); };
    device->passTime(10s);
    EXPECT_EQ(device->clock(), 3610s);
    EXPECT_EQ(arrivals, (Arrivals{"32 at 0"}));
}

TEST_F(DrivenClock, TheSwitchDeliversByItselfAgainAtEveryOtherPace) {
    device->deliver(32, {0, 0, 0}, "");
    device->setPace(Pace::byHand);
    EXPECT_EQ(client.events(1).size(), 1U);
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_TRUE(elsewhere);
}
