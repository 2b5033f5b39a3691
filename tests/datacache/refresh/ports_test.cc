// The port refresh: what it reads, what it keeps, what failures leave behind, and what it tells.
#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Ports.h"

namespace {

using support::portKey;
using support::portName;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class Ports : public support::CacheTest {
protected:
    explicit Ports(const char *profile = "fixed-24") {
        theSwitch.reset();
        theSwitch = sim::create(profile);
        support::levelPorts(*theSwitch);
    }

    void SetUp() override {
        connect();
        cache()._getSwitchInfo();
    }

    /// The refresh of all ports, or of those named.
    bool refreshAll() {
        cache().localPortRefreshSet();
        return refresh();
    }
    bool refresh() {
        forget();
        return cache()._getPortInfo() != 0;
    }

    void set(unsigned port, const std::string &attribute, const std::string &value) {
        support::setPort(*theSwitch, port, attribute, value);
    }

    int fail(const std::string &key, int32_t status = 5) {
        sim::Fault fault;
        fault.key = key;
        fault.status = status;
        return theSwitch->addFault(fault);
    }

    int lie(const std::string &key, const std::string &value) {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.times = -1;
        return theSwitch->addFault(fault);
    }

    static std::string failed(int line) {
        return fmt::format("DCACHE: Cache update failed: DataCache.cc:_getPortInfo:{}", line);
    }

    static std::string portAdded(unsigned port) {
        return fmt::format("10: PortAdd owner={} port={} origin=0", support::kSwitchWwn,
                           portName(support::kSwitchWwn, port).tostring());
    }
    static std::string statusChanged(unsigned port, int before, int now) {
        return fmt::format("12: PortStatusChange switch={0} port={1} fabric={0} [{2}]->[{3}]", support::kSwitchWwn,
                           portName(support::kSwitchWwn, port).tostring(), before, now);
    }

    /// The ports that the last refresh read.
    std::vector<unsigned> portsRead() const { return support::portsRead(traffic()); }

    static std::vector<std::string> usable() {
        std::vector<std::string> indexes;
        for (std::string index = cache().getFirstRootPortIndex(); !index.empty();
             index = cache().getNextRootPortIndex(index))
            indexes.push_back(index);
        return indexes;
    }

    static SwitchCache *localSwitch() { return cache().getFabric(1)->getSwitchByWwn(support::kSwitchWwn); }
};

// ---- what is read ---------------------------------------------------------------------------------------

TEST_F(Ports, OnePortCostsThreeExchanges) {
    refreshAll();
    cache().localPortRefreshSet(5);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(),
                ElementsAre("get Oper.Switch.MaxPorts",
                            "get Oper.UserPort.0.5.OperState Oper.UserPort.0.5.AdminState Config.UserPort.0.5.Type "
                            "Oper.UserPort.0.5.DDM.Supported Oper.UserPort.0.5.SFPData0_31 "
                            "Oper.UserPort.0.5.SFPData32_63 Oper.UserPort.0.5.SFPSerialNumber Oper.Switch.Nop",
                            "get Oper.UserPort.0.0.WWN Oper.Switch.DomainID Oper.Switch.WhoIsPrincipal"));
}

TEST_F(Ports, TheFirstRefreshReadsAllPortsInOrder) {
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), SizeIs(1 + 24 + 1));
    std::vector<unsigned> all;
    for (unsigned port = 0; port < 24; ++port)
        all.push_back(port);
    EXPECT_EQ(portsRead(), all);
    EXPECT_EQ(cache().getMaxRootPorts(), 24U);
}

TEST_F(Ports, ASuccessEmptiesTheSet) {
    refreshAll();
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portsRead(), IsEmpty());
}

TEST_F(Ports, MoreThan128PortsAreNotRead) {
    lie("Oper.Switch.MaxPorts", "200");
    theSwitch->set("Oper.Switch.MaxPorts", "200", sim::Notify::no);
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(cache().getMaxRootPorts(), 128U);
    EXPECT_THAT(portsRead(), SizeIs(128));
}

// ---- what is kept ---------------------------------------------------------------------------------------

