// Ports by index and by name, and transceiver queries.
#include <stdexcept>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/Ports.h"

namespace {

using support::portKey;
using support::portName;
using testing::ElementsAre;
using testing::IsEmpty;

class PortIndex : public support::CacheTest {
protected:
    explicit PortIndex(const char *profile = "fixed-24") {
        theSwitch.reset();
        theSwitch = sim::create(profile);
        support::levelPorts(*theSwitch);
    }

    void SetUp() override { connect(); }

    void set(unsigned port, const std::string &attribute, const std::string &value) {
        support::setPort(*theSwitch, port, attribute, value);
    }

    void refresh() {
        cache()._getSwitchInfo();
        cache().localPortRefreshSet();
        ASSERT_TRUE(cache()._getPortInfo());
        forget();
    }

    static std::string local() { return cache().getRootSwitchWwn(); }

    /// A remote switch in the fabric, with rows of port number and index.
    static SwitchCache *addRemote(const std::string &wwn, std::initializer_list<std::pair<int, int>> rows) {
        auto *remote = new SwitchCache;
        remote->_wwn = Wwn(wwn);
        remote->_port_wwn = portName(wwn, 0);
        for (const auto &[number, index] : rows)
            remote->addPort(static_cast<unsigned short>(number), static_cast<unsigned char>(index));
        cache().getFabric(1)->_switches.add(Element<SwitchCache>::alloc(remote, true));
        return remote;
    }
};

constexpr const char *kRemote = "100000C0DD001111";

/// Runs `action` and gives the text of the std::out_of_range that it throws.
template <class Action> std::string outOfRange(Action action) {
    try {
        action();
    } catch (const std::out_of_range &error) {
        return error.what();
    }
    return "nothing thrown";
}

// ---- the walk -------------------------------------------------------------------------------------------

TEST_F(PortIndex, WalksTheUsablePortsInRisingOrder) {
    for (unsigned port = 0; port < 24; ++port)
        set(port, "OperState", port == 2 || port == 5 || port == 6 || port == 23 ? "Offline" : "NotInstalled");
    set(5, "Type", "PT");
    set(2, "Type", "Donor");
    refresh();
    EXPECT_EQ(cache().getFirstRootPortIndex(), "2");
    EXPECT_EQ(cache().getNextRootPortIndex("2"), "6");
    EXPECT_EQ(cache().getNextRootPortIndex("3"), "6") << "from any index";
    EXPECT_EQ(cache().getNextRootPortIndex("6"), "23");
    EXPECT_EQ(cache().getNextRootPortIndex("23"), "");
}

TEST_F(PortIndex, TheWalkStartsFromAPortThatTheTextNames) {
    refresh();
    EXPECT_EQ(cache().getNextRootPortIndex("0"), "1");
    for (const char *text : {"", "x", "port 1", "00", " 0", "0x1", "65536", "65535", "-1", "23", "24", "300", "-0"})
        EXPECT_EQ(cache().getNextRootPortIndex(text), "") << text;
    EXPECT_EQ(cache().getNextRootPortIndex("5x"), "6");
    EXPECT_EQ(cache().getNextRootPortIndex(" 7"), "8");
    EXPECT_EQ(cache().getNextRootPortIndex("65538"), "3");
}

TEST_F(PortIndex, WithoutTheFirstPortsNameThereIsNothing) {
    EXPECT_EQ(cache().getFirstRootPortIndex(), "");
    EXPECT_EQ(cache().getNextRootPortIndex("0"), "");
    sim::Fault nameless;
    nameless.key = "Oper.UserPort.0.0.WWN";
    nameless.value = "";
    theSwitch->addFault(nameless);
    refresh();
    EXPECT_TRUE(cache().isPortPresent("0"));
    EXPECT_EQ(cache().getFirstRootPortIndex(), "");
    EXPECT_EQ(cache().getNextRootPortIndex("0"), "");
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 0), Wwn());
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 999), Wwn()) << "looked at before the index";
}

// ---- types ----------------------------------------------------------------------------------------------

