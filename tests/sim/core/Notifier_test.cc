#include "sim/core/Notifier.h"

#include <atomic>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;
using simtest::kPatience;

TEST(Notifier, DeliversOnlyTheCodesAClientRegisteredFor) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({33}), 0);
    device->set("Oper.Switch.OperState", "Offline");      // 32
    device->set("Oper.Chassis.0.Fan.0", "Bad");           // 33
    device->set("Oper.Switch.FaultList", "FW_POST_FAIL"); // 82
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{33});
}

TEST(Notifier, WithoutARegistrationThereIsNothingToDeliver) {
    const auto device = sim::create();
    const Client client;
    device->set("Oper.Switch.OperState", "Offline");
    device->deliver(73, {0, 0, 0}, "admin");
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    for (const std::string &line : simtest::linesOf(*device))
        EXPECT_EQ(line.find("notification"), std::string::npos) << line;
}

TEST(Notifier, KeepsTheOrder) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32, 33, 82}), 0);
    std::vector<int32_t> expected;
    for (int round = 0; round < 50; ++round) {
        device->set("Oper.Switch.OperState", round % 2 ? "Online" : "Offline");
        device->set("Oper.Chassis.0.Fan.0", round % 2 ? "Good" : "Bad");
        device->deliver(200, {round, 0, 0}, "by hand");
        device->set("Oper.Switch.FaultList", std::to_string(round));
        expected.insert(expected.end(), {32, 33, 200, 82});
    }
    EXPECT_EQ(client.codes(*device), expected);
}

TEST(Notifier, ByHandReachesEveryRegisteredClientWhateverTheCode) {
    const auto device = sim::create();
    Client first;
    Client second;
    const Client unregistered;
    ASSERT_EQ(first.registerFor({33}), 0);
    ASSERT_EQ(second.registerFor({1}), 0);
    for (const int32_t code : {33, 255, 256, -1, 100000})
        device->deliver(code, {1, 2, 3}, "text");
    EXPECT_EQ(first.codes(*device), (std::vector<int32_t>{33, 255, 256, -1, 100000}));
    EXPECT_EQ(second.codes(*device), (std::vector<int32_t>{33, 255, 256, -1, 100000}));
    EXPECT_EQ(first.events(1)[0].source.number[0], 1);
    EXPECT_EQ(first.events(1)[0].source.number[1], 2);
    EXPECT_EQ(first.events(1)[0].source.number[2], 3);
    EXPECT_STREQ(first.events(1)[0].text, "text");
}

TEST(Notifier, ANewRegistrationTakesThePlaceOfTheFormer) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32}), 0);
    ASSERT_EQ(client.registerFor({33, 33}), 0);
    device->set("Oper.Switch.OperState", "Offline");
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{33});
}

TEST(Notifier, WhatWasSentBeforeARegistrationIsNotDelivered) {
    const auto device = sim::create();
    Client client;
    device->set("Oper.Switch.OperState", "Offline");
    ASSERT_EQ(client.registerFor({32}), 0);
    device->set("Oper.Switch.OperState", "Online");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{32});
}

TEST(Notifier, CallbackGetsItsConnectionAndAnEventOfItsOwn) {
    const auto device = sim::create();
    Client first;
    Client second;
    std::atomic<uintptr_t> handle{0};
    first.inCallback([&](void *connection, zov_event_s *event) {
        handle = reinterpret_cast<uintptr_t>(connection);
        std::memset(event, 0xEE, sizeof *event);
    });
    ASSERT_EQ(first.registerFor({1}), 0);
    ASSERT_EQ(second.registerFor({1}), 0);
    device->deliver(1, {4, 5, 6}, "for both");
    ASSERT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_EQ(handle, first.handle);
    ASSERT_EQ(second.events(1).size(), 1U);
    EXPECT_EQ(second.events(1)[0].source.number[2], 6);
    EXPECT_STREQ(second.events(1)[0].text, "for both");
}

TEST(Notifier, CallbacksMayCallTheSwitchLibraryAndTheSimulator) {
    const auto device = sim::create();
    Client client;
    std::promise<std::string> seen;
    client.inCallback([&](void *, zov_event_s *event) {
        if (event->code != 32)
            return;
        device->set("Oper.Chassis.0.Fan.0", "Bad");
        seen.set_value(client.get("Oper.Chassis.0.Fan.0").value);
    });
    ASSERT_EQ(client.registerFor({32, 33}), 0);
    device->set("Oper.Switch.OperState", "Offline");
    std::future<std::string> value = seen.get_future();
    ASSERT_EQ(value.wait_for(kPatience), std::future_status::ready);
    EXPECT_EQ(value.get(), "Bad");
    EXPECT_EQ(client.events(2).size(), 2U);
}

TEST(Notifier, NoCallWaitsForARunningCallback) {
    const auto device = sim::create();
    Client client;
    std::promise<void> entered;
    std::promise<void> leave;
    client.inCallback([&](void *, zov_event_s *) {
        entered.set_value();
        leave.get_future().wait();
    });
    ASSERT_EQ(client.registerFor({32}), 0);
    device->set("Oper.Switch.OperState", "Offline");
    ASSERT_EQ(entered.get_future().wait_for(kPatience), std::future_status::ready);

    // The callback is running and stays so.
    EXPECT_EQ(client.get("Oper.Switch.OperState").value, "Offline");
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.getBatch({"Oper.Switch.WWN"})[0].status, 0);
    Client other;
    EXPECT_EQ(other.registerFor({33}), 0);
    device->set("Oper.Chassis.0.Fan.0", "Bad");
    EXPECT_FALSE(device->waitUntilQuiet(std::chrono::milliseconds(1)));
    leave.set_value();
    EXPECT_TRUE(device->waitUntilQuiet(kPatience));
    EXPECT_EQ(other.events(1).size(), 1U);
}

TEST(Notifier, SwitchingOffWaitsForTheRunningCallbackAndStartsNoOther) {
    auto device = sim::create();
    Client client;
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<int> calls{0};
    std::atomic<bool> off{false};
    client.inCallback([&](void *, zov_event_s *) {
        if (calls++ == 0) {
            entered.set_value();
            leave.get_future().wait();
        }
        EXPECT_FALSE(off);
    });
    ASSERT_EQ(client.registerFor({32, 33}), 0);
    device->set("Oper.Switch.OperState", "Offline");
    ASSERT_EQ(entered.get_future().wait_for(kPatience), std::future_status::ready);
    device->set("Oper.Chassis.0.Fan.0", "Bad"); // waits behind the running callback, for ever

    std::thread switchingOff([&] {
        device.reset();
        off = true;
    });
    // The switch is off for its clients as soon as its end has begun.
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (client.get("Oper.Switch.WWN").status == 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, simtest::kBadHandle);
    leave.set_value();
    switchingOff.join();
    EXPECT_EQ(calls, 1);
}

TEST(Notifier, ManyThreadsMaySendAtOnce) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({32, 33}), 0);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&device, number] {
            for (int i = 0; i < 100; ++i)
                device->deliver(33, {number, i, 0}, "storm");
        });
    for (std::thread &thread : threads)
        thread.join();
    const std::vector<zov_event_s> events = client.events(400);
    ASSERT_EQ(events.size(), 400U);
    std::array<int32_t, 4> next{};
    for (const zov_event_s &event : events) // each thread's own stay in order
        EXPECT_EQ(event.source.number[1], next.at(static_cast<size_t>(event.source.number[0]))++);
}
