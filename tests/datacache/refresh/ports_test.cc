// The port refresh: what it reads, what it keeps, and what failures leave behind.
#include "tests/datacache/refresh/PortsTest.h"

namespace {

using support::portKey;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Ports = PortsTest;

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
    EXPECT_EQ(log().front(), "DCACHE: _getPortInfo()");
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

TEST_F(Ports, ATransceiverThatLostItsDiagnosticsIsForgotten) {
    set(2, "DDM.Supported", "True");
    refreshAll();
    ASSERT_TRUE(cache().getTransceiverDDMSupported("2"));
    set(2, "DDM.Supported", "False");
    EXPECT_TRUE(refreshAll());
    EXPECT_FALSE(cache().getTransceiverDDMSupported("2"));
    EXPECT_EQ(cache().getTransceiverVendorOUI("2"), "");
    EXPECT_EQ(cache().getTransceiverFormat("2"), 2U);
}

TEST_F(Ports, APortWithoutAKnownStateOrTypeIsPresentAllTheSame) {
    refreshAll();
    theSwitch->set("Oper.Switch.Nop", "EXG", sim::Notify::no);
    for (const char *state : {"", "Burning", "notinstalled", "NotInstalled ", "PoweredOf"}) {
        const int stateRule = lie(portKey(5, "OperState"), state);
        const int typeRule = lie(portKey(5, "Type"), "?");
        EXPECT_TRUE(refreshAll());
        EXPECT_TRUE(cache().isPortPresent("5")) << state;
        EXPECT_EQ(cache().getPortStatus("5"), 0U) << state;
        EXPECT_EQ(cache().getPortType("5"), 0U) << state;
        EXPECT_EQ(cache().getPortHWType("5"), 2U) << state;
        theSwitch->removeFault(stateRule);
        theSwitch->removeFault(typeRule);
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

TEST_F(Ports, AfterAFailureTheRequestIsOffUntilSomethingAsksAgain) {
    refreshAll();
    const std::vector<std::pair<std::string, int>> failures = {
        {"Oper.Switch.MaxPorts", 1646}, {portKey(0, "OperState"), 1692}, {"Oper.Switch.DomainID", 1796}};
    for (const auto &[key, line] : failures) {
        fail(key);
        cache().localPortRefreshSet();
        cache().updatePorts();
        pass();
        EXPECT_THAT(log(), Contains(failed(line)));
        EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports)) << line;
        pass();
        EXPECT_THAT(log(), Not(Contains("DCACHE: Updating ports cache"))) << line;
        EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports)) << line;
        cache().updatePorts();
        pass();
        EXPECT_TRUE(cache().isAreaGood(DataCacheArea::ports)) << line;
        EXPECT_THAT(portsRead(), SizeIs(24)) << line;
    }
}

TEST_F(Ports, AFailedPortRestoresPresenceCountAndHardwareTypeAndTheirEventsComeLater) {
    set(4, "OperState", "NotInstalled");
    refreshAll();
    theSwitch->set("Oper.Switch.MaxPorts", "26", sim::Notify::no);
    theSwitch->set("Oper.Switch.Nop", "EXG", sim::Notify::no);
    support::levelPorts(*theSwitch);
    set(2, "OperState", "NotInstalled");
    set(4, "OperState", "Offline");
    set(5, "OperState", "Offline");
    fail(portKey(10, "AdminState"));
    EXPECT_FALSE(refreshAll());
    EXPECT_THAT(log(), Contains(failed(1692)));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_TRUE(cache().isPortPresent("2"));
    EXPECT_FALSE(cache().isPortPresent("4"));
    EXPECT_EQ(cache().getPortStatus("5"), 2U);
    EXPECT_EQ(cache().getMaxRootPorts(), 24U);
    EXPECT_EQ(cache().getPortHWType("3"), 1U);

    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(portAdded(4), statusChanged(5, 2, 10), portAdded(24), portAdded(25)));
    EXPECT_FALSE(cache().isPortPresent("2"));
    EXPECT_EQ(cache().getMaxRootPorts(), 26U);
    EXPECT_EQ(cache().getPortHWType("3"), 2U);
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(events(), IsEmpty()) << "once only";
}

TEST_F(Ports, AFailedLastReadLeavesTheFirstPortsName) {
    refreshAll();
    fail("Oper.Switch.DomainID");
    EXPECT_FALSE(refreshAll());
    EXPECT_THAT(log(), Contains(failed(1796)));
    EXPECT_THAT(usable(), SizeIs(24));
    EXPECT_EQ(cache().calcPortWwn(support::kSwitchWwn, "5"), nameOf(5));
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

TEST_F(Ports, AFirstPortWithoutANameTakesAllPortsTheirs) {
    refreshAll();
    const int nameless = lie(portKey(0, "WWN"), "none");
    EXPECT_TRUE(refreshAll());
    EXPECT_THAT(usable(), IsEmpty());
    EXPECT_EQ(cache().calcPortWwn(support::kSwitchWwn, "5"), "");
    EXPECT_TRUE(cache().isPortPresent("5"));
    theSwitch->removeFault(nameless);
    EXPECT_TRUE(refresh());
    EXPECT_EQ(cache().calcPortWwn(support::kSwitchWwn, "5"), nameOf(5));
}

// ---- a larger switch -------------------------------------------------------------------------------------

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

TEST_F(LargeSwitch, TheFirstUsablePortMayBeAnyOfThem) {
    for (const unsigned first : {30U, 127U}) {
        for (unsigned port = 0; port < first; ++port)
            set(port, "OperState", "NotInstalled");
        EXPECT_TRUE(refreshAll());
        EXPECT_EQ(traffic().back(),
                  fmt::format("get {} Oper.Switch.DomainID Oper.Switch.WhoIsPrincipal", portKey(first, "WWN")));
        EXPECT_EQ(usable().front(), std::to_string(first));
    }
}

} // namespace