TEST_F(PortIndex, TypesOfPortsOutsideTheTableAreZero) {
    set(0, "Type", "E");
    refresh();
    EXPECT_EQ(cache().getPortType("0"), 4U);
    EXPECT_EQ(cache().getPortHWType("0"), 1U);
    for (const char *text : {"", "x", "256", "65535", "-1", "4294967295", "70000"}) {
        EXPECT_EQ(cache().getPortType(text), 0U) << text;
        EXPECT_EQ(cache().getPortHWType(text), 0U) << text;
        EXPECT_EQ(cache().getPortStatus(text), 0U) << text;
        EXPECT_FALSE(cache().isPortPresent(text)) << text;
    }
}

// ---- names of local ports -------------------------------------------------------------------------------

TEST_F(PortIndex, ALocalPortsNameHasItsIndex) {
    set(9, "OperState", "NotInstalled");
    refresh();
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 4), portName(local(), 4));
    EXPECT_EQ(cache().calcPortWwn(local(), "4"), "200400C0DD00A1B2");
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 9), Wwn()) << "absent";
    EXPECT_EQ(cache().calcPortWwn(local(), "9"), "");
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 255), Wwn());
}

TEST_F(PortIndex, AnIndexAbove255OfTheLocalSwitchThrows) {
    refresh();
    EXPECT_EQ(outOfRange([] { cache().calcPortWorldWideName(Wwn(local()), 256); }), "bitset::test");
    EXPECT_EQ(outOfRange([] { cache().calcPortWwn(local(), "256"); }), "bitset::test");
    EXPECT_EQ(outOfRange([] { cache().calcPortWwn(local(), "65535"); }), "bitset::test");
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(PortIndex, TheTextOfANameHasItsOwnRuleForIndexes) {
    refresh();
    EXPECT_EQ(cache().calcPortWwn(local(), "-1"), "");
    EXPECT_EQ(cache().calcPortWwn(local(), "4294967295"), "");
    EXPECT_EQ(cache().calcPortWwn(local(), "99999999999"), "");
    EXPECT_EQ(cache().calcPortWwn(local(), ""), "200000C0DD00A1B2") << "text without a number is port 0 here";
    EXPECT_EQ(cache().calcPortWwn(local(), "x"), "200000C0DD00A1B2");
    EXPECT_EQ(cache().calcPortWwn(local(), "65537"), "200100C0DD00A1B2");
    EXPECT_EQ(cache().calcPortWwn("no switch", "0"), "");
}

TEST_F(PortIndex, ALocalNameGivesBackItsIndex) {
    set(9, "OperState", "NotInstalled");
    refresh();
    EXPECT_EQ(cache().calcPortIndex(local(), "200400C0DD00A1B2"), "4");
    EXPECT_THAT(log(), ElementsAre("DCACHE: calcPortIndex() port_wwn=200400C0DD00A1B2, switch_wwn=100000C0DD00A1B2, "
                                   "root_switch_wwn=100000C0DD00A1B2",
                                   "DCACHE: calcPortIndex()local, area=4, result=4"));
    forget();
    EXPECT_EQ(cache().calcPortIndex(Wwn(local()), portName(local(), 9)), 65535U) << "absent";
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex()local, area=9, result=65535");
    forget();
    EXPECT_EQ(cache().calcPortIndex(Wwn(local()), portName(local(), 256)), 65535U);
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex()local, area=65535, result=65535");
    EXPECT_EQ(cache().calcPortIndex(local(), "100000C0DD00A1B2"), "") << "no port field";
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex()local, area=65535, result=65535");
    EXPECT_EQ(cache().calcPortIndex(local(), ""), "");
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

// ---- names of remote ports ------------------------------------------------------------------------------

TEST_F(PortIndex, ARemotePortsNameIsThatOfTheLastRowWithItsIndex) {
    refresh();
    addRemote(kRemote, {{9, 4}, {10, 1}, {11, 2}, {12, 1}});
    EXPECT_EQ(cache().calcPortWwn(kRemote, "4"), "200900C0DD001111");
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(std::string(kRemote)), 1), portName(kRemote, 12));
    EXPECT_EQ(cache().calcPortWwn(kRemote, "2"), "200B00C0DD001111");
    EXPECT_EQ(cache().calcPortWwn(kRemote, "3"), "");
    EXPECT_EQ(cache().calcPortWwn(kRemote, "256"), "") << "no exception for other switches";
    EXPECT_EQ(cache().calcPortWwn("100000C0DD002222", "1"), "") << "not in the fabric";
}

