#include "sim/model/NameServer.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::deviceOf;
using simtest::entryOf;
using simtest::linkOf;
using simtest::peerOf;

namespace {

constexpr size_t kLongestText = 1395;

class NameServer : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override {
        for (unsigned domain = 2; domain <= 3; ++domain) {
            sim::Peer peer = peerOf(domain);
            peer.ports = 256;
            device->addPeer(peer);
        }
        device->connect(linkOf(1, 20, 2, 0));
        ASSERT_EQ(client.registerFor({79, 80}), 0);
    }

    /// The entries of a domain as clients find them, and last the status that ended the walk.
    std::string walk(unsigned domain) const {
        const std::string scope = "Oper.NameServerAll." + std::to_string(domain);
        std::string found;
        simtest::Answer answer = client.get(scope + ".FirstNsEntry");
        for (; answer.status == 0 && found.size() < 9000; answer = client.get(scope + ".NextNsEntry." + answer.value))
            found += answer.value + " ";
        return found + "status " + std::to_string(answer.status);
    }

    std::vector<std::string> news() {
        EXPECT_TRUE(device->waitUntilQuiet(simtest::kPatience));
        return simtest::shown(client.events(0));
    }
    using News = std::vector<std::string>;
};

} // namespace

TEST_F(NameServer, ListsTheDevicesOfASwitchInTheOrderOfTheirPorts) {
    EXPECT_EQ(walk(2), "status 24");
    for (const unsigned port : {171U, 0U, 255U, 16U})
        device->logIn(deviceOf(2, port));
    EXPECT_EQ(walk(2), "020000 021000 02AB00 02FF00 status 24");
    device->logOut(deviceOf(2, 16).portWwn);
    EXPECT_EQ(walk(2), "020000 02AB00 02FF00 status 24");
}

TEST_F(NameServer, ListsTheDevicesOfTheLocalSwitchToo) {
    EXPECT_EQ(walk(1), "010000 010100 010200 010300 010400 010500 010600 010700 010800 010900 010A00 010B00 010C00 "
                       "010D00 010E00 010F00 status 24");
}

TEST_F(NameServer, KeepsTheSwitchesApart) {
    device->connect(linkOf(2, 1, 3, 1));
    device->logIn(deviceOf(2, 9));
    device->logIn(deviceOf(3, 8));
    EXPECT_EQ(walk(2), "020900 status 24");
    EXPECT_EQ(walk(3), "030800 status 24");
    EXPECT_EQ(client.get("Oper.NameServerAll.2.NextNsEntry.030800").status, simtest::kNoSuchKey);
}

TEST_F(NameServer, KnowsItsEntriesByTheirExactAddresses) {
    device->logIn(deviceOf(2, 0xAB));
    EXPECT_EQ(client.get("Oper.NameServerAll.2.NextNsEntry.02AB00").status, simtest::kEndOfList);
    for (const char *entry : {"", "02ab00", "02AB", "02AB01", "2AB00", "002AB00", "02AB000", "01AB00", "02AC00", "02A",
                              "02 B00", "021/00", "02%s00", "02AB00 "})
        EXPECT_EQ(client.get(std::string("Oper.NameServerAll.2.NextNsEntry.") + entry).status, simtest::kNoSuchKey)
            << "'" << entry << "'";
}

TEST_F(NameServer, AnswersForSwitchesOfTheFabricOnly) {
    device->logIn(deviceOf(3, 5));
    for (const char *key : {"Oper.NameServerAll.3.FirstNsEntry", "Oper.NameServerAll.3.NextNsEntry.030500",
                            "Oper.NameServerAll.0.FirstNsEntry", "Oper.NameServerAll.4.FirstNsEntry",
                            "Oper.NameServerAll.255.FirstNsEntry", "Oper.NameServerAll..FirstNsEntry"})
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << key;
    device->connect(linkOf(2, 1, 3, 1));
    EXPECT_EQ(walk(3), "030500 status 24");
}

TEST_F(NameServer, AnnouncesEachLogInAndLogOut) {
    device->logIn(deviceOf(2, 0xAB));
    device->logIn(deviceOf(1, 20));
    device->logOut(deviceOf(2, 0xAB).portWwn);
    device->logOut(deviceOf(1, 20).portWwn);
    EXPECT_EQ(news(), (News{"79 02AB00,20000011AB02ABAB,21000011AB02ABAB", "79 " + entryOf(1, 20),
                            "80 02AB00,20000011AB02ABAB,21000011AB02ABAB", "80 " + entryOf(1, 20)}));
}

TEST_F(NameServer, SaysNothingOfDevicesAtSwitchesElsewhere) {
    device->logIn(deviceOf(3, 5));
    device->logOut(deviceOf(3, 5).portWwn);
    device->logIn(deviceOf(2, 5), sim::Notify::no);
    device->logOut(deviceOf(2, 5).portWwn, sim::Notify::no);
    EXPECT_EQ(news(), News());
}

TEST_F(NameServer, ADeviceThatMovesIsLoggedOutAndInAgain) {
    device->logIn(deviceOf(2, 5));
    sim::NameServerEntry moved = deviceOf(2, 5);
    moved.port = 6;
    device->logOut(moved.portWwn);
    device->logIn(moved);
    EXPECT_EQ(walk(2), "020600 status 24");
    EXPECT_EQ(news().back(), "79 020600," + moved.nodeWwn + "," + moved.portWwn);
}

TEST_F(NameServer, SpreadsManyEntriesOverAsManyNotificationsAsTheyNeed) {
    constexpr unsigned inOne = 34; // entries of 40 characters, with ";" between them
    for (const unsigned count : {inOne, inOne + 1, 3 * inOne}) {
        device = sim::create();
        Client watcher;
        sim::Peer peer = peerOf(2);
        peer.ports = 256;
        device->addPeer(peer);
        std::vector<std::string> texts;
        for (unsigned port = 0; port < count; ++port) {
            device->logIn(deviceOf(2, port + 1));
            if (port % inOne == 0)
                texts.push_back(entryOf(2, port + 1));
            else
                texts.back() += ";" + entryOf(2, port + 1);
        }
        ASSERT_EQ(watcher.registerFor({79, 80}), 0);
        device->connect(linkOf(1, 20, 2, 0));
        device->disconnect(linkOf(1, 20, 2, 0));
        ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
        News expected;
        for (const char *code : {"79 ", "80 "})
            for (const std::string &text : texts)
                expected.push_back(code + text);
        EXPECT_EQ(simtest::shown(watcher.events(0)), expected);
        EXPECT_LE(texts[0].size(), kLongestText);
        EXPECT_GT(texts[0].size() + 41, kLongestText);
    }
}

TEST_F(NameServer, IsReadOnlyToEverybody) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    for (const char *key : {"Oper.NameServerAll.1.FirstNsEntry", "Oper.NameServerAll.1.NextNsEntry.010000"}) {
        EXPECT_EQ(client.set(key, "010500"), simtest::kReadOnly) << key;
        EXPECT_THROW(device->set(key, "010500"), std::invalid_argument) << key;
    }
    EXPECT_EQ(client.get("Oper.NameServerAll.1.FirstNsEntry").value, "010000");
}
