// What a large fabric costs: exchanges with the switch, one batch each. They grow with the switches that the link-state
// database's list names and with the ports that these tell of, and with nothing else. The list is one value of at most 255
// characters, which is 88 domains when they begin with 1, however large the fabric is.
#include <algorithm>
#include <array>
#include <chrono>
#include <numeric>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/CacheTest.h"

namespace {

constexpr unsigned kMostListed = 88;
constexpr unsigned kMostDomains = 239;
constexpr unsigned kLocalPortsRead = 128;

/// Exchanges of a refresh of the fabric: its name, its list, a record for every switch in the list, and for every one but
/// the local switch the number of its ports, and each port.
unsigned fabricExchanges(unsigned peers, unsigned ports) {
    return 2 + (1 + peers) + peers * (1 + ports);
}

/// Exchanges of the other areas: switch, chassis (its units, their states), blades (the number of slots, the only one's
/// sensors), ports (their number, each, the first one's name), accounts (three and the end of the list), zoning.
constexpr unsigned kOtherExchanges = 1 + 2 + 2 + (2 + kLocalPortsRead) + 4 + 1;

std::string nameOf(unsigned domain) {
    return fmt::format("100000C0DD770{:03X}", domain);
}

/// The local switch has domain 1, and enough ports to link every other switch of a fabric to it.
class Scale : public support::CacheTest {
protected:
    Scale() { theSwitch->set("Oper.Switch.MaxPorts", "255", sim::Notify::no); }

    /// Switches of domains 2, 3, ... join until there are so many. Ones without ports do not tell of any.
    void growTo(unsigned peers, unsigned ports, sim::Notify notify = sim::Notify::no) {
        for (; _peers < peers; ++_peers) {
            sim::Peer peer;
            peer.wwn = nameOf(_peers + 2);
            peer.domain = _peers + 2;
            peer.ports = std::max(ports, 1U);
            peer.topology.answers = ports != 0;
            theSwitch->set(fmt::format("Oper.UserPort.0.{}.OperState", _peers), "Online", sim::Notify::no);
            theSwitch->addPeer(peer);
            theSwitch->connect({support::kSwitchWwn, _peers, peer.wwn, 0}, notify);
        }
    }

    /// Reads the whole switch again, as the first pass does.
    void reload() {
        cache().updateAll();
        cache().localPortRefreshSet();
        timedPass();
    }

    void timedPass() {
        EXPECT_TRUE(theSwitch->waitUntilQuiet());
        const auto begin = std::chrono::steady_clock::now();
        pass();
        _time = std::chrono::steady_clock::now() - begin;
    }

    unsigned exchanges() const {
        const std::vector<sim::Record> records = theSwitch->records();
        return static_cast<unsigned>(std::count_if(records.begin(), records.end(), [](const sim::Record &record) {
            return record.call == "zov_smlGetBatch";
        }));
    }

    /// The last pass, in the test's report.
    void note(const char *what, unsigned switchCount) const {
        const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(_time);
        RecordProperty(fmt::format("{}_of_{}", what, switchCount), static_cast<int>(exchanges()));
        RecordProperty(fmt::format("{}_of_{}_milliseconds", what, switchCount), static_cast<int>(time.count()));
    }

