// The ports of the fabric's other switches, as its management server lists them.
#include "tests/datacache/refresh/FabricTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class FabricPorts : public FabricTest {
protected:
    /// The ports of the local switch are known, so the other switches' are asked for.
    void SetUp() override {
        FabricTest::SetUp();
        cache()._getPortInfo();
    }

    static std::string entry(unsigned domain, unsigned number) {
        return fmt::format("Oper.TopologyAll.{}.Entry.{}.PortWwn", domain, number);
    }
    static std::string entries(unsigned domain) { return fmt::format("Oper.TopologyAll.{}.PortEntries", domain); }
    static std::string portName(unsigned domain, unsigned port) {
        return fmt::format("2{:03X}00C0DD00B0{:02X}", port, domain);
    }

    /// The reads of ports in the last refresh.
    std::vector<std::string> portReads() const {
        std::vector<std::string> reads;
        for (const std::string &line : traffic()) {
            if (line.find("Oper.TopologyAll.") != std::string::npos)
                reads.push_back(line.substr(std::string("get ").size()));
        }
        return reads;
    }

    /// The rows of a switch's table: index and port number.
    static std::vector<std::pair<unsigned, unsigned>> rows(unsigned domain) {
        const SwitchCache &item = *switchOf(domain);
        std::vector<std::pair<unsigned, unsigned>> all;
        for (unsigned row = 0; row < item._num_ports; ++row)
            all.emplace_back(item._port_index.at(row), item._wwn_portno.at(row));
        return all;
    }
    using Rows = std::vector<std::pair<unsigned, unsigned>>;

    void serve(unsigned domain, unsigned seconds, bool answers) {
        for (sim::Peer peer : theSwitch->peers()) {
            if (peer.domain == domain) {
                peer.topology = {seconds, answers};
                theSwitch->changePeer(peer, sim::Notify::no);
            }
        }
    }
};

TEST_F(FabricPorts, AreReadEntryByEntryOfEverySwitchButTheLocalOne) {
    join(3, 2);
    join(5, 1);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portReads(), ElementsAre(entries(3), entry(3, 0), entry(3, 1), entries(5), entry(5, 0)));
    EXPECT_EQ(rows(3), (Rows{{0, 0}, {1, 1}}));
    EXPECT_EQ(switchOf(3)->getFirstPort().getWwn(), portName(3, 0));
    EXPECT_EQ(switchOf(3)->getNextPort(switchOf(3)->getFirstPort()).getWwn(), portName(3, 1));
    EXPECT_EQ(fabric().getSwitchByPortWwn(portName(5, 0)), switchOf(5));
}

TEST_F(FabricPorts, LinesSayWhoIsSkipped) {
    join(3, 1);
    refresh();
    switchOf(3)->_mserver_timeout = 1;
    refresh();
    const std::vector<std::string> lines = log();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 3, lines.end()),
              (std::vector<std::string>{
                  "DCACHE: _load_mserver_ports()",
                  std::string("DCACHE: _load_mserver_ports - skip local ") + support::kSwitchWwn,
                  fmt::format("DCACHE: _load_mserver_ports - skip {} due to mserver err timeout", nameOf(3)),
              }));
    EXPECT_THAT(portReads(), IsEmpty());
}

TEST_F(FabricPorts, AnIndexIsTheNumberOfTheEntryAndGapsAreLeftOut) {
    join(3, 5);
    lie(entry(3, 0), "0000000000000000"); // no name
    lie(entry(3, 2), portName(3, 9));     // another port
    lie(entry(3, 3), "4000000000000001"); // a name without a port field
    fail(entry(3, 4), 5, -1);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3), (Rows{{1, 1}, {2, 9}}));
    EXPECT_EQ(switchOf(3)->_port_wwn.tostring(), portName(3, 9));
    EXPECT_THAT(log(), testing::Not(Contains(testing::HasSubstr("sml command"))));
}

TEST_F(FabricPorts, ReplaceThoseOfTheRefreshBefore) {
    join(3, 3);
    refresh();
    sim::Peer peer = theSwitch->peers().front();
    peer.ports = 1;
    theSwitch->changePeer(peer, sim::Notify::no);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3), (Rows{{0, 0}}));
}

TEST_F(FabricPorts, OfWhichThereAreNoneLeaveTheTablesAlone) {
    join(3, 3);
    refresh();
    lie(entries(3), "0");
    ASSERT_TRUE(cache()._load_mserver_ports());
    EXPECT_EQ(rows(3).size(), 3U);
}

TEST_F(FabricPorts, BeyondTheTableAreReadButNotStored) {
    join(3, 256);
    lie(entries(3), "258");
    lie(entry(3, 256), portName(7, 256));
    lie(entry(3, 257), portName(7, 257));
    EXPECT_TRUE(refresh());
    EXPECT_EQ(portReads().size(), 1U + 258U);
    EXPECT_EQ(switchOf(3)->_num_ports, 256);
    EXPECT_EQ(rows(3).back(), (std::pair<unsigned, unsigned>{255, 255}));
    EXPECT_EQ(switchOf(3)->_port_wwn.tostring(), portName(3, 255));
}

TEST_F(FabricPorts, WhoseEntryNumberDoesNotFitAreNotStoredInAnEmptyTableEither) {
    join(3, 256);
    lie(entries(3), "257");
    for (unsigned number = 0; number < 256; ++number)
        lie(entry(3, number), "");
    lie(entry(3, 256), portName(3, 256));
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_num_ports, 0);
    EXPECT_EQ(switchOf(3)->_port_wwn, Wwn());
}

