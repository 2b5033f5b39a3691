// Strangers that send what a client sends, with something wrong in it: the server lives, a good client is served as ever
// and hears everything once, and the server's memory stays where it was.
//
// For so many seconds, and from such a seed, as DATACACHE_FUZZ_SECONDS and DATACACHE_FUZZ_SEED say.

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Stranger.h"
#include "tests/support/Wait.h"

using simtest::Bytes;
using simtest::callOf;
using simtest::Json;
using simtest::Stranger;
using simtest::with;

/// AddressSanitizer, where it is at work, keeps less of what was freed: that is no growth.
extern "C" const char *__asan_default_options() { // NOLINT(bugprone-reserved-identifier): its name there
    return "quarantine_size_mb=4";
}

namespace {

unsigned long wished(const char *variable, unsigned long otherwise) {
    const char *text = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): before there is a thread
    return text && *text ? std::strtoul(text, nullptr, 10) : otherwise;
}

size_t residentBytes() {
    size_t whole = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

/// What a client says, one of each.
std::vector<Json> conversation() {
    const Json keys = {"Oper.Switch.WWN", "Oper.UserPort.0.1.OperState", "No.Such.Key"};
    return {simtest::hello(),
            with(callOf("register"), "codes", {1, 3, 33}),
            with(callOf("get"), "key", "Oper.Switch.WWN"),
            with(callOf("getBatch"), "keys", keys),
            with(with(callOf("set"), "key", "Cmd.Switch.ReqAdmin"), "value", ""),
            with(with(callOf("set"), "key", "Config.Snmp.SysDescr"), "value", "fuzz"),
            with(with(callOf("setBatch"), "keys", {"Cmd.Switch.RelAdmin"}), "values", {""}),
            callOf("zoningLimits"),
            callOf("activeZonesetName"),
            callOf("activeZoneset"),
            callOf("zonesetList"),
            with(callOf("zoneset"), "name", "north"),
            with(callOf("allZonesAndAliases"), "name", "all"),
            with(callOf("do"), "text", "help"),
            callOf("dump"),
            {{"taken", true}}};
}

class Fuzzer {
public:
    Fuzzer(unsigned long seed, uint32_t goodHandle) : _random(seed), _goodHandle(goodHandle) {}

    size_t below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(_random); }
    bool oneIn(size_t count) { return below(count) == 0; }

    /// What a stranger sends in all.
    std::vector<Bytes> frames() {
        std::vector<Json> messages = conversation();
        std::shuffle(messages.begin() + 1, messages.end(), _random);
        if (oneIn(4))
            std::shuffle(messages.begin(), messages.end(), _random);
        messages.resize(1 + below(messages.size()));
        std::vector<Bytes> frames;
        for (Json &message : messages) {
            if (oneIn(3))
                deform(message);
            Bytes frame = sim::frameOf(message).value();
            if (oneIn(3))
                deform(frame);
            frames.push_back(std::move(frame));
        }
        return frames;
    }

private:
    /// A value of any type, a huge or deep one at times.
    Json value() {
        const std::vector<Json> values = {nullptr,
                                          true,
                                          0,
                                          -1,
                                          INT64_MIN,
                                          UINT64_MAX,
                                          _goodHandle,
                                          "",
                                          std::string(300, 'x'),
                                          std::string("a\0b\xFF", 4),
                                          Json::array(),
                                          Json::array({1, "two", nullptr}),
                                          Json::object(),
                                          Json(1 + below(oneIn(20) ? 30000 : 100), "Oper.Switch.WWN"),
                                          Json::array({Json::array({Json::array({Json::array({1})})})})};
        return values[below(values.size())];
    }

    void deform(Json &message) {
        const std::vector<std::string> names = {"call", "number", "key",  "keys",  "value",  "values", "codes",
                                                "name", "text",   "host", "taken", "handle", "version"};
        const std::string &name = names[below(names.size())];
        if (oneIn(4))
            message.erase(name);
        else
            message[name] = value();
    }

    void deform(Bytes &frame) {
        const auto any = [&] { return static_cast<uint8_t>(below(256)); };
        const size_t at = below(frame.size());
        switch (below(7)) {
        case 0: // some bytes
            for (size_t count = 1 + below(4); count > 0; --count)
                frame[below(frame.size())] = any();
            break;
        case 1: // the length
            frame[below(sim::kLengthBytes)] = any();
            break;
        case 2: // the end is missing
            frame.resize(at + 1);
            break;
        case 3: // deeper than anybody goes
            frame = {0, 0, 1, 0};
            frame.resize(sim::kLengthBytes + 256, 0x81);
            break;
        case 4: // more items than there can be
            frame = {0,    0,    0,    9,    static_cast<uint8_t>(oneIn(2) ? 0x9B : 0xBB), any(), 0xFF, 0xFF, 0xFF,
                     0xFF, 0xFF, 0xFF, any()};
            break;
        case 5: // something in between
            frame.insert(frame.begin() + static_cast<std::ptrdiff_t>(at), 1 + below(40), any());
            break;
        default: // noise
            std::generate(frame.begin() + static_cast<std::ptrdiff_t>(at), frame.end(), any);
            break;
        }
    }

    std::mt19937_64 _random;
    const uint32_t _goodHandle;
};

