#include "sim/model/Fabric.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::deviceOf;
using simtest::entryOf;
using simtest::linkOf;
using simtest::nameOf;
using simtest::peerOf;

namespace {

constexpr const char *kList = "Oper.Eport.LsdbRecordList.255";
constexpr const char *kPrincipal = "Oper.Switch.WhoIsPrincipal";
constexpr const char *kDatabaseChanged = "7 link-state database changed";

std::string fabricOf(const char *switches, const std::string &principal) {
    return std::string("1 fabric has ") + switches + ", principal " + principal;
}

class Fabric : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({1, 7, 8, 49, 79, 80}), 0); }

    /// What was notified since the last time.
    std::vector<std::string> news() {
        EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
        const std::vector<std::string> all = simtest::shown(client.events(0));
        std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(_told), all.end());
        _told = all.size();
        return fresh;
    }
    using News = std::vector<std::string>;

    std::string list() const { return client.get(kList).value; }
    std::string hops(unsigned domain) const {
        return client.get("Oper.Eport.LsdbRecord." + std::to_string(domain) + ".Hops").value;
    }
    std::string principal() const { return client.get(kPrincipal).value; }

private:
    size_t _told = 0;
};

} // namespace

TEST_F(Fabric, APeerWithoutALinkIsInNoFabric) {
    device->addPeer(peerOf(2, 1));
    device->logIn(deviceOf(2, 0));
    EXPECT_EQ(list(), "1");
    EXPECT_EQ(principal(), simtest::kLocal);
    EXPECT_EQ(client.get("Oper.TopologyAll.2.PortEntries").status, simtest::kNoSuchKey);
    EXPECT_EQ(client.get("Oper.NameServerAll.2.FirstNsEntry").status, simtest::kNoSuchKey);
    EXPECT_EQ(news(), News());
}

TEST_F(Fabric, APeerThatJoinsIsAnnouncedWithItsDevicesInOrder) {
    device->addPeer(peerOf(2));
    device->logIn(deviceOf(2, 9));
    device->logIn(deviceOf(2, 3));
    device->connect(linkOf(1, 16, 2, 0));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("2 switches", simtest::kLocal),
                            "79 " + entryOf(2, 3) + ";" + entryOf(2, 9)}));
    EXPECT_EQ(list(), "1,2");
    for (const zov_event_s &event : client.events(3))
        for (const int32_t number : event.source.number)
            EXPECT_EQ(number, 0);
}

TEST_F(Fabric, APeerCutOffKeepsItsRecordUntilItComesBack) {
    simtest::addChain(*device, 3);
    device->logIn(deviceOf(3, 5), sim::Notify::no);
    device->disconnect(linkOf(2, 1, 3, 0));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("2 switches", simtest::kLocal), "80 " + entryOf(3, 5)}));
    EXPECT_EQ(list(), "1,2,3");
    EXPECT_EQ(hops(3), "255");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.3.WWN").value, nameOf(3));
    EXPECT_EQ(client.get("Oper.NameServerAll.3.FirstNsEntry").status, simtest::kNoSuchKey);
    device->connect(linkOf(3, 7, 2, 8));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("3 switches", simtest::kLocal), "79 " + entryOf(3, 5)}));
    EXPECT_EQ(hops(3), "2");
}

TEST_F(Fabric, RemovingAPeerTakesItsLinksItsDevicesAndItsRecord) {
    simtest::addChain(*device, 4);
    device->logIn(deviceOf(3, 5), sim::Notify::no);
    device->logIn(deviceOf(4, 6), sim::Notify::no);
    device->removePeer(nameOf(3));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("2 switches", simtest::kLocal),
                            "80 " + entryOf(3, 5) + ";" + entryOf(4, 6)}));
    EXPECT_EQ(list(), "1,2,4");
    EXPECT_EQ(hops(4), "255");
    EXPECT_EQ(device->links().size(), 1U);
    EXPECT_EQ(device->nameServer().back().switchWwn, nameOf(4));
    device->removePeer(nameOf(4)); // only its record is left to go
    EXPECT_EQ(news(), News{kDatabaseChanged});
    EXPECT_EQ(list(), "1,2");
    device->addPeer(peerOf(3)); // its port, its place in the name server and its links are free
    device->logIn(deviceOf(3, 5));
    device->connect(linkOf(2, 1, 3, 0));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("3 switches", simtest::kLocal), "79 " + entryOf(3, 5)}));
}

TEST_F(Fabric, RemovingAPeerThatNeverWasInTheFabricIsNoNews) {
    device->addPeer(peerOf(2));
    device->removePeer(nameOf(2));
    EXPECT_EQ(news(), News());
    EXPECT_TRUE(device->peers().empty());
}