    static unsigned switches() { return cache().getFabric(1)->getSwitchCount(); }

private:
    unsigned _peers = 0;
    std::chrono::steady_clock::duration _time{};
};

/// With this many ports each.
class ScaleOfPorts : public Scale, public testing::WithParamInterface<unsigned> {};

TEST_P(ScaleOfPorts, ExchangesGrowLinearlyWithTheSwitches) {
    const unsigned ports = GetParam();
    connect();
    pass();
    EXPECT_EQ(exchanges(), kOtherExchanges + fabricExchanges(0, ports));
    for (const unsigned listed : {1U, 11U, 22U, 44U, 87U}) {
        growTo(listed - 1, ports);
        reload();
        EXPECT_EQ(switches(), listed);
        EXPECT_EQ(exchanges(), kOtherExchanges + fabricExchanges(listed - 1, ports)) << listed << " switches";
        note("load", listed);

        // One more joins, and the whole fabric is read again; nothing else is.
        growTo(listed, ports, sim::Notify::yes);
        timedPass();
        EXPECT_EQ(switches(), listed + 1);
        EXPECT_EQ(exchanges(), fabricExchanges(listed, ports)) << listed + 1 << " switches";
        note("join", listed + 1);
    }
    reload();
    EXPECT_EQ(exchanges(), kOtherExchanges + fabricExchanges(kMostListed - 1, ports));
    note("load", kMostListed);
}

INSTANTIATE_TEST_SUITE_P(Ports, ScaleOfPorts, testing::Values(0, 16, 64, 256));

class LargestFabric : public Scale {
protected:
    static constexpr unsigned kPorts = 256;

    LargestFabric() { growTo(kMostDomains - 1, kPorts); }

    static std::vector<unsigned> domainsUpTo(unsigned last) {
        std::vector<unsigned> domains(last);
        std::iota(domains.begin(), domains.end(), 1U);
        return domains;
    }
};

TEST_F(LargestFabric, IsWalkedFromBeginningToEndWhileItsListIsCut) {
    EXPECT_EQ(theSwitch->get("Oper.Eport.LsdbRecordList.255"),
              fmt::format("{}", fmt::join(domainsUpTo(kMostListed), ",")));
    connect();
    std::vector<unsigned> walked;
    std::array<char, 256> record{};
    for (const char *at = get_first_lsdb_record(record.data()); at != nullptr;
         at = get_next_lsdb_record(record.data(), record.data())) {
        walked.push_back(static_cast<unsigned>(std::stoul(record.data())));
        EXPECT_EQ(get_lsdb_record_link_count(record.data()), walked.size() == 1 ? kMostDomains - 1 : 1U);
    }
    EXPECT_EQ(walked, domainsUpTo(kMostDomains));
}

TEST_F(LargestFabric, IsLoadedAsFarAsItIsListed) {
    connect();
    reload();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::fabric));
    EXPECT_EQ(exchanges(), kOtherExchanges + fabricExchanges(kMostListed - 1, kPorts));
    EXPECT_EQ(switches(), kMostListed);
    const FabricCache &fabric = *cache().getFabric(1);
    for (unsigned domain = 2; domain <= kMostListed; ++domain) {
        const SwitchCache *item = fabric.getSwitchByWwn(nameOf(domain));
        ASSERT_NE(item, nullptr) << domain;
        EXPECT_EQ(item->getDomainID(), domain);
        EXPECT_EQ(item->_num_ports, kPorts);
    }
    note("load", kMostDomains);
}

TEST_F(LargestFabric, ChangesShowAsFarAsTheListGoes) {
    connect();
    pass();
    theSwitch->removePeer(nameOf(kMostDomains));
    passAfterNotifications();
    EXPECT_EQ(exchanges(), fabricExchanges(kMostListed - 1, kPorts));
    EXPECT_THAT(events(), testing::ElementsAre(support::kUpdateComplete));
    EXPECT_EQ(switches(), kMostListed);

    // "2," makes room for ",89": a switch that was there all the time shows as a new one.
    theSwitch->removePeer(nameOf(2));
    passAfterNotifications();
    const auto tells = [](const char *event, const std::string &more) {
        return fmt::format("{} fabric={} {}", event, support::kSwitchWwn, more);
    };
    EXPECT_THAT(events(), testing::ElementsAre(tells("4: SwitchAdd", "switch=" + nameOf(89)),
                                               tells("5: SwitchRemove", "switch=" + nameOf(2)),
                                               tells("3: FabricChange", "added=false"),
                                               tells("3: FabricChange", "added=true"), support::kUpdateComplete));
    EXPECT_EQ(switches(), kMostListed);
}

} // namespace
