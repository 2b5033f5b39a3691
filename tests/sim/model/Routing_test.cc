#include "sim/model/Routing.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::linkOf;
using simtest::peerOf;

namespace {

class Routing : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    const Client client;

    void addPeers(unsigned last) {
        for (unsigned domain = 2; domain <= last; ++domain)
            device->addPeer(peerOf(domain));
    }
    std::string read(unsigned domain, const std::string &attribute) const {
        return client.get("Oper.Eport.LsdbRecord." + std::to_string(domain) + "." + attribute).value;
    }
    /// The hops of all records, in the order of the domains.
    std::string hops() const {
        std::string text;
        for (unsigned domain = 1; domain <= 239; ++domain)
            if (const std::string hops = read(domain, "Hops"); !hops.empty())
                text += (text.empty() ? "" : " ") + hops;
        return text;
    }
    /// The links of a record, each as "PORT>DOMAIN:PORT".
    std::string links(unsigned domain) const {
        std::string text;
        for (int link = 0; link < std::stoi(read(domain, "NumberOfLinks")); ++link) {
            const std::string key = "Link." + std::to_string(link);
            text +=
                (text.empty() ? "" : " ") + read(domain, key + ".LocalPort") + ">" + read(domain, key + ".Neighbor");
        }
        return text;
    }
};

} // namespace

TEST_F(Routing, HopsAreTheFewestLinksThatLeadToASwitch) {
    addPeers(6);
    device->connect(linkOf(1, 16, 2, 0));
    device->connect(linkOf(2, 1, 3, 0));
    device->connect(linkOf(3, 1, 4, 0));
    device->connect(linkOf(4, 1, 5, 0));
    EXPECT_EQ(hops(), "0 1 2 3 4");
    device->connect(linkOf(5, 1, 1, 17)); // a ring now
    EXPECT_EQ(hops(), "0 1 2 2 1");
    device->connect(linkOf(6, 0, 3, 9));
    EXPECT_EQ(hops(), "0 1 2 2 1 3");
    device->connect(linkOf(6, 1, 5, 9));
    EXPECT_EQ(hops(), "0 1 2 2 1 2");
    device->disconnect(linkOf(1, 16, 2, 0)); // the long way round
    EXPECT_EQ(hops(), "0 4 3 2 1 2");
}

TEST_F(Routing, WhatLiesBehindACutIsOutOfReach) {
    addPeers(5);
    device->connect(linkOf(1, 16, 2, 0));
    device->connect(linkOf(2, 1, 3, 0));
    device->connect(linkOf(3, 1, 4, 0));
    device->disconnect(linkOf(2, 1, 3, 0));
    EXPECT_EQ(hops(), "0 1 255 255"); // the last never was there
    EXPECT_EQ(links(2), "0>1:16");
    EXPECT_EQ(links(3), ""); // though its link to the next is up
    EXPECT_EQ(links(4), "");
    device->connect(linkOf(1, 20, 4, 20)); // from the other side
    EXPECT_EQ(hops(), "0 1 2 1");
    EXPECT_EQ(links(3), "1>4:0");
}

TEST_F(Routing, BothEndsTellOfALinkInTheOrderOfTheirPorts) {
    addPeers(3);
    device->connect(linkOf(1, 19, 2, 3));
    device->connect(linkOf(2, 11, 1, 16));
    device->connect(linkOf(3, 0, 1, 17));
    device->connect(linkOf(2, 2, 3, 23));
    EXPECT_EQ(links(1), "16>2:11 17>3:0 19>2:3");
    EXPECT_EQ(links(2), "2>3:23 3>1:19 11>1:16");
    EXPECT_EQ(links(3), "0>1:17 23>2:2");
}

namespace {

/// A candidate that is tried against the local switch, which has priority 128.
struct Candidate {
    const char *name;
    unsigned priority;
    bool wins;
};

void PrintTo(const Candidate &candidate, std::ostream *out) {
    *out << candidate.name << " of priority " << candidate.priority;
}

class Election : public testing::TestWithParam<Candidate> {};

INSTANTIATE_TEST_SUITE_P(
    All, Election,
    testing::Values(Candidate{"FFFFFFFFFFFFFFFF", 1, true}, Candidate{"FFFFFFFFFFFFFFFF", 127, true},
                    Candidate{"100000C0DD00A1B1", 128, true}, Candidate{"100000C0DD00A1B3", 128, false},
                    Candidate{"0000000000000001", 128, true}, Candidate{"2000000DEC00A1B2", 128, false},
                    Candidate{"0000000000000001", 129, false}, Candidate{"0000000000000001", 254, false}));

} // namespace

TEST_P(Election, GoesByPriorityAndThenByName) {
    const auto device = sim::create();
    sim::Peer peer;
    peer.wwn = GetParam().name;
    peer.domain = 2;
    peer.priority = GetParam().priority;
    device->addPeer(peer);
    device->connect({simtest::kLocal, 16, peer.wwn, 0});
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), GetParam().wins ? peer.wwn : simtest::kLocal);
}