TEST_F(Fabric, LastPeerGoneLeavesTheLocalSwitchAlone) {
    simtest::addChain(*device, 2);
    device->removePeer(nameOf(2));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("1 switch", simtest::kLocal)}));
}

TEST_F(Fabric, FabricsMergeInOneStep) {
    for (const unsigned domain : {10U, 11U, 12U})
        device->addPeer(peerOf(domain));
    device->connect(linkOf(10, 0, 11, 0));
    device->connect(linkOf(11, 1, 12, 0));
    device->connect(linkOf(10, 2, 12, 2));
    EXPECT_EQ(news(), News());
    device->connect(linkOf(1, 16, 12, 5));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("4 switches", simtest::kLocal)}));
    EXPECT_EQ(list(), "1,10,11,12");
    EXPECT_EQ(hops(12), "1");
    EXPECT_EQ(hops(10), "2");
    EXPECT_EQ(hops(11), "2");
}

TEST_F(Fabric, ALinkBesideAnotherChangesTheDatabaseAlone) {
    simtest::addChain(*device, 2);
    device->connect(linkOf(1, 21, 2, 7));
    EXPECT_EQ(news(), News{kDatabaseChanged});
    device->disconnect(linkOf(2, 7, 1, 21)); // the ends named the other way round
    EXPECT_EQ(news(), News{kDatabaseChanged});
    EXPECT_EQ(device->links().size(), 1U);
    EXPECT_EQ(hops(2), "1");
}

TEST_F(Fabric, ALinkBetweenPeersThatAreElsewhereIsNoNews) {
    device->addPeer(peerOf(2));
    device->addPeer(peerOf(3));
    device->connect(linkOf(2, 0, 3, 0));
    device->disconnect(linkOf(2, 0, 3, 0));
    EXPECT_EQ(news(), News());
}

TEST_F(Fabric, ChangesAreSilentWhenAsked) {
    device->addPeer(peerOf(2, 1));
    device->connect(linkOf(1, 16, 2, 0), sim::Notify::no);
    device->changePeer(peerOf(2, 200), sim::Notify::no);
    device->setPriority(254, sim::Notify::no);
    device->logIn(deviceOf(2, 4), sim::Notify::no);
    device->logOut(deviceOf(2, 4).portWwn, sim::Notify::no);
    device->disconnect(linkOf(1, 16, 2, 0), sim::Notify::no);
    device->removePeer(nameOf(2), sim::Notify::no);
    EXPECT_EQ(news(), News());
    EXPECT_EQ(list(), "1");
}

// ---- the principal -----------------------------------------------------------------------------------

TEST_F(Fabric, TheHighestPriorityMakesThePrincipal) {
    device->addPeer(peerOf(2, 127));
    device->connect(linkOf(1, 16, 2, 0));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("2 switches", nameOf(2))}));
    EXPECT_EQ(principal(), nameOf(2));
    device->setPriority(126);
    EXPECT_EQ(news(), News{fabricOf("2 switches", simtest::kLocal)});
    device->changePeer(peerOf(2, 1));
    EXPECT_EQ(news(), News{fabricOf("2 switches", nameOf(2))});
    device->removePeer(nameOf(2));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("1 switch", simtest::kLocal)}));
    EXPECT_EQ(principal(), simtest::kLocal);
}

TEST_F(Fabric, OfEqualPrioritiesTheLowestNameMakesThePrincipal) {
    sim::Peer low = peerOf(200);
    low.wwn = "0FFFFFC0DD00A1B2";
    device->addPeer(low);
    device->addPeer(peerOf(2));
    device->connect(linkOf(1, 16, 2, 0));
    EXPECT_EQ(principal(), simtest::kLocal);
    device->connect({low.wwn, 0, nameOf(2), 1});
    EXPECT_EQ(principal(), low.wwn);
    device->disconnect({low.wwn, 0, nameOf(2), 1});
    EXPECT_EQ(principal(), simtest::kLocal);
}

TEST_F(Fabric, APriorityThatDecidesNothingIsNoNews) {
    simtest::addChain(*device, 2);
    device->setPriority(1);
    device->changePeer(peerOf(2, 254));
    EXPECT_EQ(news(), News());
    EXPECT_EQ(device->peers()[0].priority, 254U);
}

TEST_F(Fabric, APeerElsewhereIsNoPrincipal) {
    device->addPeer(peerOf(2, 1));
    device->setPriority(254);
    EXPECT_EQ(principal(), simtest::kLocal);
    EXPECT_EQ(news(), News());
}

