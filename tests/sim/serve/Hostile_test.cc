// Clients that are none: what they send, and that nobody else is harmed.

#include <algorithm>
#include <fstream>
#include <future>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Peers.h"
#include "tests/sim/Stranger.h"
#include "tests/support/Wait.h"

using simtest::Bytes;
using simtest::callOf;
using simtest::hello;
using simtest::Json;
using simtest::Stranger;
using simtest::with;
using support::waitUntil;

namespace {

/// What this process takes of the machine's memory.
size_t residentBytes() {
    size_t whole = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

class Hostile : public testing::Test {
protected:
    Hostile() { simtest::goOverTheSocket(); }

    /// Waits until nobody but the good client is there, which is served as ever.
    void expectHarmless(const simtest::Client &good) const {
        EXPECT_TRUE(waitUntil([&] { return server->clientCount() == 1; }));
        EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    }

    static sim::ServerOptions impatient() {
        sim::ServerOptions options = simtest::options();
        options.patience = std::chrono::milliseconds(200);
        return options;
    }

    std::unique_ptr<sim::Simulator> device = sim::create();
    std::unique_ptr<sim::Server> server = sim::serve(*device, simtest::options());
};

} // namespace

TEST_F(Hostile, FramesThatAreNoneCloseTheirSender) {
    const simtest::Client good;
    const std::vector<Bytes> frames = {
        {0, 0, 0, 0},             // empty
        {0xFF, 0xFF, 0xFF, 0xFF}, // the largest length there is
        {0, 1, 0, 1},             // more than a greeting may have
        {0, 0, 0, 1, 0xFF},       // no CBOR
        {0, 0, 0, 1, 0x80},       // no map
        {0, 0, 0, 1, 0xA0},       // nothing in it
        {'G', 'E', 'T', ' ', '/', '\r', '\n'},
    };
    for (const Bytes &frame : frames) {
        const Stranger stranger;
        stranger.send(frame);
        EXPECT_TRUE(stranger.isClosed());
    }
    expectHarmless(good);
}

TEST_F(Hostile, MessagesThatNoClientSendsCloseTheirSender) {
    const simtest::Client good;
    const std::vector<Json> messages = {
        {{"call", 1}},
        {{"call", "hello"}},
        {{"number", 1}},
        with(callOf("get"), "key", "Oper.Switch.WWN"), // without a greeting
        with(hello(), "number", -1),
        with(hello(), "number", "one"),
        with(hello(), "host", 5),
        with(hello(), "text", nullptr),
        {{"taken", true}},
    };
    for (const Json &message : messages) {
        const Stranger stranger;
        stranger.send(message);
        EXPECT_TRUE(stranger.isClosed()) << message;
    }
    expectHarmless(good);
}

TEST_F(Hostile, CallsThatNoClientMakesCloseTheirSender) {
    const simtest::Client good;
    const std::vector<Json> calls = {
        hello(), // again
        callOf("no such call"),
        callOf("get"),
        with(callOf("get"), "key", 5),
        with(callOf("getBatch"), "keys", "Oper.Switch.WWN"),
        with(callOf("getBatch"), "keys", {1, 2}),
        with(with(callOf("setBatch"), "keys", {"a", "b"}), "values", {"c"}),
        with(callOf("register"), "codes", {"thirty-three"}),
        with(callOf("register"), "codes", std::vector<int>(5000, 33)),
        with(callOf("zoneset"), "name", nullptr),
        with(callOf("do"), "text", 5),
    };
    for (const Json &call : calls) {
        const Stranger stranger;
        EXPECT_TRUE(stranger.isTaken());
        stranger.send(call);
        EXPECT_TRUE(stranger.isClosed()) << call;
    }
    expectHarmless(good);
}

TEST_F(Hostile, AnotherVersionOfTheProtocolIsToldSo) {
    const Stranger stranger;
    stranger.send(with(hello(), "version", 2));
    EXPECT_EQ(stranger.receive().at("result"), simtest::kNotSupported);
    stranger.send(hello());
    EXPECT_EQ(stranger.receive().at("result"), 0);
}

TEST_F(Hostile, WhoHasNothingToSayIsSentAway) {
    server.reset();
    server = sim::serve(*device, impatient());
    const simtest::Client good;
    const Stranger silent;
    const Stranger halfLength;
    const Stranger halfBody;
    halfLength.send(Bytes{0, 0});
    halfBody.send(Bytes{0, 0, 0, 9, 0xA1});
    EXPECT_TRUE(silent.isClosed());
    EXPECT_TRUE(halfLength.isClosed());
    EXPECT_TRUE(halfBody.isClosed());
    expectHarmless(good); // who has not said anything for as long, but was heard before
}

TEST_F(Hostile, WhoBeginsAMessageAndDoesNotEndItIsSentAway) {
    server.reset();
    server = sim::serve(*device, impatient());
    const simtest::Client good;
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    stranger.send(Bytes{0, 1, 0, 0, 0xA1});
    EXPECT_TRUE(stranger.isClosed());
    expectHarmless(good);
}

TEST_F(Hostile, WhoDoesNotReadWhatItIsSentIsSentAway) {
    const simtest::Client good;
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    stranger.send(with(callOf("register"), "codes", {1}));
    EXPECT_EQ(stranger.receive().at("result"), 0);
    const std::string text(1395, 'x');
    EXPECT_TRUE(waitUntil([&] {
        for (int i = 0; i < 100; ++i)
            device->deliver(1, {i, 0, 0}, text);
        return server->clientCount() == 1;
    }));
    expectHarmless(good);
}

TEST_F(Hostile, AFloodOfCallsIsServedOneAfterAnother) {
    const simtest::Client good;
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    Bytes flood;
    for (int i = 0; i < 1000; ++i) {
        const Bytes frame = sim::frameOf(with(callOf("get"), "key", "Oper.Switch.OperState")).value();
        flood.insert(flood.end(), frame.begin(), frame.end());
    }
    stranger.send(flood);
    EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(stranger.receive().at("value"), "Online");
}

TEST_F(Hostile, MoreClientsThanTheServerTakesAreSentAway) {
    std::vector<std::unique_ptr<simtest::Client>> clients;
    for (int i = 0; i < 64; ++i)
        clients.push_back(std::make_unique<simtest::Client>());
    EXPECT_TRUE(Stranger().isClosed());
    EXPECT_EQ(server->clientCount(), 64U);
    std::string answer;
    EXPECT_FALSE(zovsim_ask(simtest::kSocket, "clock", &answer));
    EXPECT_EQ(answer, "the switch at /tmp/switch does not answer: it is gone, or has no room for more clients");
    EXPECT_EQ(clients.back()->get("Oper.Switch.OperState").value, "Online");
}

TEST_F(Hostile, WhoSaysNothingMakesRoomForWhoComes) {
    const simtest::Client good;
    std::vector<std::unique_ptr<Stranger>> strangers;
    for (int i = 0; i < 70; ++i)
        strangers.push_back(std::make_unique<Stranger>());
    EXPECT_TRUE(strangers.front()->isClosed());
    std::string answer;
    EXPECT_FALSE(zovsim_ask(simtest::kSocket, "clock", &answer));
    EXPECT_EQ(answer, "this switch does not take commands") << "whoever asks is heard";
    EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    strangers.clear();
    expectHarmless(good);
}

TEST_F(Hostile, CommandsThatAreTooManyAtOnceAreRefusedBeforeTheyAreSent) {
    std::string answer;
    EXPECT_FALSE(zovsim_ask(simtest::kSocket, std::string(70000, '#').c_str(), &answer));
    EXPECT_EQ(answer, "that is too much at once; allowed: some 64 KiB of commands");
}

TEST_F(Hostile, WhateverAStrangerSendsOthersAreServed) {
    const simtest::Client good;
    std::mt19937 random(7); // the same every time
    Bytes valid = sim::frameOf(hello()).value();
    const Bytes call = sim::frameOf(with(callOf("getBatch"), "keys", {"Oper.Switch.WWN", "Oper.X"})).value();
    valid.insert(valid.end(), call.begin(), call.end());
    for (int round = 0; round < 300; ++round) {
        Bytes bytes = valid;
        for (unsigned changes = 1 + random() % 4; changes > 0; --changes)
            bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        bytes.resize(1 + random() % bytes.size());
        const Stranger stranger;
        ASSERT_TRUE(stranger.isConnected);
        stranger.send(bytes);
    }
    expectHarmless(good);
}

TEST_F(Hostile, WhoGoesInTheMiddleOfAHangingCallHoldsNothing) {
    const simtest::Client good;
    sim::Fault fault;
    fault.call = "zov_smlSet";
    fault.delay = std::chrono::hours(1);
    device->addFault(fault);
    {
        const Stranger stranger;
        EXPECT_TRUE(stranger.isTaken());
        stranger.send(with(with(callOf("set"), "key", "Cmd.Switch.ReqAdmin"), "value", ""));
    }
    expectHarmless(good);
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(good.set("Cmd.Switch.ReqAdmin"), 0);
}

TEST_F(Hostile, WhoReadsItsNotificationsAndTakesNoneIsSentAway) {
    device->keepRecords(false);
    const simtest::Client good;
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    stranger.send(with(callOf("register"), "codes", {1}));
    EXPECT_EQ(stranger.receive().at("result"), 0);
    std::thread reader([&] { EXPECT_TRUE(stranger.isClosed()); });
    EXPECT_TRUE(waitUntil([&] {
        for (int i = 0; i < 1000; ++i)
            device->deliver(1, {i, 0, 0}, "");
        return server->clientCount() == 1;
    }));
    reader.join();
    expectHarmless(good);
    EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience)); // nobody waits for it either
}

