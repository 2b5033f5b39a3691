#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/verbs/Commands.h"

using simtest::Client;
using simtest::refusalOf;

namespace {

class ClientVerbs : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    std::string tell(const std::string &commands) { return sim::perform(*device, commands); }
};

} // namespace

TEST_F(ClientVerbs, WhoTellsOfConnectionsAndHolders) {
    const std::string connection = "connection " + std::to_string(client.handle);
    EXPECT_EQ(tell("who"), "connections made: 1\nadmin mode: nobody\nzoning lock: nobody");
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Zoning.FabricLock.77"), 0);
    EXPECT_EQ(tell("who"), "connections made: 1\nadmin mode: " + connection + "\nzoning lock: " + connection);
    const Client another;
    tell("lock zoning elsewhere");
    EXPECT_EQ(tell("who"), "connections made: 2\nadmin mode: " + connection + "\nzoning lock: another client");
    tell("reboot");
    EXPECT_EQ(tell("who"), "connections made: 2\nadmin mode: nobody\nzoning lock: nobody");
}

TEST_F(ClientVerbs, ALockHeldElsewhereKeepsClientsOutUntilItIsFree) {
    tell("lock admin elsewhere");
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    tell("lock admin free\nlock zoning elsewhere");
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Zoning.FabricLock.77"), simtest::kLockBusy);
    tell("lock zoning free");
    EXPECT_EQ(client.set("Cmd.Zoning.FabricLock.77"), 0);
}

TEST_F(ClientVerbs, DeliveredNotificationsCarryWhatWasSaid) {
    ASSERT_EQ(client.registerFor({40}), 0);
    tell("deliver 40 1 -2 3 \"CPU too hot\"\ndeliver 73 0 0 0\nwait");
    const std::vector<zov_event_s> events = client.events(2);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(simtest::shown(events), (std::vector<std::string>{"40 CPU too hot", "73 "}));
    EXPECT_EQ(events[0].source.number[0], 1);
    EXPECT_EQ(events[0].source.number[1], -2);
    EXPECT_EQ(events[0].source.number[2], 3);
}

TEST_F(ClientVerbs, WaitingComplainsOfNotificationsThatAreNotTaken) {
    std::mutex held;
    client.inCallback([&](void *, zov_event_s *) { const std::lock_guard<std::mutex> lock(held); });
    ASSERT_EQ(client.registerFor({40}), 0);
    {
        const std::lock_guard<std::mutex> lock(held);
        tell("deliver 40 0 0 0");
        EXPECT_EQ(refusalOf(*device, "wait 1ms"), "some notifications have not been taken in time");
    }
    tell("wait 20s");
    EXPECT_EQ(client.events(0).size(), 1U);
}

TEST_F(ClientVerbs, RecordsAreListedFromTheLastOnes) {
    tell("records clear");
    EXPECT_EQ(tell("records"), "");
    client.getBatch({"Oper.Switch.DomainID"});
    client.set("Oper.None", "x");
    const std::string number = std::to_string(client.handle);
    const std::string first = "zov_smlGetBatch(" + number + ") = 0: Oper.Switch.DomainID=\"1\"";
    const std::string second = "zov_smlSet(" + number + ") = 5: Oper.None=\"x\" status 5";
    EXPECT_EQ(simtest::linesOf(*device), (std::vector<std::string>{first, second}));
    EXPECT_EQ(tell("records"), first + "\n" + second);
    EXPECT_EQ(tell("records 99"), first + "\n" + second);
    EXPECT_EQ(tell("records 1"), second);
    EXPECT_EQ(tell("records 0"), "");
}

TEST_F(ClientVerbs, RecordsAreKeptOrNot) {
    tell("records clear\nrecords keep no");
    client.getBatch({"Oper.Switch.DomainID"});
    EXPECT_EQ(tell("records"), "");
    tell("records keep yes");
    client.getBatch({"Oper.Switch.DomainID"});
    EXPECT_EQ(simtest::linesIn(tell("records")).size(), 1U);
}

TEST_F(ClientVerbs, MisusesAndObjectsAreTold) {
    simtest::forgiveMisuse();
    EXPECT_EQ(tell("misuses"), "");
    zov_ZoneDestroy(nullptr);
    EXPECT_EQ(simtest::linesIn(tell("misuses")), device->misuses());
    EXPECT_EQ(simtest::linesIn(tell("misuses")).size(), 1U);
    EXPECT_EQ(tell("objects"), "zone sets: 0, zones: 0, aliases: 0, members: 0");
    void *zone = zov_ZoneCreate("oak");
    EXPECT_EQ(tell("objects"), "zone sets: 0, zones: 1, aliases: 0, members: 0");
    zov_ZoneDestroy(zone);
}