TEST_F(Fabric, APrincipalThatWasSetStandsUntilTheFabricIsAnother) {
    simtest::addChain(*device, 2);
    device->set(kPrincipal, nameOf(2));
    EXPECT_EQ(news(), News{std::string("1 Oper.Switch.WhoIsPrincipal is now ") + nameOf(2)});
    device->connect(linkOf(1, 21, 2, 7)); // the same switches as before
    device->logIn(deviceOf(2, 9));
    EXPECT_EQ(principal(), nameOf(2));
    news();
    device->addPeer(peerOf(3));
    device->connect(linkOf(1, 22, 3, 0));
    EXPECT_EQ(principal(), simtest::kLocal);
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("3 switches", simtest::kLocal)}));
    device->set(kPrincipal, nameOf(3));
    device->setPriority(127);
    EXPECT_EQ(principal(), simtest::kLocal);
}

// ---- who is who --------------------------------------------------------------------------------------

TEST_F(Fabric, ANewDomainOfTheLocalSwitchChangesTheDatabaseToo) {
    simtest::addChain(*device, 2);
    device->set("Oper.Switch.DomainID", "30");
    EXPECT_EQ(news(), (News{"49 Oper.Switch.DomainID is now 30", kDatabaseChanged}));
    EXPECT_EQ(list(), "2,30");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.2.Link.0.Neighbor").value, "30:20");
    EXPECT_EQ(client.get("Oper.NameServerAll.30.FirstNsEntry").value, "1E0000");
    EXPECT_EQ(client.get("Oper.TopologyAll.30.PortEntries").value, "24");
    device->set("Oper.Switch.DomainID", "30");
    device->set("Oper.Switch.DomainID", "31", sim::Notify::no);
    EXPECT_EQ(news(), News());
    EXPECT_EQ(list(), "2,31");
}

TEST_F(Fabric, ANewNameOfTheLocalSwitchKeepsItsLinksAndDevices) {
    simtest::addChain(*device, 2);
    device->set("Oper.Switch.WWN", "100000c0dd00ffff");
    EXPECT_EQ(news(), (News{"8 Oper.Switch.WWN is now 100000c0dd00ffff", kDatabaseChanged}));
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.WWN").value, "100000c0dd00ffff");
    EXPECT_EQ(device->links()[0].wwn, "100000c0dd00ffff");
    EXPECT_EQ(device->nameServer()[0].switchWwn, "100000c0dd00ffff");
    device->disconnect({"100000C0DD00FFFF", 20, nameOf(2), 0});
    EXPECT_TRUE(device->links().empty());
}

TEST_F(Fabric, TheLocalSwitchCannotTakeWhatAPeerIsKnownBy) {
    device->addPeer(peerOf(2));
    const std::vector<std::string> before = simtest::pictureOf(*device);
    try {
        device->set("Oper.Switch.DomainID", "2");
        FAIL() << "took the domain of a peer";
    } catch (const std::invalid_argument &error) {
        EXPECT_STREQ(error.what(), "'Oper.Switch.DomainID' cannot be '2'; another switch has it");
    }
    EXPECT_THROW(device->set("Oper.Switch.WWN", nameOf(2)), std::invalid_argument);
    EXPECT_THROW(device->set("Oper.Switch.WWN", "100000c0dd990002"), std::invalid_argument);
    EXPECT_EQ(simtest::pictureOf(*device), before);
    EXPECT_EQ(news(), News());
}

TEST_F(Fabric, APeersNewDomainMovesItsRecordAndItsAddresses) {
    simtest::addChain(*device, 3);
    device->logIn(deviceOf(2, 5), sim::Notify::no);
    sim::Peer peer = peerOf(2);
    peer.domain = 99;
    device->changePeer(peer);
    EXPECT_EQ(news(), News{kDatabaseChanged}); // the same switches and the same devices
    EXPECT_EQ(list(), "1,3,99");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.Link.0.Neighbor").value, "99:0");
    EXPECT_EQ(client.get("Oper.NameServerAll.99.FirstNsEntry").value, "630500");
    EXPECT_EQ(device->peers()[1].domain, 99U);
}

TEST_F(Fabric, PeersLinksAndDevicesAreListedInTheirOrders) {
    for (const unsigned domain : {9U, 4U, 7U})
        device->addPeer(peerOf(domain));
    device->connect(linkOf(9, 0, 7, 0));
    device->connect(linkOf(1, 16, 9, 1));
    device->logIn(deviceOf(9, 1));
    device->logIn(deviceOf(4, 20));
    device->logIn(deviceOf(4, 3));
    std::vector<unsigned> domains;
    for (const sim::Peer &peer : device->peers())
        domains.push_back(peer.domain);
    EXPECT_EQ(domains, (std::vector<unsigned>{4, 7, 9}));
    ASSERT_EQ(device->links().size(), 2U);
    EXPECT_EQ(device->links()[0].wwn, nameOf(9));
    EXPECT_EQ(device->links()[1].wwn, simtest::kLocal);
    EXPECT_EQ(device->links()[1].otherPort, 1U);
    const std::vector<sim::NameServerEntry> entries = device->nameServer();
    ASSERT_EQ(entries.size(), 16U + 3U);
    EXPECT_EQ(entries[15].switchWwn, simtest::kLocal);
    EXPECT_EQ(entries[16].portWwn, deviceOf(4, 3).portWwn);
    EXPECT_EQ(entries[17].portWwn, deviceOf(4, 20).portWwn);
    EXPECT_EQ(entries[18].nodeWwn, deviceOf(9, 1).nodeWwn);
}