TEST_F(PortIndex, ARemoteSwitchWithoutPortsHasNoNames) {
    refresh();
    addRemote(kRemote, {});
    EXPECT_EQ(cache().calcPortWwn(kRemote, "0"), "");
}

TEST_F(PortIndex, ARemoteNameGivesBackItsIndex) {
    refresh();
    addRemote(kRemote, {{10, 1}, {11, 2}});
    EXPECT_EQ(cache().calcPortIndex(kRemote, "200B00C0DD001111"), "2");
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex() remote, result=2");
    forget();
    EXPECT_EQ(cache().calcPortIndex(kRemote, "200C00C0DD001111"), "");
    EXPECT_THAT(log(), ElementsAre("DCACHE: calcPortIndex() port_wwn=200C00C0DD001111, switch_wwn=100000C0DD001111, "
                                   "root_switch_wwn=100000C0DD00A1B2",
                                   "DCACHE: calcPortIndex() remote, port wwn not found on switch",
                                   "DCACHE: calcPortIndex() remote, result=65535"));
    forget();
    EXPECT_EQ(cache().calcPortIndex("100000C0DD002222", "200B00C0DD001111"), "");
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex() remote, result=65535");
    EXPECT_EQ(log().size(), 2U);
    EXPECT_EQ(support::readFile(support::kCriticalLog), "");
}

// ---- a switch that counts from one ----------------------------------------------------------------------

class SecondNaming : public PortIndex {
protected:
    SecondNaming() : PortIndex("second-naming") {}
};

TEST_F(SecondNaming, EveryIndexAndNameBelongTogether) {
    refresh();
    EXPECT_EQ(cache().calcPortWorldWideName(Wwn(local()), 4), portName(local(), 5));
    for (unsigned port = 0; port < cache().getMaxRootPorts(); ++port) {
        const Wwn name = cache().calcPortWorldWideName(Wwn(local()), static_cast<unsigned short>(port));
        EXPECT_EQ(cache().calcPortIndex(Wwn(local()), name), port);
        EXPECT_EQ(name.tostring(), theSwitch->get(portKey(port, "WWN"))) << "the switch's own word";
    }
}

TEST_F(SecondNaming, APortNumberOfZeroStaysZero) {
    refresh();
    EXPECT_EQ(cache().calcPortIndex(Wwn(local()), portName(local(), 0)), 0U);
    EXPECT_EQ(log().back(), "DCACHE: calcPortIndex()local, area=0, result=0");
    EXPECT_EQ(cache().calcPortIndex(Wwn(local()), portName(local(), 257)), 65535U);
    EXPECT_EQ(cache().calcPortIndex(Wwn(local()), portName(local(), 256)), 65535U) << "port 255 is not there";
}

TEST_F(PortIndex, EveryIndexAndNameBelongTogether) {
    refresh();
    for (unsigned port = 0; port < 24; ++port) {
        const Wwn name = cache().calcPortWorldWideName(Wwn(local()), static_cast<unsigned short>(port));
        EXPECT_EQ(cache().calcPortIndex(Wwn(local()), name), port);
        EXPECT_EQ(name.tostring(), theSwitch->get(portKey(port, "WWN")));
    }
}

// ---- transceivers ---------------------------------------------------------------------------------------

