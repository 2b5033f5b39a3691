// Rules about notifications.

#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using namespace std::chrono_literals;
using simtest::Client;

namespace {

using Codes = std::vector<int32_t>;

class FaultNotifications : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({32, 33, 82}), 0); }

    static sim::Fault on(const char *code, int times = 1) {
        sim::Fault fault;
        fault.call = sim::kNotificationCall;
        fault.key = code;
        fault.times = times;
        return fault;
    }
    void copy(const char *code, unsigned copies, int times = 1) {
        sim::Fault fault = on(code, times);
        fault.copies = copies;
        device->addFault(fault);
    }
    void reorder(const char *code, int times = 1) {
        sim::Fault fault = on(code, times);
        fault.reordered = true;
        device->addFault(fault);
    }
    void send(std::initializer_list<int32_t> codes) {
        for (const int32_t code : codes)
            device->deliver(code, {0, 0, 0}, "text");
    }
    Codes codes() const { return client.codes(*device); }
    std::vector<std::string> texts() const {
        EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
        std::vector<std::string> found;
        for (const zov_event_s &event : client.events(0))
            found.emplace_back(event.text);
        return found;
    }
};

} // namespace

TEST_F(FaultNotifications, OneIsLost) {
    copy("33", 0);
    send({32, 33, 33, 82});
    EXPECT_EQ(codes(), (Codes{32, 33, 82}));
}

TEST_F(FaultNotifications, OneComesTwice) {
    copy("33", 2);
    send({32, 33, 33});
    EXPECT_EQ(codes(), (Codes{32, 33, 33, 33}));
}

TEST_F(FaultNotifications, OneIsAStorm) {
    copy("33", 1000);
    send({33, 32});
    Codes expected(1000, 33);
    expected.push_back(32);
    EXPECT_EQ(codes(), expected);
}

TEST_F(FaultNotifications, TheNextOneOvertakesOne) {
    reorder("33");
    send({33, 32, 82});
    EXPECT_EQ(codes(), (Codes{32, 33, 82}));
}

TEST_F(FaultNotifications, WhatHasOvertakenAnotherIsNotOvertakenItself) {
    reorder("*", -1);
    device->setPace(sim::Pace::driven);
    send({32, 33, 82});
    EXPECT_EQ(codes(), (Codes{33, 32}));
    device->passTime(1s);
    EXPECT_EQ(codes(), (Codes{33, 32, 82}));
}

TEST_F(FaultNotifications, OneThatNoneOvertakesComesAfterASecond) {
    reorder("33");
    device->setPace(sim::Pace::driven);
    send({33});
    EXPECT_EQ(codes(), Codes());
    device->passTime(1s);
    EXPECT_EQ(codes(), Codes{33});
    device->setPace(sim::Pace::running, 1000);
    reorder("32");
    send({32});
    EXPECT_EQ(client.events(2).size(), 2U);
}

TEST_F(FaultNotifications, OvertakingIsAMatterOfEachClient) {
    Client other;
    ASSERT_EQ(other.registerFor({33, 77}), 0);
    reorder("33");
    device->setPace(sim::Pace::driven);
    device->set("Oper.Chassis.0.Fan.0", "Bad");      // 33, for both
    device->set("Oper.Switch.OperState", "Offline"); // 32, for the one
    EXPECT_EQ(codes(), (Codes{32, 33}));
    EXPECT_EQ(other.codes(*device), Codes());
    device->pullTransceiver(0); // 77, for the other
    EXPECT_EQ(other.codes(*device), (Codes{77, 33}));
}

TEST_F(FaultNotifications, OthersPassALateOne) {
    sim::Fault fault = on("33");
    fault.delay = 30s;
    device->addFault(fault);
    device->setPace(sim::Pace::driven);
    send({33, 32});
    device->passTime(29s);
    send({82});
    EXPECT_EQ(codes(), (Codes{32, 82}));
    device->passTime(1s);
    EXPECT_EQ(codes(), (Codes{32, 82, 33}));
}

