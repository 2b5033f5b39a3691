// When rules begin, how often they apply, and what is left of them.

#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using namespace std::chrono_literals;
using simtest::Client;

namespace {

class FaultConditions : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    static sim::Fault failure(int times = 1) {
        sim::Fault fault;
        fault.call = "zov_smlGet";
        fault.result = 9;
        fault.times = times;
        return fault;
    }
    int32_t read() const { return client.get("Oper.Switch.DomainID").status; }
    /// Which of so many reads fail, as a text of "." and "x".
    static std::string readsOf(const Client &reader, int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += reader.get("Oper.Switch.DomainID").status == 0 ? '.' : 'x';
        return text;
    }
    std::string reads(int count) const { return readsOf(client, count); }
    sim::Fault left(int number) const { return device->faults().at(number); }
};

} // namespace

TEST_F(FaultConditions, ARuleBeginsAfterItsTime) {
    sim::Fault fault = failure(-1);
    fault.after = 90s;
    device->addFault(fault);
    EXPECT_EQ(reads(3), "...");
    device->passTime(89s);
    EXPECT_EQ(reads(3), "...");
    device->passTime(1s);
    EXPECT_EQ(reads(3), "xxx");
}

TEST_F(FaultConditions, WhatCameBeforeIsNotCountedAsSkipped) {
    sim::Fault fault = failure();
    fault.after = 90s;
    fault.skip = 2;
    device->addFault(fault);
    EXPECT_EQ(reads(5), ".....");
    device->passTime(90s);
    EXPECT_EQ(reads(4), "..x.");
}

TEST_F(FaultConditions, ARuleBeginsAtItsStep) {
    sim::Fault fault = failure(-1);
    fault.step = "merge";
    device->addFault(fault);
    EXPECT_EQ(reads(2), "..");
    device->reachStep("segment");
    device->reachStep("");
    EXPECT_EQ(reads(2), "..");
    device->reachStep("merge");
    EXPECT_EQ(reads(2), "xx");
    device->reachStep("merge");
    EXPECT_EQ(reads(2), "xx");
}

TEST_F(FaultConditions, ARuleMayBeginSomeTimeAfterItsStep) {
    sim::Fault fault = failure(-1);
    fault.step = "merge";
    fault.after = 10s;
    device->addFault(fault);
    device->passTime(1h);
    device->reachStep("merge");
    EXPECT_EQ(reads(2), "..");
    device->passTime(5s);
    device->reachStep("merge"); // has been reached: the time goes on
    device->passTime(5s);
    EXPECT_EQ(reads(2), "xx");
}

TEST_F(FaultConditions, AStepThatWasReachedBeforeDoesNotCount) {
    device->reachStep("merge");
    sim::Fault fault = failure(-1);
    fault.step = "merge";
    device->addFault(fault);
    EXPECT_EQ(reads(2), "..");
    device->reachStep("merge");
    EXPECT_EQ(reads(2), "xx");
}

TEST_F(FaultConditions, ChanceSparesSomeOfTheMatchesAndTheyDoNotUseTheRuleUp) {
    sim::Fault fault = failure(100);
    fault.chance = 25;
    const int rule = device->addFault(fault);
    const std::string text = reads(300);
    const auto failed = std::count(text.begin(), text.end(), 'x');
    EXPECT_GT(failed, 45);
    EXPECT_LT(failed, 105);
    EXPECT_EQ(left(rule).times, 100 - failed);
}

TEST_F(FaultConditions, ChanceIsTheSameForTheSameSeed) {
    sim::Fault fault = failure(-1);
    fault.chance = 50;
    fault.seed = 4711;
    device->addFault(fault);
    const std::string first = reads(50);
    device->clearFaults();
    device->addFault(fault);
    EXPECT_EQ(reads(50), first);
    device->clearFaults();
    fault.seed = 4712;
    device->addFault(fault);
    EXPECT_NE(reads(50), first);
}

TEST_F(FaultConditions, ARuleWithoutASeedGetsOneThatCanBeSeenAndIsTheSameNextTime) {
    sim::Fault fault = failure(-1);
    fault.chance = 50;
    const int rule = device->addFault(fault);
    ASSERT_TRUE(left(rule).seed.has_value());
    const std::string first = reads(50);
    const auto another = sim::create();
    another->addFault(fault);
    EXPECT_EQ(readsOf(Client(), 50), first);
    EXPECT_FALSE(left(device->addFault(failure())).seed.has_value()); // it draws nothing
}

TEST_F(FaultConditions, WhatIsLeftOfARuleGoesOnWhereItWas) {
    sim::Fault fault = failure(100);
    fault.chance = 50;
    fault.skip = 10;
    fault.after = 60s;
    const int rule = device->addFault(fault);
    device->passTime(20s);
    EXPECT_EQ(left(rule).after, 40s);
    device->passTime(40s);
    reads(5);
    EXPECT_EQ(left(rule).skip, 5U);
    EXPECT_EQ(left(rule).after, 0s);
    reads(20);
    const sim::Fault rest = left(rule);
    EXPECT_EQ(rest.skip, 0U);
    const std::string goesOn = reads(40);
    device->clearFaults();
    device->addFault(rest);
    EXPECT_EQ(reads(40), goesOn);
}

TEST_F(FaultConditions, RulesAreListedByTheirNumbers) {
    EXPECT_TRUE(device->faults().empty());
    const int first = device->addFault(failure());
    sim::Fault waiting = failure();
    waiting.step = "merge";
    waiting.after = 5s;
    const int second = device->addFault(waiting);
    EXPECT_EQ(device->faults().size(), 2U);
    EXPECT_EQ(left(second).step, "merge");
    EXPECT_EQ(left(second).after, 5s);
    device->reachStep("merge");
    EXPECT_EQ(left(second).step, "");
    device->removeFault(first);
    EXPECT_EQ(device->faults().count(first), 0U);
    read();
    EXPECT_EQ(left(second).times, 1);
    device->passTime(5s);
    read();
    EXPECT_EQ(left(second).times, 0); // used up, and still there
}

TEST_F(FaultConditions, WhatCannotBeIsRefused) {
    const auto refused = [this](const std::function<void(sim::Fault &)> &spoil) {
        sim::Fault fault = failure();
        spoil(fault);
        EXPECT_THROW(device->addFault(fault), std::invalid_argument);
    };
    refused([](sim::Fault &fault) { fault.chance = 0; });
    refused([](sim::Fault &fault) { fault.chance = 101; });
    refused([](sim::Fault &fault) { fault.times = -2; });
    refused([](sim::Fault &fault) { fault.after = -1s; });
    refused([](sim::Fault &fault) { fault.delay = -1ms; });
    refused([](sim::Fault &fault) { fault.hang = 24h * 366; });
    refused([](sim::Fault &fault) { fault.copies = 1; });
    refused([](sim::Fault &fault) { fault.reordered = true; });
    refused([](sim::Fault &fault) { fault.call = sim::kNotificationCall; });
    EXPECT_TRUE(device->faults().empty());
    EXPECT_EQ(read(), 0);
}
