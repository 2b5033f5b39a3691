#include "sim/Server.h"

#include <fstream>
#include <future>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tests/sim/Served.h"
#include "tests/sim/Zoning.h"
#include "tests/support/Wait.h"

using simtest::Client;
using simtest::goOverTheSocket;
using simtest::kNoConnection;
using simtest::kSocket;
using simtest::options;
using support::waitUntil;

namespace {

/// Why a switch cannot be served.
std::string refusal(sim::Simulator &device, const sim::ServerOptions &wanted) {
    try {
        sim::serve(device, wanted);
        return "served";
    } catch (const std::runtime_error &error) {
        return error.what();
    }
}

mode_t modeOf(const char *path) {
    struct stat status = {};
    return lstat(path, &status) == 0 ? status.st_mode : 0;
}

std::string asked(const char *command) {
    std::string answer;
    return (zovsim_ask(kSocket, command, &answer) ? "" : "refused: ") + answer;
}

} // namespace

TEST(Server, ServesAClientThatTheSocketIsNamedTo) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    const Client embedded;
    goOverTheSocket();
    const Client remote;
    EXPECT_EQ(remote.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
    EXPECT_NE(remote.handle, embedded.handle);
    EXPECT_EQ(server->clientCount(), 1U);
    EXPECT_EQ(device->connectionCount(), 2U);
    const std::vector<std::string> lines = simtest::linesOf(*device);
    const std::string line =
        "zov_smlGet(" + std::to_string(remote.handle) + ") = 0: Oper.Switch.WWN=\"100000C0DD00A1B2\"";
    EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1);
}

TEST(Server, MoreKeysOrCodesThanAnyClientNeedsAreRefusedAndTheClientStays) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    goOverTheSocket();
    const Client client;
    std::vector<SmlMessage> messages(100001);
    EXPECT_EQ(zov_smlGetBatch(client.handle, messages.data(), 100001), simtest::kBadArgument);
    EXPECT_EQ(zov_smlSetBatch(client.handle, messages.data(), 100001), simtest::kBadArgument);
    std::vector<zov_eventreg_s> codes(4097);
    const auto ignore = [](void *, zov_event_s *, void *) {};
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, ignore, nullptr, codes.data(), 4097), simtest::kBadArgument);
    EXPECT_EQ(zov_enRegisterForEventList(client.handle, ignore, nullptr, codes.data(), 4096), 0);
    EXPECT_EQ(server->clientCount(), 1U);
}

TEST(Server, NoServerIsNoSwitch) {
    goOverTheSocket();
    zov_handle_t handle = 55;
    EXPECT_EQ(zov_IPConnect("localhost", "cim", "", &handle), simtest::kNoSuchHost);
    EXPECT_EQ(handle, 55U);
}

TEST(Server, EmptyNameOfASocketMeansTheSwitchInTheProcess) {
    setenv("ZOVSIM_SOCKET", "", 1);
    const auto device = sim::create();
    const Client client;
    EXPECT_EQ(device->connectionCount(), 1U);
}

TEST(Server, OnlyTheUserMayConnect) {
    umask(0);
    const auto device = sim::create();
    sim::ServerOptions wanted = options();
    wanted.stateFile = "/tmp/state";
    const auto server = sim::serve(*device, wanted);
    EXPECT_EQ(modeOf(kSocket), static_cast<mode_t>(S_IFSOCK | 0600));
    EXPECT_EQ(modeOf("/tmp/switch.lock"), static_cast<mode_t>(S_IFREG | 0600));
    goOverTheSocket();
    EXPECT_EQ(simtest::commit(Client(), {}), simtest::allDone(0));
    EXPECT_EQ(modeOf("/tmp/state"), static_cast<mode_t>(S_IFREG | 0600));
    EXPECT_EQ(server->socketPath(), kSocket);
}

TEST(Server, TakesItsSocketAway) {
    const auto device = sim::create();
    sim::serve(*device, options());
    EXPECT_EQ(modeOf(kSocket), 0U);
}

TEST(Server, OneServerHoldsASocket) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    EXPECT_EQ(refusal(*device, options()), "/tmp/switch: a switch is served there already");
    goOverTheSocket();
    const Client client;
    EXPECT_EQ(client.connected, 0);
}