TEST_F(Ports, KeepsStateTypeAndHardwareType) {
    set(3, "OperState", "Diagnostics");
    set(3, "Type", "E");
    theSwitch->set("Oper.Switch.Nop", "EXG", sim::Notify::no);
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(cache().getPortStatus("3"), 11U);
    EXPECT_EQ(cache().getPortType("3"), 4U);
    EXPECT_EQ(cache().getPortHWType("3"), 2U);
    EXPECT_EQ(cache().getPortStatus("4"), 2U);
    EXPECT_EQ(cache().getPortType("4"), 5U);
}

TEST_F(Ports, TheStatusComesFromBothStates) {
    set(1, "OperState", "Isolated");
    set(1, "AdminState", "Online");
    set(2, "OperState", "Isolated");
    set(2, "AdminState", "Offline");
    set(3, "OperState", "Downed");
    set(3, "AdminState", "Downed");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(cache().getPortStatus("1"), 6U);
    EXPECT_EQ(cache().getPortStatus("2"), 10U);
    EXPECT_EQ(cache().getPortStatus("3"), 10U);
}

TEST_F(Ports, AnAbsentPortKeepsItsTypesLosesItsTransceiverAndHasAStatus) {
    set(7, "DDM.Supported", "True");
    set(7, "Type", "GL");
    refreshAll();
    ASSERT_TRUE(cache().getTransceiverDDMSupported("7"));
    for (const char *state : {"PoweredOff", "NotInstalled"}) {
        set(7, "OperState", state);
        set(7, "Type", "E");
        theSwitch->set("Oper.Switch.Nop", "EXG", sim::Notify::no);
        EXPECT_TRUE(refreshAll());
        EXPECT_FALSE(cache().isPortPresent("7"));
        EXPECT_EQ(cache().getPortType("7"), 3U);
        EXPECT_EQ(cache().getPortHWType("7"), 1U);
        EXPECT_EQ(cache().getPortStatus("7"), 0U);
        EXPECT_FALSE(cache().getTransceiverDDMSupported("7"));
        EXPECT_EQ(cache().getPortHWType("8"), 2U);
    }
}

TEST_F(Ports, TheTransceiverIsReadWhereThereAreDiagnostics) {
    set(2, "DDM.Supported", "True");
    lie(portKey(2, "SFPData0_31"), "03040700");
    lie(portKey(2, "SFPData32_63"), "00000000000090650000");
    lie(portKey(2, "SFPSerialNumber"), "AB  12  ");
    EXPECT_TRUE(refreshAll());
    EXPECT_TRUE(cache().getTransceiverDDMSupported("2"));
    EXPECT_EQ(cache().getTransceiverFormat("2"), 0U);
    EXPECT_EQ(cache().getTransceiverVendorOUI("2"), "009065");
    EXPECT_EQ(cache().getTransceiverVendorSN("2"), "AB _12");
    EXPECT_FALSE(cache().getTransceiverDDMSupported("3"));
}

TEST_F(Ports, TheFormatIsReadAsADecimalNumber) {
    set(2, "DDM.Supported", "True");
    const std::vector<std::pair<std::string, int>> formats = {{"03", 0}, {"00", 2}, {"0D", 2}, {"11", 1}, {"3", 0},
                                                              {"", 2},   {"x3", 2}, {"0", 2},  {"30", 1}, {"0300", 0}};
    for (const auto &[text, format] : formats) {
        const int rule = lie(portKey(2, "SFPData0_31"), text);
        EXPECT_TRUE(refreshAll());
        EXPECT_EQ(cache().getTransceiverFormat("2"), format) << text;
        theSwitch->removeFault(rule);
    }
}

TEST_F(Ports, ShortTransceiverTextsGiveTheCharactersThatExist) {
    set(2, "DDM.Supported", "True");
    lie(portKey(2, "SFPSerialNumber"), "");
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"0123456789ABCDEF", "ABCDEF"}, {"0123456789ABCD", "ABCD"}, {"0123456789", ""}, {"01234", ""}, {"", ""}};
    for (const auto &[text, oui] : texts) {
        const int rule = lie(portKey(2, "SFPData32_63"), text);
        EXPECT_TRUE(refreshAll());
        EXPECT_EQ(cache().getTransceiverVendorOUI("2"), oui) << text;
        EXPECT_EQ(cache().getTransceiverVendorSN("2"), "");
        theSwitch->removeFault(rule);
    }
}

