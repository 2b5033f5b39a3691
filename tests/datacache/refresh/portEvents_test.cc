// The port refresh: what it enters in the fabric, and what it tells.
#include "tests/datacache/refresh/PortsTest.h"

namespace {

using support::portName;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Ports = PortsTest;

// ---- the local switch in the fabric ---------------------------------------------------------------------

TEST_F(Ports, EntersTheLocalSwitchWithItsPorts) {
    theSwitch->set("Oper.Switch.DomainID", "97", sim::Notify::no);
    EXPECT_EQ(cache().getRootSwitchDomainID(), 0U);
    EXPECT_TRUE(refreshAll());
    const SwitchCache *local = localSwitch();
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(local->_local, 1U);
    EXPECT_EQ(local->getDomainID(), 97U);
    EXPECT_EQ(cache().getRootSwitchDomainID(), 97U);
    EXPECT_EQ(local->_port_wwn, portName(support::kSwitchWwn, 0));
    EXPECT_EQ(local->_num_ports, 24U);
    EXPECT_EQ(local->_mserver_timeout, 0U);
    EXPECT_EQ(local->_mserver_errors, 0U);
    EXPECT_EQ(local->_stale, 0U);
    EXPECT_EQ(local->getPortByWwn(portName(support::kSwitchWwn, 23).tostring())._port_index, 23U);
    EXPECT_THAT(log(), Contains("DCACHE: _processPort0Wwn() update local switch in fabric"));
    EXPECT_THAT(log(), Contains("DCACHE: _processPort0Wwn() adding port 23 with smlindex 23"));
}

TEST_F(Ports, TheDomainIdIsCutToEightBits) {
    lie("Oper.Switch.DomainID", "353");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(localSwitch()->getDomainID(), 97U);
    EXPECT_EQ(cache().getRootSwitchDomainID(), 97U);
}

TEST_F(Ports, TheDomainIdIsADecimalNumberReadAnewEachTime) {
    const std::vector<std::pair<std::string, unsigned>> rows = {{"97", 97},  {"010", 10}, {"0x10", 0},
                                                                {"-1", 255}, {"", 0},     {"7 or 8", 7}};
    for (const auto &[text, domain] : rows) {
        const int rule = lie("Oper.Switch.DomainID", text);
        EXPECT_TRUE(refreshAll());
        EXPECT_EQ(localSwitch()->getDomainID(), domain) << text;
        theSwitch->removeFault(rule);
    }
}

TEST_F(Ports, ASecondRefreshUpdatesTheSwitchThatIsThere) {
    refreshAll();
    SwitchCache *local = localSwitch();
    const Wwn base = local->_port_wwn;
    local->_local = 0;
    local->_stale = 1;
    local->_mserver_errors = 3;
    local->_mserver_timeout = 1;
    local->_status = 5;
    set(0, "OperState", "NotInstalled");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(localSwitch(), local);
    EXPECT_EQ(cache().getFabric(1)->getSwitchCount(), 1U);
    EXPECT_EQ(local->_port_wwn, base) << "though another port is the first now";
    EXPECT_FALSE(local->isLocal());
    EXPECT_EQ(local->_stale, 0U);
    EXPECT_EQ(local->_mserver_errors, 3U);
    EXPECT_EQ(local->_mserver_timeout, 1U);
    EXPECT_EQ(local->getStatus(), 5U);
    EXPECT_EQ(local->_num_ports, 23U);
}

TEST_F(Ports, DonorsAreSkippedWithoutAGap) {
    set(0, "Type", "Donor");
    for (unsigned port = 3; port < 24; ++port)
        set(port, "OperState", "NotInstalled");
    EXPECT_TRUE(refreshAll());
    const SwitchCache *local = localSwitch();
    ASSERT_EQ(local->_num_ports, 2U);
    EXPECT_EQ(local->_wwn_portno[0], 1U);
    EXPECT_EQ(local->_port_index[0], 1U);
    EXPECT_EQ(local->_wwn_portno[1], 2U);
    const auto lines = log();
    const std::vector<std::string> tail(lines.end() - 4, lines.end());
    EXPECT_THAT(tail, ElementsAre("DCACHE: _processPort0Wwn() update local switch in fabric",
                                  "DCACHE: _processPort0Wwn() skipping port 0 with smlindex 0",
                                  "DCACHE: _processPort0Wwn() adding port 0 with smlindex 1",
                                  "DCACHE: _processPort0Wwn() adding port 1 with smlindex 2"));
}

TEST_F(Ports, WithoutTheSwitchsNameTheFabricIsLeftAlone) {
    delete &cache();
    DataCache::init();
    cache().startEventMonitor(support::recordEvent);
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(cache().getFabric(1)->getSwitchCount(), 0U);
    EXPECT_TRUE(refreshAll());
    cache()._getSwitchInfo();
    set(5, "OperState", "Offline");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(cache().getFabric(1)->getSwitchCount(), 1U);
    EXPECT_THAT(events(), ElementsAre(statusChanged(5, 2, 10)));
}

// ---- events ---------------------------------------------------------------------------------------------

TEST_F(Ports, TheFirstRefreshRaisesNoEvents) {
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Ports, APortThatAppearsIsAdded) {
    set(5, "OperState", "NotInstalled");
    refreshAll();
    set(5, "OperState", "Offline");
    cache().localPortRefreshSet(5);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(portAdded(5)));
    EXPECT_EQ(log().back(), "DCACHE: _processPort0Wwn() send DCEventPortAdd for port 5, 200500C0DD00A1B2");
    refreshAll();
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Ports, APortThatChangesItsStatusIsTold) {
    refreshAll();
    set(5, "OperState", "Offline");
    cache().localPortRefreshSet(5);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(statusChanged(5, 2, 10)));
    EXPECT_EQ(log().back(), "DCACHE: _processPort0Wwn() send DCEventPortStatusChange for port 5, 200500C0DD00A1B2, "
                            "fabricWwn=100000C0DD00A1B2, currstatus=10, origstatus=2");
    refreshAll();
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(Ports, TheFabricInTheEventIsThePrincipalReadWithIt) {
    refreshAll();
    set(5, "OperState", "Offline");
    theSwitch->set("Oper.Switch.WhoIsPrincipal", "1000000000000001", sim::Notify::no);
    refreshAll();
    EXPECT_THAT(events(), ElementsAre("12: PortStatusChange switch=100000C0DD00A1B2 port=200500C0DD00A1B2 "
                                      "fabric=1000000000000001 [2]->[10]"));
}

