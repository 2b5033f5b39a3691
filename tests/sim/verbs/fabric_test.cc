#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/verbs/Commands.h"

using simtest::refusalOf;

namespace {

class FabricVerbs : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create("fabric-2");

    std::string tell(const std::string &command) { return sim::perform(*device, command); }
};

} // namespace

TEST_F(FabricVerbs, WhatIsNotSaidOfAPeerIsAsUsual) {
    tell("peer add 1000000000000009 domain=9");
    const sim::Peer usual;
    ASSERT_EQ(device->peers().size(), 2U);
    const sim::Peer peer = device->peers()[1];
    EXPECT_EQ(peer.priority, usual.priority);
    EXPECT_EQ(peer.ports, usual.ports);
    EXPECT_EQ(peer.topology.seconds, 0U);
    EXPECT_TRUE(peer.topology.answers);
}

TEST_F(FabricVerbs, AChangedPeerKeepsWhatIsNotSaid) {
    tell("peer add 1000000000000009 domain=9 priority=3 ports=7 slow=5 answers=no");
    const std::string before = "1000000000000009 domain=9 priority=3 ports=7 slow=5 answers=no";
    EXPECT_EQ(tell("peer list"), "100000C0DD02A002 domain=2 priority=128 ports=24\n" + before);
    tell("peer change 9");
    EXPECT_EQ(tell("peer list"), "100000C0DD02A002 domain=2 priority=128 ports=24\n" + before);
    tell("peer change 10:00:00:00:00:00:00:09 domain=8 answers=yes");
    EXPECT_EQ(tell("peer list"), "100000C0DD02A002 domain=2 priority=128 ports=24\n"
                                 "1000000000000009 domain=8 priority=3 ports=7 slow=5");
    tell("peer change 8 priority=4 ports=6 slow=0");
    EXPECT_EQ(tell("peer list"), "100000C0DD02A002 domain=2 priority=128 ports=24\n"
                                 "1000000000000009 domain=8 priority=4 ports=6");
}

TEST_F(FabricVerbs, APeerThatIsNotThereIsNeitherChangedNorRemoved) {
    EXPECT_EQ(refusalOf(*device, "peer change local ports=3"), "there is no peer local; 'peer list' lists them");
    EXPECT_EQ(refusalOf(*device, "peer change 1000000000000001"),
              "there is no peer 1000000000000001; 'peer list' lists them");
    EXPECT_EQ(refusalOf(*device, "peer remove 3"), "no switch has domain 3; there are 1, 2");
    EXPECT_EQ(refusalOf(*device, "peer remove 1000000000000001"), "there is no peer 1000000000000001");
    EXPECT_EQ(device->peers().size(), 1U);
}

TEST_F(FabricVerbs, ThePeersOfAListCanBeAddedAgain) {
    tell("peer add 1000000000000009 domain=9 priority=3 ports=7 slow=5 answers=no");
    const std::string list = tell("peer list");
    const auto other = sim::create();
    for (const std::string &line : simtest::linesIn(list))
        sim::perform(*other, "peer add " + line);
    EXPECT_EQ(sim::perform(*other, "peer list"), list);
}

TEST_F(FabricVerbs, LinksComeAndGo) {
    EXPECT_EQ(tell("link list"), "100000C0DD02A001:16 100000C0DD02A002:16");
    tell("link local:17 2:18");
    EXPECT_EQ(tell("link list"), "100000C0DD02A001:16 100000C0DD02A002:16\n100000C0DD02A001:17 100000C0DD02A002:18");
    EXPECT_EQ(refusalOf(*device, "link local:17 2:19"), "port 17 of switch 100000C0DD02A001 has a link already");
    tell("unlink " + simtest::linesIn(tell("link list"))[0]);
    EXPECT_EQ(tell("link list"), "100000C0DD02A001:17 100000C0DD02A002:18");
    EXPECT_EQ(refusalOf(*device, "unlink local:16 2:16"), "there is no such link");
}

TEST_F(FabricVerbs, ThePrincipalIsChosenByPriorityOrSet) {
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD02A001");
    tell("priority 200");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD02A002");
    tell("principal local");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD02A001");
    EXPECT_EQ(refusalOf(*device, "priority 255"), "a priority cannot be 255; allowed: 1 to 254");
}

TEST_F(FabricVerbs, DevicesLogInAndOut) {
    const std::string before = tell("login list");
    EXPECT_EQ(simtest::linesIn(before).size(), 32U);
    tell("login 2:20 node=20:00:00:24:00:00:00:01 port=2100002400000001");
    EXPECT_EQ(tell("login list"), before + "\n100000C0DD02A002:20 node=2000002400000001 port=2100002400000001");
    EXPECT_EQ(refusalOf(*device, "login 2:20 node=2000002400000001 port=2100002400000002"),
              "a device is logged in at port 20 of switch 100000C0DD02A002 already");
    tell("logout 21:00:00:24:00:00:00:01");
    EXPECT_EQ(tell("login list"), before);
    EXPECT_EQ(refusalOf(*device, "logout 2100002400000001"), "port 2100002400000001 is not logged in");
}

TEST_F(FabricVerbs, TheDevicesOfAListCanBeLoggedInAgain) {
    const std::string list = tell("login list");
    for (const sim::NameServerEntry &entry : device->nameServer())
        tell("logout " + entry.portWwn);
    EXPECT_EQ(tell("login list"), "");
    for (const std::string &line : simtest::linesIn(list))
        tell("login " + line);
    EXPECT_EQ(tell("login list"), list);
}
