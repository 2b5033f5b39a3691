// What a client finds when its server goes and comes back.

#include <gtest/gtest.h>

#include "tests/sim/Served.h"
#include "tests/sim/Zoning.h"
#include "tests/support/Wait.h"

using simtest::Client;
using simtest::kNoConnection;
using support::waitUntil;

namespace {

class Revival : public testing::Test {
protected:
    Revival() { simtest::goOverTheSocket(); }

    void restart() {
        server.reset();
        server = sim::serve(*device, simtest::options());
    }

    std::unique_ptr<sim::Simulator> device = sim::create();
    std::unique_ptr<sim::Server> server = sim::serve(*device, simtest::options());
};

std::vector<int32_t> codesOf(const std::vector<zov_event_s> &events) {
    std::vector<int32_t> codes;
    codes.reserve(events.size());
    for (const zov_event_s &event : events)
        codes.push_back(event.code);
    return codes;
}

} // namespace

TEST_F(Revival, WithoutAServerEveryCallFailsAndLeavesItsArgumentsAlone) {
    Client client;
    ASSERT_EQ(client.registerFor({33}), 0);
    server.reset();
    char value[] = "x";
    char *text = nullptr;
    uint32_t size = 77;
    int32_t count = 77;
    char *names = nullptr;
    void *zoneset = &size;
    zov_fzs_zoninglimits_s limits = {};
    SmlMessage message = simtest::messageOf("Oper.Switch.WWN", "before");
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.WWN", &text, &size), kNoConnection);
    EXPECT_EQ(zov_smlSet(client.handle, "Cmd.Switch.ReqAdmin", value), kNoConnection);
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 1), kNoConnection);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 1), kNoConnection);
    EXPECT_EQ(client.registerFor({32}), kNoConnection);
    EXPECT_EQ(zov_fzsGetZoningLimitations(client.handle, &limits), kNoConnection);
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, value), kNoConnection);
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), kNoConnection);
    EXPECT_EQ(zov_fzsGetZonesetList(client.handle, &count, &names), kNoConnection);
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, "oak", &zoneset), kNoConnection);
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset), kNoConnection);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(size, 77U);
    EXPECT_EQ(count, 77);
    EXPECT_EQ(zoneset, &size);
    EXPECT_STREQ(value, "x");
    EXPECT_STREQ(message.value, "before");
    EXPECT_EQ(client.registration[0].result, -1);
}

TEST_F(Revival, TheSameHandleServesAgainAtTheNextCall) {
    const Client client;
    server.reset();
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, kNoConnection);
    server = sim::serve(*device, simtest::options());
    EXPECT_EQ(client.get("Oper.Switch.WWN").value, "100000C0DD00A1B2");
}

TEST_F(Revival, NotificationsFlowAgainWithoutACall) {
    Client client;
    ASSERT_EQ(client.registerFor({33}), 0);
    const unsigned before = device->connectionCount();
    restart();
    ASSERT_TRUE(waitUntil([&] { return device->connectionCount() > before; }));
    ASSERT_TRUE(waitUntil([&] {
        device->set("Oper.Chassis.0.Fan.0", device->get("Oper.Chassis.0.Fan.0") == "Bad" ? "Good" : "Bad");
        return !client.events(0).empty();
    }));
    EXPECT_EQ(client.events(1)[0].code, 33);
}

TEST_F(Revival, WhatAClientHeldIsFree) {
    const Client client;
    ASSERT_EQ(simtest::send(client, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77"}), (std::vector<int32_t>{0, 0}));
    restart();
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(client.set("Cmd.Zoning.FabricLock.77"), simtest::kAdminRequired);
}

TEST_F(Revival, LossAndReturnAreToldToThoseWhoRegisteredForThem) {
    Client client;
    Client other;
    ASSERT_EQ(client.registerFor({ZOV_EVENT_CONNECTION_LOST, ZOV_EVENT_CONNECTION_RESTORED}), 0);
    ASSERT_EQ(other.registerFor({33}), 0);
    restart();
    const std::vector<int32_t> expected = {ZOV_EVENT_CONNECTION_LOST, ZOV_EVENT_CONNECTION_RESTORED};
    EXPECT_EQ(codesOf(client.events(2)), expected);
    EXPECT_TRUE(other.events(0).empty());
}

TEST_F(Revival, AServerThatRefusesTheClientIsNoneUntilItTakesIt) {
    Client client;
    ASSERT_EQ(client.registerFor({33}), 0);
    server.reset();
    sim::Fault fault;
    fault.call = "zov_enRegisterForEventList";
    fault.result = 99;
    fault.times = -1;
    device->addFault(fault);
    server = sim::serve(*device, simtest::options());
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, kNoConnection);
    device->clearFaults();
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
}

TEST_F(Revival, AChildOfTheClientsProcessHasNoConnection) {
    const Client client;
    simtest::Process child([&] { return client.get("Oper.Switch.WWN").status; });
    EXPECT_EQ(child.wait(), kNoConnection);
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
}