TEST_F(Fabric, NamesAreTakenInEitherCaseAndKeptInUpperCase) {
    sim::Peer peer = peerOf(0xAB);
    peer.wwn = "100000c0dd9900ab";
    device->addPeer(peer);
    EXPECT_EQ(device->peers()[0].wwn, "100000C0DD9900AB");
    device->connect({"100000c0dd00a1b2", 16, "100000C0dd9900AB", 0});
    EXPECT_EQ(device->links()[0].wwn, simtest::kLocal);
    device->logIn({"100000c0dd9900ab", 3, "20000000000000aa", "21000000000000aa"});
    EXPECT_EQ(device->nameServer().back().portWwn, "21000000000000AA");
    device->logOut("21000000000000Aa");
    device->removePeer("100000c0DD9900ab");
    EXPECT_TRUE(device->peers().empty());
}

// ---- transparent mode --------------------------------------------------------------------------------

TEST_F(Fabric, InTransparentModeChangesAreSilentAndShowWhenItEnds) {
    device->set("Config.Switch.TransparentMode", "True");
    news();
    device->addPeer(peerOf(2, 1));
    device->connect(linkOf(1, 16, 2, 0));
    device->logIn(deviceOf(2, 3));
    device->logOut(deviceOf(2, 3).portWwn);
    device->setPriority(2);
    device->set("Oper.Switch.DomainID", "30");
    EXPECT_EQ(news(), News{"49 Oper.Switch.DomainID is now 30"});
    EXPECT_EQ(client.get(kList).status, simtest::kNotSupported);
    device->set("Config.Switch.TransparentMode", "False");
    EXPECT_EQ(list(), "2,30");
    EXPECT_EQ(principal(), nameOf(2));
}

TEST_F(Fabric, TransparentModeIsTheSettingOfASwitchThatHasTheFeature) {
    simtest::addChain(*device, 2);
    for (const char *key :
         {"Oper.Eport.LsdbRecordList.255", "Oper.Eport.FirstLsdbRecord", "Oper.Eport.NextLsdbRecord.1",
          "Oper.Eport.LsdbRecord.1.WWN", "Oper.Eport.LsdbRecord.1.Hops", "Oper.Eport.LsdbRecord.1.NumberOfLinks",
          "Oper.Eport.LsdbRecord.1.Link.0.LocalPort", "Oper.Eport.LsdbRecord.1.Link.0.Neighbor",
          "Oper.NameServerAll.1.FirstNsEntry", "Oper.NameServerAll.1.NextNsEntry.010000",
          "Oper.NameServerAll.1.NextNsEntry.010F00", "Oper.TopologyAll.1.PortEntries", "Oper.TopologyAll.2.PortEntries",
          "Oper.TopologyAll.1.Entry.0.PortWwn"}) {
        device->set("Config.Switch.TransparentMode", "True");
        EXPECT_EQ(client.get(key).status, simtest::kNotSupported) << key;
        device->set("Oper.Switch.TransparentModeFeature", "False");
        EXPECT_NE(client.get(key).status, simtest::kNotSupported) << key;
        device->set("Oper.Switch.TransparentModeFeature", "True");
        device->set("Config.Switch.TransparentMode", "False");
        EXPECT_NE(client.get(key).status, simtest::kNotSupported) << key;
    }
}

// ---- size --------------------------------------------------------------------------------------------

TEST_F(Fabric, Takes238PeersWhichIsEveryDomainThereIs) {
    simtest::addChain(*device, 239);
    EXPECT_EQ(device->peers().size(), 238U);
    EXPECT_EQ(hops(239), "238");
    for (const unsigned domain : {0U, 1U, 100U, 240U}) {
        sim::Peer peer = peerOf(domain);
        peer.wwn = "1000000000000001";
        EXPECT_THROW(device->addPeer(peer), std::invalid_argument) << domain;
    }
    device->disconnect(linkOf(100, 1, 101, 0));
    EXPECT_EQ(news(), (News{kDatabaseChanged, fabricOf("100 switches", simtest::kLocal)}));
    EXPECT_EQ(hops(101), "255");
}