TEST(Server, WhatIsNoSocketStays) {
    std::ofstream(kSocket) << "somebody's";
    const auto device = sim::create();
    EXPECT_EQ(refusal(*device, options()), "/tmp/switch: there is something that is no socket");
    EXPECT_EQ(modeOf(kSocket) & S_IFMT, static_cast<mode_t>(S_IFREG));
    unlink(kSocket);
}

TEST(Server, PathsThatAreTooLongForASocketAreRefused) {
    const auto device = sim::create();
    sim::ServerOptions wanted;
    wanted.socketPath = "/tmp/" + std::string(200, 'x');
    EXPECT_NE(refusal(*device, wanted).find("at most 107 characters"), std::string::npos);
}

TEST(SocketPath, LiesInTheRunTimeDirectory) {
    setenv("XDG_RUNTIME_DIR", "/tmp", 1);
    EXPECT_EQ(sim::defaultSocketPath(), "/tmp/zovsim.socket");
}

TEST(SocketPath, OthersDirectoriesAreNotUsed) {
    unsetenv("XDG_RUNTIME_DIR");
    const std::string own = "/tmp/zovsim-" + std::to_string(geteuid());
    if (modeOf(("/run/user/" + std::to_string(geteuid())).c_str()) == 0) {
        EXPECT_EQ(sim::defaultSocketPath(), own + "/zovsim.socket");
        EXPECT_EQ(modeOf(own.c_str()), static_cast<mode_t>(S_IFDIR | 0700));
        ASSERT_EQ(chmod(own.c_str(), 0755), 0);
        EXPECT_THROW(sim::defaultSocketPath(), std::runtime_error);
    } else
        EXPECT_EQ(sim::defaultSocketPath(), "/run/user/" + std::to_string(geteuid()) + "/zovsim.socket");
}

TEST(Server, OneClientAmongThemAllHoldsAdminModeAndTheLock) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    const Client embedded;
    goOverTheSocket();
    const Client first;
    const Client second;
    EXPECT_EQ(simtest::send(first, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77"}), (std::vector<int32_t>{0, 0}));
    EXPECT_EQ(device->adminModeHolder(), first.handle);
    EXPECT_EQ(device->zoningLockHolder(), first.handle);
    EXPECT_EQ(second.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    EXPECT_EQ(embedded.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    EXPECT_EQ(first.set("Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(second.set("Cmd.Switch.ReqAdmin"), 0);
}

TEST(Server, WhatAnotherClientHoldsIsNotFreedByWhoConnects) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    device->holdZoningLockElsewhere(true);
    device->holdAdminModeElsewhere(true);
    goOverTheSocket();
    const Client first;
    const Client second;
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
    EXPECT_EQ(device->adminModeHolder(), sim::kOtherClient);
}

TEST(Server, ZoneSetsBecomeObjectsOfTheClient) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    goOverTheSocket();
    const Client client;
    void *zoneset = nullptr;
    ASSERT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset), 0);
    EXPECT_EQ(device->zoningObjects().zonesets, 1U); // the client's: server and client are one process here
    const sim::ZoningDatabase all = simtest::takeApart(zoneset);
    EXPECT_EQ(all.zones, simtest::orchard().zones);
    EXPECT_EQ(all.aliases, simtest::orchard().aliases);
    ASSERT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), 0);
    EXPECT_EQ(simtest::takeApart(zoneset), device->activeZoning());
    EXPECT_EQ(simtest::listedZonesets(client), (std::vector<std::string>{"north", "south"}));
}

TEST(Server, ACallThatHangsHoldsNobodyUp) {
    const auto device = sim::create();
    auto server = sim::serve(*device, options());
    goOverTheSocket();
    const Client slow;
    const Client other;
    sim::Fault fault;
    fault.call = "zov_smlSet";
    fault.delay = std::chrono::hours(1);
    device->addFault(fault);
    std::future<int32_t> hanging = std::async(std::launch::async, [&] { return slow.set("Cmd.Switch.ReqAdmin"); });
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(other.get("Oper.Switch.OperState").value, "Online");
        EXPECT_EQ(slow.get("Oper.Switch.OperState").value, "Online"); // its other threads, too
    }
    EXPECT_EQ(hanging.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    server.reset();
    EXPECT_EQ(hanging.get(), kNoConnection);
}