TEST_F(Ports, APortThatDisappearsRaisesNothing) {
    refreshAll();
    set(5, "OperState", "NotInstalled");
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getRootSwitchWwn(), support::kSwitchWwn);
}

TEST_F(Ports, EventsComeInTheOrderOfThePorts) {
    set(9, "OperState", "NotInstalled");
    set(3, "Type", "Donor");
    refreshAll();
    set(9, "OperState", "Online");
    set(3, "OperState", "Offline");
    set(20, "OperState", "Downed");
    set(0, "OperState", "Downed");
    refreshAll();
    EXPECT_THAT(events(),
                ElementsAre(statusChanged(0, 2, 6), statusChanged(3, 2, 10), portAdded(9), statusChanged(20, 2, 6)))
        << "donors are told of too";
}

TEST_F(Ports, AStatusThatIsNotKnownIsTold) {
    refreshAll();
    const int rule = lie(support::portKey(5, "OperState"), "Burning");
    refreshAll();
    EXPECT_THAT(events(), ElementsAre(statusChanged(5, 2, 0)));
    theSwitch->removeFault(rule);
    refreshAll();
    EXPECT_THAT(events(), ElementsAre(statusChanged(5, 0, 2)));
}

TEST_F(Ports, DonorsAndPassThroughPortsAreToldOfLikeOthers) {
    for (const char *type : {"Donor", "PT"}) {
        set(5, "Type", type);
        set(5, "OperState", "NotInstalled");
        refreshAll();
        set(5, "OperState", "Online");
        refreshAll();
        EXPECT_THAT(events(), ElementsAre(portAdded(5))) << type;
        set(5, "OperState", "Offline");
        refreshAll();
        EXPECT_THAT(events(), ElementsAre(statusChanged(5, 2, 10))) << type;
    }
}

TEST_F(Ports, AnotherTypeAloneRaisesNothing) {
    refreshAll();
    set(5, "Type", "E");
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getPortType("5"), 4U);
}

TEST_F(Ports, NothingOfItIsCritical) {
    set(3, "Type", "Donor");
    set(5, "OperState", "NotInstalled");
    refreshAll();
    set(5, "OperState", "Online");
    set(6, "OperState", "Offline");
    refreshAll();
    EXPECT_EQ(events().size(), 2U);
    fail("Oper.Switch.MaxPorts");
    EXPECT_FALSE(refreshAll());
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

// ---- other switches -------------------------------------------------------------------------------------

class SecondNaming : public Ports {
protected:
    SecondNaming() : Ports("second-naming") {}
};

TEST_F(SecondNaming, PortsAreNumberedFromOne) {
    EXPECT_TRUE(refreshAll());
    const std::string name = cache().getRootSwitchWwn();
    const SwitchCache *local = cache().getFabric(1)->getSwitchByWwn(name);
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(local->_wwn_portno[0], 1U);
    EXPECT_EQ(local->_port_index[0], 0U);
    EXPECT_EQ(local->_port_wwn, portName(name, 1));
}

} // namespace