TEST_F(Hostile, WhoTakesWhatWasNotSentIsSentAway) {
    const simtest::Client good;
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    stranger.send(Json{{"taken", true}});
    EXPECT_TRUE(stranger.isClosed());
    expectHarmless(good);
}

TEST_F(Hostile, WhatIsAnnouncedTakesNoMemoryBeforeItComes) {
    const simtest::Client good;
    const size_t before = residentBytes();
    std::vector<std::unique_ptr<Stranger>> strangers;
    for (int i = 0; i < 50; ++i) {
        strangers.push_back(std::make_unique<Stranger>());
        ASSERT_TRUE(strangers.back()->isTaken());
        strangers.back()->send(Bytes{0, 0xFF, 0xFF, 0xFF, 0xA1});
    }
    EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    EXPECT_LT(residentBytes(), before + (size_t{100} << 20));
    strangers.clear();
    expectHarmless(good);
}

TEST_F(Hostile, ABatchOfMoreKeysThanAnyClientHasIsRefused) {
    const simtest::Client good;
    const Json keys(100001, "k");
    for (const char *call : {"getBatch", "setBatch"}) {
        const Stranger stranger;
        ASSERT_TRUE(stranger.isTaken());
        stranger.send(with(with(callOf(call), "keys", keys), "values", keys));
        EXPECT_TRUE(stranger.isClosed());
    }
    expectHarmless(good);
}

