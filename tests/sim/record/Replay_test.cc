#include "sim/record/Replay.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "tests/sim/Zoning.h"
#include "tests/sim/record/Recorded.h"

using simtest::Client;
using simtest::kConnect;
using simtest::replayOf;

namespace {

/// Something of everything that a client does with a switch. `hands` is what happens to the switch meanwhile.
void converse(sim::Simulator &device, const std::function<void()> &hands) {
    Client client;
    client.registerFor({1, 3, 33, 300});
    client.get("Oper.Switch.DomainID");
    client.getBatch({"Oper.Switch.WWN", "Oper.X"});
    hands();
    EXPECT_TRUE(device.waitUntilQuiet(simtest::kPatience));
    client.set("Config.Switch.TransparentMode", "True");
    simtest::send(client, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77", "Cmd.Zoning.EditConfig",
                           "Cmd.Zoning.Zone.fig.Create", "Cmd.Zoning.SaveConfig", "Cmd.Zoning.FabricUnlock.77",
                           "Cmd.Switch.RelAdmin"});
    EXPECT_TRUE(device.waitUntilQuiet(simtest::kPatience));
    for (const std::string &name : simtest::listedZonesets(client)) {
        void *zoneset = nullptr;
        ASSERT_EQ(zov_fzsGetZoneset(client.handle, name.c_str(), &zoneset), 0);
        simtest::takeApart(zoneset);
    }
    void *zoneset = nullptr;
    ASSERT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), 0);
    simtest::takeApart(zoneset);
    zov_fzs_zoninglimits_s limits;
    zov_fzsGetZoningLimitations(client.handle, &limits);
    char name[65];
    zov_fzsGetActiveZonesetName(client.handle, name);
    EXPECT_STREQ(name, "north");
}

} // namespace

TEST(Replay, GivesAClientWhatTheSwitchGaveIt) {
    std::string recording;
    std::vector<std::string> original;
    {
        const auto device = sim::create();
        device->setZoning(simtest::orchard());
        device->activateZoneset("north");
        converse(*device, [&] {
            device->set("Oper.Chassis.0.Fan.1", "Bad");
            device->passTime(std::chrono::seconds(30));
        });
        recording = simtest::recordingOf(*device);
        original = simtest::numberlessLinesOf(*device);
    }
    const auto replay = sim::makeReplay(recording, simtest::kFileName);
    converse(replay->device(), [] {});
    EXPECT_EQ(simtest::numberlessLinesOf(replay->device()), original);
    EXPECT_THAT(replay->reports(), testing::ElementsAre("trouble.rec: the recording is at its end"));
    EXPECT_EQ(replay->device().uptime(), 3630);
    EXPECT_GT(original.size(), 60U);
}

TEST(Replay, IsTheSwitchThatNewConnectionsReach) {
    const auto device = sim::create();
    auto replay = replayOf({kConnect, "zov_smlGet(1) = 0: Oper.Switch.DomainID=\"99\""});
    const Client client;
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "99");
    replay.reset();
    EXPECT_EQ(client.get("Oper.Switch.DomainID").status, simtest::kBadHandle);
    const Client next;
    EXPECT_EQ(next.get("Oper.Switch.DomainID").value, "1");
}

TEST(Replay, RulesOfMisbehaviourComeBeforeTheRecording) {
    const auto replay = replayOf({kConnect, "zov_smlGetBatch(1) = 0: A=\"1\", B=\"2\"", "zov_smlGet(1) = 0: A=\"3\""});
    sim::Fault fault;
    fault.key = "B";
    fault.status = 23;
    replay->device().addFault(fault);
    const Client client;
    const std::vector<SmlMessage> messages = client.getBatch({"A", "B"});
    EXPECT_STREQ(messages[0].value, "1");
    EXPECT_EQ(messages[1].status, 23);
    fault.key = "A";
    fault.status.reset();
    fault.result = 9;
    replay->device().addFault(fault);
    EXPECT_EQ(client.get("A").status, 9);
    EXPECT_EQ(client.get("A").value, "3") << "a call that failed on the way did not reach the recording";
    EXPECT_EQ(replay->deviations(), 0U);
}

TEST(Replay, DeliversNotificationsThatNobodyRecorded) {
    const auto replay = replayOf({kConnect, simtest::kRegister});
    Client client;
    client.registerFor({33, 7});
    replay->device().deliver(12, {0, 0, 0}, "new");
    EXPECT_THAT(simtest::shown(client.events(1)), testing::ElementsAre("12 new"));
}

TEST(Replay, SaysWhereATextIsNoRecording) {
    EXPECT_THROW(sim::makeReplay("", "x.rec"), std::invalid_argument);
    const Client client;
    EXPECT_EQ(client.connected, 0) << "no half-made replay stands in the way";
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "1");
}

TEST(Replay, IsNotGivenToAProgramOfAnotherVersion) {
    EXPECT_EQ(zovsim_replay("zovlib recording, format 1\n", "x.rec", sim::kInterfaceVersion + 1), nullptr);
}
