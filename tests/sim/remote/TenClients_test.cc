// Ten clients in processes of their own, each of which hears every notification once and in order while all of them keep
// the switch busy. For so many seconds as DATACACHE_CLIENTS_SECONDS says.

#include <atomic>
#include <cstdlib>
#include <deque>

#include <gtest/gtest.h>

#include "tests/sim/Served.h"

using simtest::Client;
using simtest::Process;
using simtest::Signal;

namespace {

constexpr int32_t kCode = 25;
constexpr const char *kEnd = "end";

/// What a client has heard: the numbers from 0 on, and then the end.
struct Heard {
    std::atomic<unsigned> count{0};
    std::atomic<bool> isInOrder{true};
    std::atomic<bool> isOver{false};

    void take(const std::string &text) {
        if (text == kEnd)
            isOver = true;
        else if (text != std::to_string(count++))
            isInOrder = false;
    }
};

/// A client's whole life; 0 when it heard what there was to hear.
int listen(const Signal &isServed, const Signal &isReady) {
    if (!isServed.await())
        return 1;
    simtest::goOverTheSocket();
    Heard heard;
    Client client;
    client.inCallback([&](void *, zov_event_s *event) { heard.take(event->text); });
    if (client.registerFor({kCode}) != 0)
        return 2;
    isReady.give();
    while (!heard.isOver)
        if (client.get("Oper.Switch.OperState").value != "Online")
            return 3;
    return heard.isInOrder ? 0 : 4;
}

std::chrono::seconds wishedTime() {
    const char *text = std::getenv("DATACACHE_CLIENTS_SECONDS"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return std::chrono::seconds(text && *text ? std::strtol(text, nullptr, 10) : 1);
}

} // namespace

TEST(TenClients, HearEverythingOnceAndInOrder) {
    const Signal isServed;
    const Signal isReady;
    std::deque<Process> clients;
    for (int i = 0; i < 10; ++i)
        clients.emplace_back([&] { return listen(isServed, isReady); });
    const auto device = sim::create();
    device->keepRecords(false);
    const auto server = sim::serve(*device, simtest::options());
    for (size_t i = 0; i < clients.size(); ++i)
        isServed.give();
    for (size_t i = 0; i < clients.size(); ++i)
        ASSERT_TRUE(isReady.await());
    unsigned sent = 0;
    const auto end = std::chrono::steady_clock::now() + wishedTime();
    do {
        for (int i = 0; i < 500; ++i)
            device->deliver(kCode, {0, 0, 0}, std::to_string(sent++));
        ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    } while (std::chrono::steady_clock::now() < end);
    device->deliver(kCode, {0, 0, 0}, kEnd);
    for (Process &client : clients)
        EXPECT_EQ(client.wait(), 0);
    std::printf("%u notifications to each of ten clients\n", sent);
}