/// Of large batches one is in progress at a time, however many are sent.
TEST_F(Hostile, LargeBatchesWaitForEachOther) {
    const simtest::Client good;
    sim::Fault fault;
    fault.call = "zov_smlGetBatch";
    fault.delay = std::chrono::hours(1);
    fault.times = -1;
    device->addFault(fault);
    const Stranger stranger;
    ASSERT_TRUE(stranger.isTaken());
    const Json call = with(callOf("getBatch"), "keys", Json(20000, "k"));
    const size_t before = residentBytes();
    std::thread sender([&] {
        for (int i = 0; i < 16; ++i)
            stranger.send(call); // which comes to a halt
    });
    ASSERT_TRUE(waitUntil([&] { return residentBytes() > before + (size_t{16} << 20); }));
    for (int round = 0; round < 200; ++round)
        EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    EXPECT_LT(residentBytes(), before + (size_t{150} << 20));
    shutdown(stranger.descriptor(), SHUT_RDWR);
    sender.join();
    expectHarmless(good);
}

TEST_F(Hostile, WhoGoesWhileItIsBeingConnectedIsNotWaitedFor) {
    const simtest::Client good;
    sim::Fault fault;
    fault.call = "zov_IPConnect";
    fault.delay = std::chrono::hours(1);
    fault.times = 2;
    const int rule = device->addFault(fault);
    const Stranger other;
    {
        const Stranger stranger;
        stranger.send(hello());
        other.send(hello());
        EXPECT_TRUE(waitUntil([&] { return simtest::isUsedUp(*device, rule); }));
    }
    EXPECT_TRUE(waitUntil([&] { return server->clientCount() == 2; }));
    EXPECT_EQ(good.get("Oper.Switch.OperState").value, "Online");
    server.reset(); // nor does the server wait at its end
    EXPECT_TRUE(other.isClosed());
}