TEST_F(Ports, OnlyTheExactWordMeansDiagnostics) {
    set(2, "DDM.Supported", "True");
    for (const char *text : {"true", "TRUE", "True ", "1", ""}) {
        const int rule = lie(portKey(2, "DDM.Supported"), text);
        EXPECT_TRUE(refreshAll());
        EXPECT_FALSE(cache().getTransceiverDDMSupported("2")) << text;
        theSwitch->removeFault(rule);
    }
}

// ---- the number of ports --------------------------------------------------------------------------------

TEST_F(Ports, AShrinkingCountClearsPresenceWithoutReadingAndWithoutEvents) {
    theSwitch->set("Oper.Switch.MaxPorts", "32", sim::Notify::no);
    support::levelPorts(*theSwitch);
    refreshAll();
    ASSERT_TRUE(cache().isPortPresent("31"));
    theSwitch->set("Oper.Switch.MaxPorts", "24", sim::Notify::no);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portsRead(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(cache().isPortPresent("23"));
    for (unsigned port = 24; port < 32; ++port)
        EXPECT_FALSE(cache().isPortPresent(std::to_string(port))) << port;
}

TEST_F(Ports, AGrowingCountAddsPortsWhenTheyAreRead) {
    refreshAll();
    theSwitch->set("Oper.Switch.MaxPorts", "26", sim::Notify::no);
    support::levelPorts(*theSwitch);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty()) << "nobody named the new ports";
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), ElementsAre(portAdded(24), portAdded(25)));
}

// ---- failures -------------------------------------------------------------------------------------------

TEST_F(Ports, AFailedCountChangesNothingButTheRequest) {
    refreshAll();
    fail("Oper.Switch.MaxPorts");
    cache().updatePorts();
    EXPECT_FALSE(refreshAll());
    EXPECT_THAT(log(), Contains(failed(1646)));
    EXPECT_EQ(cache().getMaxRootPorts(), 24U);
    EXPECT_THAT(traffic(), SizeIs(1));
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portsRead(), SizeIs(24)) << "the set still names all ports";
}

TEST_F(Ports, ACountOfZeroRestoresThePictureAndAsksAgain) {
    refreshAll();
    for (const char *text : {"0", "", "none", "65536"}) {
        const int rule = lie("Oper.Switch.MaxPorts", text);
        forget();
        cache().updatePorts();
        pass();
        EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports));
        EXPECT_THAT(log(), Contains(failed(1659))) << text;
        EXPECT_EQ(cache().getMaxRootPorts(), 24U);
        EXPECT_TRUE(cache().isPortPresent("0"));
        theSwitch->removeFault(rule);
        pass();
        EXPECT_THAT(log(), Contains("DCACHE: Updating ports cache")) << "the request stayed";
        EXPECT_TRUE(cache().isAreaGood(DataCacheArea::ports));
    }
}

TEST_F(Ports, AFailureAtAnyPortRestoresThePicture) {
    set(0, "DDM.Supported", "True");
    refreshAll();
    for (unsigned failing = 0; failing < 24; ++failing) {
        for (unsigned port = 0; port < 24; ++port) {
            set(port, "OperState", "Offline");
            set(port, "Type", "E");
        }
        set(1, "DDM.Supported", "True");
        fail(portKey(failing, "AdminState"));
        EXPECT_FALSE(refreshAll());
        EXPECT_THAT(log(), Contains(failed(1692))) << failing;
        EXPECT_THAT(portsRead(), SizeIs(failing + 1));
        EXPECT_THAT(events(), IsEmpty());
        for (unsigned port = 0; port < 24; ++port) {
            EXPECT_EQ(cache().getPortStatus(std::to_string(port)), 2U) << port;
            EXPECT_EQ(cache().getPortType(std::to_string(port)), 5U) << port;
        }
        EXPECT_EQ(cache().getTransceiverDDMSupported("1"), failing > 1) << "transceivers read before are new";

        support::levelPorts(*theSwitch);
        set(0, "DDM.Supported", "True");
        EXPECT_TRUE(refresh());
        EXPECT_THAT(portsRead(), SizeIs(24)) << "the set still named them";
        EXPECT_THAT(events(), IsEmpty());
    }
}