TEST_F(PortIndex, TransceiverDataNeedsAPresentPortWithDiagnostics) {
    set(3, "DDM.Supported", "True");
    set(4, "DDM.Supported", "True");
    refresh();
    EXPECT_TRUE(cache().getTransceiverDDMSupported("3"));
    EXPECT_EQ(cache().getTransceiverVendorSN("3"), theSwitch->get(portKey(3, "SFPSerialNumber")));
    for (const char *text : {"5", "200", "255", "", "x", "65536"}) {
        EXPECT_FALSE(cache().getTransceiverDDMSupported(text)) << text;
        EXPECT_EQ(cache().getTransceiverFormat(text), 2U) << text;
        EXPECT_EQ(cache().getTransceiverVendorOUI(text), "") << text;
        EXPECT_EQ(cache().getTransceiverVendorSN(text), "") << text;
    }
}

TEST_F(PortIndex, TransceiverQueriesThrowAboveTheTable) {
    refresh();
    EXPECT_EQ(outOfRange([] { cache().getTransceiverDDMSupported("256"); }), "bitset::test");
    EXPECT_EQ(outOfRange([] { cache().getTransceiverFormat("300"); }), "bitset::test");
    EXPECT_EQ(outOfRange([] { cache().getTransceiverVendorOUI("65534"); }), "bitset::test");
    EXPECT_EQ(outOfRange([] { cache().getTransceiverVendorSN("1000"); }), "bitset::test");
    for (const char *text : {"65535", "-1"}) {
        EXPECT_EQ(outOfRange([=] { cache().getTransceiverDDMSupported(text); }), "bitset::test") << text;
        EXPECT_EQ(outOfRange([=] { cache().getTransceiverFormat(text); }), "bitset::test") << text;
        EXPECT_EQ(outOfRange([=] { cache().getTransceiverVendorOUI(text); }), "bitset::test") << text;
        EXPECT_EQ(outOfRange([=] { cache().getTransceiverVendorSN(text); }), "bitset::test") << text;
    }
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(PortIndex, APortIsNeverFoundByItsTransceiver) {
    set(3, "DDM.Supported", "True");
    refresh();
    EXPECT_EQ(cache().getRootPortIndexForTransceiver(cache().getTransceiverVendorOUI("3"),
                                                     cache().getTransceiverVendorSN("3")),
              "");
}

TEST_F(PortIndex, SerialNumbersAreTrimmedAndFilled) {
    const std::vector<std::pair<std::string, std::string>> serials = {
        {"", ""},
        {"   ", ""},
        {"AB  12   ", "AB _12"},
        {"A B", "A B"},
        {"A   B", "A __B"},
        {"  A", " _A"},
        {" A", " A"},
        {"A B  C   D", "A B _C __D"},
        {"0123456789ABCDEF", "0123456789ABCDEF"},
        {"0123456789ABCDEFGHIJ", "0123456789ABCDEF"},
        {"0123456789AB        X", "0123456789AB"},
        {"\t ", "\t"},
    };
    for (const auto &[raw, serial] : serials)
        EXPECT_EQ(cache()._sanitizedMediaVendorSN(raw.c_str()), serial) << raw;
    EXPECT_EQ(cache()._sanitizedMediaVendorSN(nullptr), "");
}

// ---- the fabric -----------------------------------------------------------------------------------------

TEST_F(PortIndex, ThereIsOneFabricAndItsNumberIsOne) {
    EXPECT_EQ(cache().getFabric(0), nullptr);
    EXPECT_EQ(cache().getFabric(2), nullptr);
    EXPECT_NE(cache().getFabric(1), nullptr);
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(PortIndex, AListOfNamesIsSearchedWhole) {
    const Wwn a(std::string("1000000000000001"));
    const Wwn b(std::string("1000000000000002"));
    EXPECT_FALSE(cache()._fabricContainsWWN({}, a));
    EXPECT_TRUE(cache()._fabricContainsWWN({a}, a));
    EXPECT_TRUE(cache()._fabricContainsWWN({b, a}, a));
    EXPECT_FALSE(cache()._fabricContainsWWN({b, b}, a));
    EXPECT_TRUE(cache()._fabricContainsWWN({Wwn()}, Wwn()));
}

} // namespace
