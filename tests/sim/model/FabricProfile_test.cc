#include "sim/model/FabricProfile.h"

#include <map>
#include <set>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

/// How many records of the database are so many hops away.
std::map<std::string, int> hopsOf(const sim::Simulator &device, unsigned domains) {
    std::map<std::string, int> counts;
    for (unsigned domain = 1; domain <= domains; ++domain)
        ++counts[device.get("Oper.Eport.LsdbRecord." + std::to_string(domain) + ".Hops")];
    return counts;
}

/// How many records have so many links.
std::map<std::string, int> linkCountsOf(const sim::Simulator &device, unsigned domains) {
    std::map<std::string, int> counts;
    for (unsigned domain = 1; domain <= domains; ++domain)
        ++counts[device.get("Oper.Eport.LsdbRecord." + std::to_string(domain) + ".NumberOfLinks")];
    return counts;
}

using Counts = std::map<std::string, int>;

class FabricProfile : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(All, FabricProfile, testing::Values("fabric-2", "fabric-12", "fabric-60", "fabric-239"),
                         [](const testing::TestParamInfo<const char *> &profile) {
                             return std::string("Of") + (profile.param + sizeof "fabric");
                         });

} // namespace

TEST_P(FabricProfile, IsABoxOf24PortsWithUplinksAndADeviceAtEveryOtherOnlinePort) {
    const auto device = sim::create(GetParam());
    EXPECT_EQ(device->get("Oper.Switch.MaxPorts"), "24");
    std::set<unsigned> linked;
    for (const sim::Link &link : device->links())
        for (const auto &[wwn, port] : {std::pair(link.wwn, link.port), std::pair(link.otherWwn, link.otherPort)})
            if (wwn == device->get("Oper.Switch.WWN"))
                linked.insert(port);
    std::set<unsigned> withDevices;
    for (const sim::NameServerEntry &entry : device->nameServer())
        if (entry.switchWwn == device->get("Oper.Switch.WWN"))
            withDevices.insert(entry.port);
    EXPECT_EQ(withDevices.size(), 16U);
    for (unsigned port = 0; port < 24; ++port) {
        const bool isLinked = linked.count(port) != 0;
        const bool isOnline = device->get("Oper.UserPort.0." + std::to_string(port) + ".OperState") == "Online";
        EXPECT_EQ(isOnline, isLinked || withDevices.count(port) != 0) << port;
        EXPECT_FALSE(isLinked && withDevices.count(port) != 0) << port;
        EXPECT_EQ(device->get("Config.UserPort.0." + std::to_string(port) + ".Type") == "E", isLinked) << port;
    }
}

TEST_P(FabricProfile, IsHealthyAndAnswersForEverySwitch) {
    const auto device = sim::create(GetParam());
    const Client client;
    EXPECT_EQ(device->uptime(), 3600);
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    for (const sim::Peer &peer : device->peers()) {
        EXPECT_TRUE(peer.topology.answers);
        EXPECT_EQ(peer.topology.seconds, 0U);
        EXPECT_EQ(client.get("Oper.TopologyAll." + std::to_string(peer.domain) + ".PortEntries").value,
                  std::to_string(peer.ports));
    }
}

TEST_P(FabricProfile, HasEveryDeviceOnce) {
    const auto device = sim::create(GetParam());
    std::set<std::string> names;
    for (const sim::NameServerEntry &entry : device->nameServer()) {
        names.insert(entry.portWwn);
        names.insert(entry.nodeWwn);
    }
    EXPECT_EQ(names.size(), 2 * device->nameServer().size());
}

TEST(FabricProfile, Of2IsAPairWhoseLocalSwitchIsThePrincipal) {
    const auto device = sim::create("fabric-2");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecordList.255"), "1,2");
    EXPECT_EQ(device->get("Oper.Switch.WWN"), "100000C0DD02A001");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD02A001");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecord.2.WWN"), "100000C0DD02A002");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecord.1.Link.0.Neighbor"), "2:16");
    EXPECT_EQ(device->links().size(), 1U);
    EXPECT_EQ(device->peers()[0].ports, 24U);
    EXPECT_EQ(device->nameServer().size(), 32U);
}

TEST(FabricProfile, Of12IsTwoCoresAndTenEdges) {
    const auto device = sim::create("fabric-12");
    EXPECT_EQ(device->get("Oper.Switch.DomainID"), "3");
    EXPECT_EQ(device->get("Oper.Switch.WWN"), "100000C0DD12A003");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD12A001");
    ASSERT_EQ(device->peers().size(), 11U);
    for (const sim::Peer &peer : device->peers())
        EXPECT_EQ(peer.ports, peer.domain <= 2 ? 64U : 24U) << peer.domain;
    EXPECT_EQ(device->peers()[0].priority, 1U);
    EXPECT_EQ(device->peers()[10].wwn, "2000000DEC12A00C");
    EXPECT_EQ(device->get("Oper.TopologyAll.12.Entry.0.PortWwn"), "2001000DEC12A00C");
    EXPECT_EQ(device->links().size(), 1U + 10U * 2U);
    EXPECT_EQ(hopsOf(*device, 12), (Counts{{"0", 1}, {"1", 2}, {"2", 9}}));
    EXPECT_EQ(linkCountsOf(*device, 12), (Counts{{"2", 10}, {"11", 2}})); // every edge on both cores
    for (unsigned domain = 3; domain <= 12; ++domain) {
        std::set<std::string> cores;
        for (const char *link : {"0", "1"}) {
            const std::string neighbour =
                device->get("Oper.Eport.LsdbRecord." + std::to_string(domain) + ".Link." + link + ".Neighbor");
            cores.insert(neighbour.substr(0, neighbour.find(':')));
        }
        EXPECT_EQ(cores, (std::set<std::string>{"1", "2"})) << domain;
    }
    EXPECT_EQ(device->nameServer().size(), 10U * 16U);
}

TEST(FabricProfile, Of60IsFourCoresAndFiftySixEdgesOnTwoOfThem) {
    const auto device = sim::create("fabric-60");
    EXPECT_EQ(device->get("Oper.Switch.DomainID"), "5");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD60A001");
    ASSERT_EQ(device->peers().size(), 59U);
    for (const sim::Peer &peer : device->peers()) {
        EXPECT_EQ(peer.ports, peer.domain <= 4 ? 64U : 24U) << peer.domain;
        EXPECT_EQ(peer.wwn.substr(0, 14), "100000C0DD60A0") << peer.domain;
    }
    EXPECT_EQ(device->links().size(), 6U + 56U * 2U);
    EXPECT_EQ(linkCountsOf(*device, 60), (Counts{{"2", 56}, {"31", 4}})); // cores: three others and 28 edges each
    EXPECT_EQ(hopsOf(*device, 60), (Counts{{"0", 1}, {"1", 2}, {"2", 2 + 41}, {"3", 14}}));
    EXPECT_EQ(device->nameServer().size(), 56U * 16U);
}