TEST_F(Ports, AfterAFailedPortTheRequestIsOffUntilSomethingAsksAgain) {
    refreshAll();
    fail(portKey(0, "OperState"));
    cache().localPortRefreshSet();
    cache().updatePorts();
    pass();
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports));
    pass();
    EXPECT_THAT(log(), Not(Contains("DCACHE: Updating ports cache")));
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports));
    cache().updatePorts();
    pass();
    EXPECT_TRUE(cache().isAreaGood(DataCacheArea::ports));
    EXPECT_THAT(portsRead(), SizeIs(24));
}

TEST_F(Ports, AFailureOfTheLastReadKeepsThePortsAndTheSet) {
    refreshAll();
    set(5, "OperState", "Offline");
    fail("Oper.Switch.DomainID");
    EXPECT_FALSE(refreshAll());
    EXPECT_THAT(log(), Contains(failed(1796)));
    EXPECT_EQ(cache().getPortStatus("5"), 10U);
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(portsRead(), SizeIs(24));
    EXPECT_THAT(events(), IsEmpty()) << "the change is in the previous picture already: lost";
}

TEST_F(Ports, WithoutASuccessThereIsNoEvent) {
    fail("Oper.Switch.DomainID");
    EXPECT_FALSE(refreshAll());
    set(5, "OperState", "Offline");
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
}

// ---- the first usable port ------------------------------------------------------------------------------

TEST_F(Ports, TheNameIsReadFromTheFirstUsablePort) {
    set(0, "OperState", "NotInstalled");
    set(1, "Type", "PT");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(traffic().back(), "get Oper.UserPort.0.2.WWN Oper.Switch.DomainID Oper.Switch.WhoIsPrincipal");
    EXPECT_EQ(usable().front(), "2");
}

TEST_F(Ports, WithoutAUsablePortTheNameIsReadFromPortZero) {
    for (unsigned port = 0; port < 24; ++port)
        set(port, "Type", "PT");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(traffic().back(), "get Oper.UserPort.0.0.WWN Oper.Switch.DomainID Oper.Switch.WhoIsPrincipal");
    EXPECT_THAT(usable(), IsEmpty());
}

// ---- the local switch in the fabric ---------------------------------------------------------------------

TEST_F(Ports, EntersTheLocalSwitchWithItsPorts) {
    theSwitch->set("Oper.Switch.DomainID", "97", sim::Notify::no);
    EXPECT_EQ(cache().getRootSwitchDomainID(), 0U);
    EXPECT_TRUE(refreshAll());
    const SwitchCache *local = localSwitch();
    ASSERT_NE(local, nullptr);
    EXPECT_TRUE(local->isLocal());
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

TEST_F(Ports, ASecondRefreshUpdatesTheSwitchThatIsThere) {
    refreshAll();
    SwitchCache *local = localSwitch();
    const Wwn base = local->_port_wwn;
    local->_local = 0;
    local->_stale = 1;
    local->_mserver_errors = 3;
    set(0, "OperState", "NotInstalled");
    EXPECT_TRUE(refreshAll());
    EXPECT_EQ(localSwitch(), local);
    EXPECT_EQ(cache().getFabric(1)->getSwitchCount(), 1U);
    EXPECT_EQ(local->_port_wwn, base) << "though another port is the first now";
    EXPECT_FALSE(local->isLocal());
    EXPECT_EQ(local->_stale, 0U);
    EXPECT_EQ(local->_mserver_errors, 3U);
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
    refreshAll();
    EXPECT_THAT(events(), ElementsAre(statusChanged(3, 2, 10), portAdded(9), statusChanged(20, 2, 6)))
        << "donors are told of too";
}

TEST_F(Ports, AnotherTypeAloneRaisesNothing) {
    refreshAll();
    set(5, "Type", "E");
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_EQ(cache().getPortType("5"), 4U);
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

class LargeSwitch : public Ports {
protected:
    LargeSwitch() : Ports("fixed-128") {}
};

TEST_F(LargeSwitch, OnePortCostsThreeExchangesHereToo) {
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(traffic(), SizeIs(1 + 128 + 1));
    cache().localPortRefreshSet(100);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(traffic(), SizeIs(3));
}

} // namespace