TEST_F(FaultNotifications, ALateOneComesByItselfWhenTheClockGetsThere) {
    sim::Fault fault = on("33", 3);
    fault.delay = 30s;
    device->addFault(fault);
    device->setPace(sim::Pace::running, 10000);
    const std::chrono::milliseconds sent = device->clock();
    send({33});
    EXPECT_EQ(client.events(1).size(), 1U);
    EXPECT_GE(device->clock() - sent, 30s);
    device->setPace(sim::Pace::paused);
    send({33});
    EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience)); // late ones are not waited for
    EXPECT_EQ(client.events(0).size(), 1U);
    device->passTime(30s);
    EXPECT_EQ(client.events(2).size(), 2U);
    device->setPace(sim::Pace::byHand);
    send({33});
    device->passTime(30s);
    EXPECT_EQ(client.events(3).size(), 3U);
}

TEST_F(FaultNotifications, ItsTextIsAnother) {
    sim::Fault fault = on("33");
    fault.value = "another text";
    device->addFault(fault);
    send({32, 33, 33});
    EXPECT_EQ(texts(), (std::vector<std::string>{"text", "another text", "text"}));
}

TEST_F(FaultNotifications, ItsTextIsGarbledByASeed) {
    sim::Fault fault = on("33", 10);
    fault.garbled = true;
    fault.seed = 5;
    device->addFault(fault);
    for (int i = 0; i < 10; ++i)
        send({33});
    device->addFault(fault);
    for (int i = 0; i < 10; ++i)
        send({33});
    const std::vector<std::string> all = texts();
    ASSERT_EQ(all.size(), 20U);
    for (size_t i = 0; i < 10; ++i) {
        EXPECT_NE(all[i], "text");
        EXPECT_EQ(all[i], all[i + 10]);
    }
    EXPECT_GT(std::set<std::string>(all.begin(), all.end()).size(), 5U);
}

TEST_F(FaultNotifications, TheSourceStaysWhenTheTextIsAnother) {
    sim::Fault fault = on("33");
    fault.value = "";
    device->addFault(fault);
    device->deliver(33, {1, 2, 3}, "text");
    const zov_event_s event = client.events(1).at(0);
    EXPECT_EQ(event.source.number[0] * 100 + event.source.number[1] * 10 + event.source.number[2], 123);
    EXPECT_STREQ(event.text, "");
}

TEST_F(FaultNotifications, RulesCountThoseThatSomebodyGetsOnceForAllClients) {
    Client other;
    ASSERT_EQ(other.registerFor({32}), 0);
    sim::Fault fault = on("*");
    fault.copies = 0;
    fault.skip = 1;
    device->addFault(fault);
    device->set("Oper.Switch.DomainID", "9"); // nobody asked for it
    device->set("Oper.Switch.OperState", "Offline");
    device->set("Oper.Switch.OperState", "Online"); // lost
    device->set("Oper.Switch.OperState", "Offline");
    EXPECT_EQ(codes(), (Codes{32, 32}));
    EXPECT_EQ(other.codes(*device), (Codes{32, 32}));
}

TEST_F(FaultNotifications, ARuleForEveryCallIsNotAboutThem) {
    sim::Fault fault;
    fault.delay = 1h;
    fault.times = -1;
    device->addFault(fault);
    send({32});
    EXPECT_EQ(codes(), Codes{32});
}

TEST_F(FaultNotifications, WhatCannotHappenToThemIsRefused) {
    const auto refused = [this](const std::function<void(sim::Fault &)> &spoil) {
        sim::Fault fault = on("33");
        spoil(fault);
        EXPECT_THROW(device->addFault(fault), std::invalid_argument);
    };
    refused([](sim::Fault &fault) { fault.result = 1; });
    refused([](sim::Fault &fault) { fault.status = 1; });
    refused([](sim::Fault &fault) { fault.stale = true; });
    refused([](sim::Fault &fault) { fault.nullHandle = true; });
    refused([](sim::Fault &fault) { fault.hang = 1s; });
    refused([](sim::Fault &fault) { fault.action = [] {}; });
    refused([](sim::Fault &fault) { fault.copies = 10001; });
    EXPECT_TRUE(device->faults().empty());
}