TEST(Server, EndsWithCallsInProgress) {
    const auto device = sim::create();
    auto server = sim::serve(*device, options());
    goOverTheSocket();
    const Client client;
    sim::Fault fault;
    fault.call = "zov_smlSet";
    fault.delay = std::chrono::hours(1);
    device->addFault(fault);
    std::future<int32_t> hanging = std::async(std::launch::async, [&] { return client.set("Cmd.Switch.ReqAdmin"); });
    server.reset();
    ASSERT_EQ(hanging.wait_for(simtest::kPatience), std::future_status::ready);
    EXPECT_EQ(hanging.get(), kNoConnection);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST(Server, CarriesOutCommandsAndTellsItsState) {
    const auto device = sim::create();
    sim::ServerOptions wanted = options();
    wanted.perform = [&](const std::string &command) {
        if (command != "fan 0 bad")
            throw std::runtime_error("no command '" + command + "'");
        device->set("Oper.Chassis.0.Fan.0", "Bad");
        return std::string("done");
    };
    wanted.dump = [&] { return "fan 0 " + device->get("Oper.Chassis.0.Fan.0"); };
    const auto server = sim::serve(*device, wanted);
    EXPECT_EQ(asked("fan 0 bad"), "done");
    EXPECT_EQ(asked(nullptr), "fan 0 Bad");
    EXPECT_EQ(asked("fan"), "refused: no command 'fan'");
}

TEST(Server, WithoutCommandsItRefusesThem) {
    EXPECT_EQ(asked("help"), "refused: no switch is served at /tmp/switch");
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    EXPECT_EQ(asked("help"), "refused: this switch does not take commands");
    EXPECT_EQ(asked(nullptr), "refused: this switch does not take commands");
}

TEST(Server, QuietMeansThatEveryClientHasTakenEverything) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    goOverTheSocket();
    Client first;
    Client second;
    std::promise<void> goOn;
    const std::shared_future<void> mayGoOn = goOn.get_future().share();
    second.inCallback([mayGoOn](void *, zov_event_s *) { mayGoOn.wait(); });
    ASSERT_EQ(first.registerFor({1}), 0);
    ASSERT_EQ(second.registerFor({1}), 0);
    for (int i = 0; i < 100; ++i)
        device->deliver(1, {i, 0, 0}, "text");
    EXPECT_EQ(first.events(100).size(), 100U);
    EXPECT_FALSE(device->waitUntilQuiet(std::chrono::milliseconds(1)));
    goOn.set_value();
    EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    const std::vector<zov_event_s> events = second.events(0);
    ASSERT_EQ(events.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(events[static_cast<size_t>(i)].source.number[0], i);
}

TEST(Server, EachOfTenClientsHearsEverythingOnce) {
    const auto device = sim::create();
    const auto server = sim::serve(*device, options());
    goOverTheSocket();
    std::vector<Client> clients(10);
    for (Client &client : clients)
        ASSERT_EQ(client.registerFor({1, 33}), 0);
    std::vector<std::future<void>> callers;
    for (const Client &client : clients)
        callers.push_back(std::async(std::launch::async, [&client] {
            for (int round = 0; round < 50; ++round)
                EXPECT_EQ(client.get("Oper.Switch.OperState").status, 0);
        }));
    for (int i = 0; i < 500; ++i)
        device->deliver(1, {i, 0, 0}, "text");
    for (std::future<void> &caller : callers)
        caller.get();
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    for (const Client &client : clients) {
        const std::vector<zov_event_s> events = client.events(0);
        ASSERT_EQ(events.size(), 500U);
        for (int i = 0; i < 500; ++i)
            EXPECT_EQ(events[static_cast<size_t>(i)].source.number[0], i);
    }
}

TEST(Server, ASwitchThatGoesFirstIsOff) {
    auto device = sim::create();
    const auto server = sim::serve(*device, options());
    goOverTheSocket();
    const Client client;
    device.reset();
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, simtest::kBadHandle);
    const Client late;
    EXPECT_EQ(late.connected, simtest::kNoSuchHost);
}