/// A client that nobody may harm: served at once, and told everything in order, once.
class GoodClient {
public:
    GoodClient() {
        _client.inCallback([this](void *, zov_event_s *event) {
            if (event->code == 25 && std::to_string(_heard) != event->text)
                _isOutOfOrder = true;
            _heard += event->code == 25 ? 1 : 0;
        });
        EXPECT_EQ(_client.registerFor({25}), 0);
        _thread = std::thread([this] {
            while (!_isEnding) {
                if (_client.get("Oper.Switch.WWN").value != "100000C0DD00A1B2")
                    ++_failures;
                ++_calls;
            }
        });
    }
    GoodClient(const GoodClient &) = delete;
    GoodClient &operator=(const GoodClient &) = delete;
    ~GoodClient() { end(); }

    void end() {
        _isEnding = true;
        if (_thread.joinable())
            _thread.join();
    }
    uint32_t handle() const { return _client.handle; }
    unsigned heard() const { return _heard; }
    unsigned calls() const { return _calls; }
    unsigned failures() const { return _failures; }
    bool isOutOfOrder() const { return _isOutOfOrder; }

private:
    simtest::Client _client;
    std::atomic<unsigned> _heard{0};
    std::atomic<unsigned> _calls{0};
    std::atomic<unsigned> _failures{0};
    std::atomic<bool> _isOutOfOrder{false};
    std::atomic<bool> _isEnding{false};
    std::thread _thread;
};

/// Some read what comes, some shut one half, some just go.
void visit(Fuzzer &fuzzer) {
    const Stranger stranger;
    ASSERT_TRUE(stranger.isConnected);
    for (const Bytes &frame : fuzzer.frames())
        stranger.send(frame);
    if (fuzzer.oneIn(4)) {
        shutdown(stranger.descriptor(), SHUT_WR);
        EXPECT_TRUE(stranger.isClosed());
    }
}

} // namespace

TEST(Fuzz, WhateverStrangersSendAGoodClientIsServedAndMemoryStaysFlat) {
    const unsigned long seed = wished("DATACACHE_FUZZ_SEED", 20261121);
    const std::chrono::seconds time(wished("DATACACHE_FUZZ_SECONDS", 2));
    SCOPED_TRACE("DATACACHE_FUZZ_SEED=" + std::to_string(seed));
    const auto device = sim::create();
    device->keepRecords(false);
    sim::ServerOptions options = simtest::options();
    options.stateFile = "/tmp/state";
    options.perform = [](const std::string &command) { return "done: " + command; };
    options.dump = [] { return std::string(10000, 'd'); };
    const auto server = sim::serve(*device, options);
    simtest::goOverTheSocket();
    GoodClient good;
    Fuzzer fuzzer(seed, good.handle());
    unsigned rounds = 0;
    size_t settled = 0;
    const auto begin = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() < begin + time && !HasFailure()) {
        visit(fuzzer);
        device->deliver(25, {0, 0, 0}, std::to_string(rounds++));
        if (settled == 0 && std::chrono::steady_clock::now() > begin + time / 2)
            settled = residentBytes();
    }
    const size_t grown = std::max(residentBytes(), settled) - settled;
    EXPECT_TRUE(support::waitUntil([&] { return server->clientCount() == 1; }));
    EXPECT_TRUE(support::waitUntil([&] { return good.heard() == rounds; }));
    good.end();
    EXPECT_FALSE(good.isOutOfOrder());
    EXPECT_EQ(good.failures(), 0U);
    EXPECT_GT(good.calls(), 0U);
    constexpr size_t kKept = 3 * sizeof(zov_event_s); // the good client remembers what it heard
    EXPECT_LT(grown, (size_t{64} << 20) + rounds * kKept);
    std::printf("seed %lu: %u strangers, %u calls of the good client, %zu KB more in the second half\n", seed, rounds,
                good.calls(), grown / 1024);
}
