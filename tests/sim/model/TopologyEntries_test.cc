#include "sim/model/TopologyEntries.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::linkOf;
using simtest::nameOf;
using simtest::peerOf;

namespace {

class TopologyEntries : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    const Client client;

    /// A peer in domain 2, linked.
    void addPeer(unsigned ports, const sim::TopologyService &service = {}) {
        sim::Peer peer = peerOf(2);
        peer.ports = ports;
        peer.topology = service;
        device->addPeer(peer);
        if (ports > 0)
            device->connect(linkOf(1, 20, 2, 0));
    }
    simtest::Answer count(unsigned domain) const {
        return client.get("Oper.TopologyAll." + std::to_string(domain) + ".PortEntries");
    }
    simtest::Answer entry(unsigned domain, unsigned number) const {
        return client.get("Oper.TopologyAll." + std::to_string(domain) + ".Entry." + std::to_string(number) +
                          ".PortWwn");
    }
};

} // namespace

TEST_F(TopologyEntries, ListEveryPortOfAPeer) {
    addPeer(256);
    EXPECT_EQ(count(2).value, "256");
    EXPECT_EQ(entry(2, 0).value, "200000C0DD990002");
    EXPECT_EQ(entry(2, 1).value, "200100C0DD990002");
    EXPECT_EQ(entry(2, 255).value, "20FF00C0DD990002");
    EXPECT_EQ(entry(2, 256).status, simtest::kNoSuchKey);
}

TEST_F(TopologyEntries, FollowTheNumberOfPorts) {
    addPeer(3);
    EXPECT_EQ(count(2).value, "3");
    EXPECT_EQ(entry(2, 3).status, simtest::kNoSuchKey);
    sim::Peer peer = peerOf(2);
    peer.ports = 4;
    device->changePeer(peer);
    EXPECT_EQ(count(2).value, "4");
    EXPECT_EQ(entry(2, 3).value, "200300C0DD990002");
}

TEST_F(TopologyEntries, OfTheLocalSwitchAreNamedAsItsPorts) {
    EXPECT_EQ(count(1).value, "24");
    for (unsigned port = 0; port < 24; ++port)
        EXPECT_EQ(entry(1, port).value, device->get("Oper.UserPort.0." + std::to_string(port) + ".WWN")) << port;
    EXPECT_EQ(entry(1, 24).status, simtest::kNoSuchKey);
}

TEST_F(TopologyEntries, OfTheLocalSwitchLeaveOutPortsThatAreNotThere) {
    device = sim::create("director-8");
    const Client there;
    const auto read = [&](const char *key) { return there.get(key); };
    EXPECT_EQ(read("Oper.TopologyAll.1.PortEntries").value, "64");
    device->removeBlade(2); // ports 16 to 31
    EXPECT_EQ(read("Oper.TopologyAll.1.PortEntries").value, "48");
    EXPECT_EQ(read("Oper.TopologyAll.1.Entry.15.PortWwn").value, device->get("Oper.UserPort.0.15.WWN"));
    EXPECT_EQ(read("Oper.TopologyAll.1.Entry.16.PortWwn").value, device->get("Oper.UserPort.0.32.WWN"));
    EXPECT_EQ(read("Oper.TopologyAll.1.Entry.48.PortWwn").status, simtest::kNoSuchKey);
}

TEST_F(TopologyEntries, OfACiscoSwitchCountFromOne) {
    sim::Peer peer = peerOf(2);
    peer.wwn = "2000000DEC00A1B2";
    peer.ports = 256;
    device->addPeer(peer);
    device->connect({simtest::kLocal, 20, peer.wwn, 0});
    EXPECT_EQ(entry(2, 0).value, "2001000DEC00A1B2");
    EXPECT_EQ(entry(2, 255).value, "2100000DEC00A1B2");
}

TEST_F(TopologyEntries, AreThereForSwitchesOfTheFabricOnly) {
    EXPECT_EQ(count(2).status, simtest::kNoSuchKey);
    device->addPeer(peerOf(3));
    EXPECT_EQ(count(3).status, simtest::kNoSuchKey);
    addPeer(24);
    device->disconnect(linkOf(1, 20, 2, 0)); // its record stays, its ports are not told
    EXPECT_EQ(count(2).status, simtest::kNoSuchKey);
    EXPECT_EQ(entry(2, 0).status, simtest::kNoSuchKey);
    EXPECT_EQ(count(0).status, simtest::kNoSuchKey);
    EXPECT_EQ(count(240).status, simtest::kNoSuchKey);
}

