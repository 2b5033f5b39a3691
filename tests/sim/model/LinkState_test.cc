#include "sim/model/LinkState.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::linkOf;
using simtest::nameOf;
using simtest::peerOf;

namespace {

constexpr const char *kList = "Oper.Eport.LsdbRecordList.255";

class LinkState : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    const Client client;

    /// Peers in these domains, each linked to the one before it.
    void addPeers(std::initializer_list<unsigned> domains) {
        unsigned hub = 1;
        for (const unsigned domain : domains) {
            device->addPeer(peerOf(domain));
            device->connect(linkOf(domain, 0, hub, 20));
            hub = domain;
        }
    }

    /// The records as clients find them one after another, and last the status that ended the walk.
    std::string walk() const {
        std::string found;
        simtest::Answer answer = client.get("Oper.Eport.FirstLsdbRecord");
        for (; answer.status == 0 && found.size() < 2000;
             answer = client.get("Oper.Eport.NextLsdbRecord." + answer.value))
            found += answer.value + " ";
        return found + "status " + std::to_string(answer.status);
    }
};

} // namespace

TEST_F(LinkState, OfASwitchAloneHasItsOwnRecord) {
    EXPECT_EQ(client.get(kList).value, "1");
    EXPECT_EQ(walk(), "1 status 24");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.WWN").value, simtest::kLocal);
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.Hops").value, "0");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.NumberOfLinks").value, "0");
    EXPECT_EQ(client.get("Oper.Eport.LsdbRecord.1.Link.0.LocalPort").status, simtest::kNoSuchKey);
}

TEST_F(LinkState, IsInTheOrderOfTheDomains) {
    addPeers({200, 3, 17});
    EXPECT_EQ(client.get(kList).value, "1,3,17,200");
    EXPECT_EQ(walk(), "1 3 17 200 status 24");
    device->set("Oper.Switch.DomainID", "18");
    EXPECT_EQ(client.get(kList).value, "3,17,18,200");
    EXPECT_EQ(walk(), "3 17 18 200 status 24");
}

TEST_F(LinkState, OfARecordEveryAttributeIsRead) {
    addPeers({7, 9});
    for (const auto &[key, value] : {std::pair{"WWN", nameOf(7)},
                                     {"Hops", "1"},
                                     {"NumberOfLinks", "2"},
                                     {"Link.0.LocalPort", "0"},
                                     {"Link.0.Neighbor", "1:20"},
                                     {"Link.1.LocalPort", "20"},
                                     {"Link.1.Neighbor", "9:0"}}) {
        const simtest::Answer answer = client.get(std::string("Oper.Eport.LsdbRecord.7.") + key);
        EXPECT_EQ(answer.status, 0) << key;
        EXPECT_EQ(answer.value, value) << key;
    }
}

TEST_F(LinkState, HasNothingToSayOfADomainWithoutARecord) {
    addPeers({7});
    device->addPeer(peerOf(8));
    for (const char *key :
         {"Oper.Eport.LsdbRecord.8.WWN", "Oper.Eport.LsdbRecord.0.WWN", "Oper.Eport.LsdbRecord.240.Hops",
          "Oper.Eport.LsdbRecord..WWN", "Oper.Eport.LsdbRecord.07.WWN", "Oper.Eport.LsdbRecord.8.NumberOfLinks",
          "Oper.Eport.NextLsdbRecord.8", "Oper.Eport.NextLsdbRecord.", "Oper.Eport.NextLsdbRecord.256",
          "Oper.Eport.LsdbRecord.7.Link.1.LocalPort", "Oper.Eport.LsdbRecord.7.Link.1.Neighbor",
          "Oper.Eport.LsdbRecord.8.Link.0.Neighbor", "Oper.Eport.LsdbRecord.7.Link..Neighbor",
          "Oper.Eport.LsdbRecord.7.Link.0", "Oper.Eport.LsdbRecordList", "Oper.Eport.LsdbRecordList.254",
          "Oper.Eport.LsdbRecordList.256"})
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << key;
}

TEST_F(LinkState, ListHoldsAsManyWholeDomainsAsFit255Characters) {
    simtest::addChain(*device, 239);
    std::string list = "1";
    for (unsigned domain = 2; domain <= 88; ++domain)
        list += "," + std::to_string(domain);
    EXPECT_EQ(list.size(), 254U);
    EXPECT_EQ(client.get(kList).value, list);
    EXPECT_EQ(walk().substr(walk().size() - 17), "238 239 status 24"); // the records are all there
}

TEST_F(LinkState, ListFillsTheLastOfThe255Characters) {
    std::string list = "1,10,11";
    addPeers({10, 11});
    for (unsigned domain = 100; domain <= 162; ++domain) {
        device->addPeer(peerOf(domain));
        device->connect(linkOf(domain == 100 ? 11 : domain - 1, 1, domain, 0));
        if (domain <= 161)
            list += "," + std::to_string(domain);
    }
    EXPECT_EQ(list.size(), 255U);
    EXPECT_EQ(client.get(kList).value, list);
    EXPECT_STREQ(std::string(client.getBatch({kList})[0].value).c_str(), list.c_str());
}

TEST_F(LinkState, IsReadOnlyToEverybody) {
    addPeers({7});
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    for (const char *key :
         {kList, "Oper.Eport.FirstLsdbRecord", "Oper.Eport.NextLsdbRecord.1", "Oper.Eport.LsdbRecord.7.WWN",
          "Oper.Eport.LsdbRecord.7.Hops", "Oper.Eport.LsdbRecord.7.NumberOfLinks",
          "Oper.Eport.LsdbRecord.7.Link.0.LocalPort", "Oper.Eport.LsdbRecord.7.Link.0.Neighbor"}) {
        const std::string before = device->get(key);
        EXPECT_EQ(client.set(key, "1"), simtest::kReadOnly) << key;
        EXPECT_THROW(device->set(key, "1"), std::invalid_argument) << key;
        EXPECT_EQ(device->get(key), before) << key;
    }
}

TEST_F(LinkState, ABatchThatSpansAChangeSeesOneOfItsSides) {
    addPeers({7});
    const std::vector<SmlMessage> messages = client.getBatch(
        {kList, "Oper.Eport.LsdbRecord.7.WWN", "Oper.Eport.LsdbRecord.8.WWN", "Oper.Eport.NextLsdbRecord.7"});
    EXPECT_STREQ(messages[0].value, "1,7");
    EXPECT_EQ(messages[1].value, nameOf(7));
    EXPECT_EQ(messages[2].status, simtest::kNoSuchKey);
    EXPECT_EQ(messages[3].status, simtest::kEndOfList);
}