TEST_F(FabricPorts, CountIsADecimalNumberOf16Bits) {
    join(3, 2);
    lie(entries(3), "65537");
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portReads(), ElementsAre(entries(3), entry(3, 0)));
    theSwitch->clearFaults();
    lie(entries(3), "many");
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portReads(), ElementsAre(entries(3)));
}

// ---- refusals -------------------------------------------------------------------------------------------

TEST_F(FabricPorts, ThatAreRefusedCountAsAnErrorOfTheirSwitchAlone) {
    join(3, 1);
    join(5, 1);
    serve(3, 10, false); // slow, but not too slow
    EXPECT_TRUE(refresh());
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_mserver_errors, 2);
    EXPECT_EQ(switchOf(3)->_mserver_timeout, 0);
    EXPECT_EQ(rows(5).size(), 1U);
    EXPECT_THAT(log(), testing::Not(Contains(testing::HasSubstr("sml command"))));
    serve(3, 10, true);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_mserver_errors, 0);
    EXPECT_EQ(rows(3).size(), 1U);
}

TEST_F(FabricPorts, ThatAreRefusedAfterMoreThanTenSecondsAreNeverAskedForAgain) {
    join(3, 1);
    join(5, 1);
    serve(3, 11, false);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_mserver_timeout, 1);
    EXPECT_EQ(switchOf(3)->_mserver_errors, 0);
    serve(3, 0, true);
    EXPECT_TRUE(refresh());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portReads(), ElementsAre(entries(5), entry(5, 0)));
    EXPECT_EQ(switchOf(3)->_mserver_timeout, 1);
}

TEST_F(FabricPorts, AreAskedForAgainOfASwitchThatLeftAndCameBack) {
    join(3, 1);
    serve(3, 11, false);
    refresh();
    leave(3);
    refresh();
    join(3, 1);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3).size(), 1U);
}

TEST_F(FabricPorts, ThatComeSlowlyAreTaken) {
    join(3, 1);
    serve(3, 3600, true);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_mserver_timeout, 0);
    EXPECT_EQ(rows(3).size(), 1U);
}

TEST_F(FabricPorts, FailTheRefreshOnlyWhenAnExchangeFails) {
    join(3, 2);
    join(5, 1);
    for (const std::string &key : {entries(3), entry(3, 1)}) {
        cut(key);
        EXPECT_FALSE(refresh()) << key;
        EXPECT_EQ(portReads().back(), key);
        EXPECT_THAT(log().back(),
                    testing::MatchesRegex("DCACHE: Cache update failed: DataCache.cc:_load_mserver_ports:[0-9]+"));
    }
    EXPECT_TRUE(refresh());
}

TEST_F(FabricPorts, AreNotAskedForInTransparentMode) {
    join(3, 1);
    refresh();
    theSwitch->set("Config.Switch.TransparentMode", "True", sim::Notify::no);
    cache()._getSwitchInfo();
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portReads(), IsEmpty());
    EXPECT_EQ(log().back(), "DCACHE: _load_mserver_ports()");
}

TEST_F(FabricPorts, ATimeOutIsLookedAtBeforeWhetherTheSwitchIsLocal) {
    fabric().getSwitchByWwn(support::kSwitchWwn)->_mserver_timeout = 1;
    refresh();
    EXPECT_EQ(log().back(),
              fmt::format("DCACHE: _load_mserver_ports - skip {} due to mserver err timeout", support::kSwitchWwn));
}

TEST_F(FabricPorts, ACountOfNoneEndsTheErrorsToo) {
    join(3, 1);
    refresh();
    switchOf(3)->_mserver_errors = 4;
    lie(entries(3), "0");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_mserver_errors, 0);
}

TEST_F(FabricPorts, WithoutUsableNamesLeaveTheBaseNameAsItWas) {
    join(3, 2);
    refresh();
    lie(entry(3, 0), "");
    lie(entry(3, 1), "");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(switchOf(3)->_num_ports, 0);
    EXPECT_EQ(switchOf(3)->_port_wwn.tostring(), portName(3, 1));
}

TEST_F(FabricPorts, AreNotAddedToThoseOfARefreshThatHadNoDomains) {
    join(3, 2);
    refresh();
    lie(kList, "");
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3), (Rows{{0, 0}, {1, 1}}));
}

TEST_F(FabricPorts, WhoseEntryIsRefusedAreNotTakenWhateverItsValue) {
    join(3, 2);
    sim::Fault fault;
    fault.key = entry(3, 1);
    fault.status = 5;
    fault.value = portName(3, 1);
    theSwitch->addFault(fault);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3), (Rows{{0, 0}}));
}

TEST_F(FabricPorts, NumberMayBeTheLargestThatANameHolds) {
    join(3, 1);
    lie(entry(3, 0), portName(3, 4095));
    EXPECT_TRUE(refresh());
    EXPECT_EQ(rows(3), (Rows{{0, 4095}}));
}

TEST_F(FabricPorts, FailureHasItsNumber) {
    join(3, 1);
    cut(entries(3));
    EXPECT_FALSE(refresh());
    EXPECT_EQ(log().back(), failed("_load_mserver_ports", 2273));
}

class FabricPortsAtFirst : public FabricTest {};

TEST_F(FabricPortsAtFirst, AreNotAskedForUntilTheLocalPortsAreKnown) {
    join(3, 1);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(log().back(), "DCACHE: _load_mserver_ports()");
    EXPECT_THAT(traffic(), testing::Not(Contains(testing::HasSubstr("Topology"))));
}

} // namespace