/// Sixteen calls are in progress, so that nothing more of the client's is read: its end is seen all the same.
TEST_F(Hostile, WhoGoesWithAllItsCallsInProgressHoldsNothing) {
    const simtest::Client good;
    {
        const Stranger stranger;
        ASSERT_TRUE(stranger.isTaken());
        stranger.send(with(with(callOf("set"), "key", "Cmd.Switch.ReqAdmin"), "value", ""));
        EXPECT_EQ(stranger.receive().at("result"), 0);
        sim::Fault fault;
        fault.call = "zov_smlGetBatch";
        fault.delay = std::chrono::hours(1);
        fault.times = 16;
        const int rule = device->addFault(fault);
        for (int i = 0; i < 20; ++i)
            stranger.send(with(callOf("getBatch"), "keys", {"Oper.Switch.WWN"}));
        EXPECT_TRUE(waitUntil([&] { return simtest::isUsedUp(*device, rule); }));
        EXPECT_NE(device->adminModeHolder(), 0U);
    }
    expectHarmless(good);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

/// The switch takes five minutes over an answer, by a clock that stands: whoever waits for it and goes is not waited for.
TEST_F(Hostile, WhoGoesWhileItWaitsForASlowAnswerHoldsNothing) {
    const simtest::Client good;
    simtest::addChain(*device, 2);
    sim::Peer peer = device->peers().at(0);
    peer.topology.seconds = 300;
    device->changePeer(peer);
    device->setPace(sim::Pace::paused, 1);
    device->clearRecords();
    {
        const Stranger stranger;
        ASSERT_TRUE(stranger.isTaken());
        stranger.send(with(with(callOf("set"), "key", "Cmd.Switch.ReqAdmin"), "value", ""));
        EXPECT_EQ(stranger.receive().at("result"), 0);
        sim::Fault seen;
        seen.key = "Oper.TopologyAll.*";
        seen.action = [] {};
        seen.times = 2;
        const int rule = device->addFault(seen);
        stranger.send(with(callOf("get"), "key", "Oper.TopologyAll.2.PortEntries"));
        stranger.send(with(callOf("getBatch"), "keys", {"Oper.TopologyAll.2.PortEntries"}));
        EXPECT_TRUE(waitUntil([&] { return simtest::isUsedUp(*device, rule); }));
    }
    expectHarmless(good);
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(good.set("Cmd.Switch.ReqAdmin"), 0);
}

/// It asks for what its client held, and the client has gone in between, with another call still to be waited for.
TEST_F(Hostile, ACallInProgressOfAClientThatWentGetsItNothing) {
    const simtest::Client good;
    const auto ambush = [&](const char *call, std::shared_future<void> end) {
        sim::Fault fault;
        fault.call = call;
        fault.action = [end = std::move(end)] { end.wait(); };
        return device->addFault(fault);
    };
    const auto isMet = [&](int rule) { return simtest::isUsedUp(*device, rule); };
    std::promise<void> endOfGet;
    std::promise<void> endOfSet;
    {
        const Stranger stranger;
        ASSERT_TRUE(stranger.isTaken());
        const Json request = with(with(callOf("set"), "key", "Cmd.Switch.ReqAdmin"), "value", "");
        stranger.send(request);
        EXPECT_EQ(stranger.receive().at("result"), 0);
        const int get = ambush("zov_smlGet", endOfGet.get_future().share());
        const int set = ambush("zov_smlSet", endOfSet.get_future().share());
        stranger.send(with(callOf("get"), "key", "Oper.Switch.WWN"));
        stranger.send(request);
        EXPECT_TRUE(waitUntil([&] { return isMet(get) && isMet(set); }));
    }
    EXPECT_TRUE(waitUntil([&] { return device->adminModeHolder() == 0; }));
    device->clearRecords();
    endOfSet.set_value();
    EXPECT_TRUE(waitUntil([&] { return !device->records().empty(); }));
    EXPECT_EQ(good.set("Cmd.Switch.ReqAdmin"), 0);
    endOfGet.set_value();
    expectHarmless(good);
    EXPECT_EQ(device->adminModeHolder(), good.handle);
}