TEST_F(TopologyEntries, OfASlowPeerTakeTimeToCountAndNoneToRead) {
    addPeer(24, {11, true});
    const long before = device->uptime();
    EXPECT_EQ(count(2).value, "24");
    EXPECT_EQ(device->uptime(), before + 11);
    EXPECT_EQ(count(2).value, "24");
    EXPECT_EQ(device->uptime(), before + 22);
    EXPECT_EQ(entry(2, 5).value, "200500C0DD990002");
    EXPECT_EQ(count(1).value, "24");
    EXPECT_EQ(device->uptime(), before + 22);
    EXPECT_EQ(device->get("Oper.TopologyAll.2.PortEntries"), "24"); // looked at, not asked
    EXPECT_EQ(device->keys().empty(), false);
    EXPECT_EQ(device->uptime(), before + 22);
}

TEST_F(TopologyEntries, OfASlowPeerHoldUpABatchKeyByKey) {
    addPeer(24, {7, true});
    const long before = device->uptime();
    const std::vector<SmlMessage> messages = client.getBatch(
        {"Oper.TopologyAll.2.PortEntries", "Oper.TopologyAll.2.Entry.0.PortWwn", "Oper.TopologyAll.2.PortEntries"});
    EXPECT_STREQ(messages[0].value, "24");
    EXPECT_EQ(messages[1].status, 0);
    EXPECT_STREQ(messages[2].value, "24");
    EXPECT_EQ(device->uptime(), before + 14);
}

TEST_F(TopologyEntries, OfASilentPeerAreRefused) {
    addPeer(24, {0, false});
    const long before = device->uptime();
    EXPECT_EQ(count(2).status, simtest::kNoAnswer);
    EXPECT_EQ(entry(2, 0).status, simtest::kNoAnswer);
    EXPECT_EQ(entry(2, 23).status, simtest::kNoAnswer);
    EXPECT_EQ(entry(2, 24).status, simtest::kNoSuchKey);
    EXPECT_EQ(count(1).status, 0);
    EXPECT_EQ(device->uptime(), before);
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.2.WWN").value, nameOf(2)); // the database is the local switch's own
}

TEST_F(TopologyEntries, OfASilentPeerAreRefusedAfterItsTime) {
    addPeer(24, {10, false});
    const long before = device->uptime();
    EXPECT_EQ(count(2).status, simtest::kNoAnswer);
    EXPECT_EQ(device->uptime(), before + 10);
    EXPECT_EQ(entry(2, 0).status, simtest::kNoAnswer);
    EXPECT_EQ(device->uptime(), before + 10);
    device->changePeer(peerOf(2)); // it is well again
    EXPECT_EQ(count(2).value, "24");
    EXPECT_EQ(device->uptime(), before + 10);
}

TEST_F(TopologyEntries, TakeNoTimeInTransparentMode) {
    addPeer(24, {10, true});
    device->set("Config.Switch.TransparentMode", "True");
    const long before = device->uptime();
    EXPECT_EQ(count(2).status, simtest::kNotSupported);
    EXPECT_EQ(device->uptime(), before);
}

TEST_F(TopologyEntries, OfAPeerWithoutPortsAreNone) {
    sim::Peer peer = peerOf(2);
    device->addPeer(peer);
    peer.ports = 0;
    device->changePeer(peer);
    EXPECT_EQ(device->peers()[0].ports, 0U);
    EXPECT_THROW(device->connect(linkOf(1, 20, 2, 0)), std::invalid_argument);
}

TEST_F(TopologyEntries, AreReadOnlyToEverybody) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    for (const char *key : {"Oper.TopologyAll.1.PortEntries", "Oper.TopologyAll.1.Entry.0.PortWwn"}) {
        EXPECT_EQ(client.set(key, "1"), simtest::kReadOnly) << key;
        EXPECT_THROW(device->set(key, "1"), std::invalid_argument) << key;
    }
}

TEST_F(TopologyEntries, OfAFabricAsLargeAsCanBeAreAllThere) {
    for (unsigned domain = 2; domain <= 239; ++domain) {
        sim::Peer peer = peerOf(domain);
        peer.ports = 256;
        device->addPeer(peer);
        device->connect(linkOf(domain - 1, domain == 2 ? 20 : 1, domain, 0), sim::Notify::no);
    }
    size_t entries = 0;
    for (const std::string &key : device->keys())
        entries += key.rfind(".PortWwn") != std::string::npos;
    EXPECT_EQ(entries, 24U + 238U * 256U);
    for (unsigned port = 0; port < 256; ++port) {
        char name[17];
        std::snprintf(name, sizeof name, "20%02X00C0DD9900EF", port);
        EXPECT_EQ(entry(239, port).value, name);
    }
}
