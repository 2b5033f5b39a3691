// `dcache ports`: commands/ports.cc.
#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::ThrowsMessage;

namespace {

/// A switch with a port in each state: port 1 offline, 2 in diagnostics, 3 in error, 4 unknown, 5 and 6 absent.
class Ports : public testing::Test {
protected:
    Ports() {
        setState(1, "Offline");
        setState(2, "Diagnostics");
        setState(3, "Isolated");
        setState(5, "NotInstalled");
        setState(6, "PoweredOff");
        sim::Fault strange;
        strange.key = "Oper.UserPort.0.4.OperState";
        strange.value = "Melting";
        strange.times = -1;
        _switch->addFault(strange);
        for (int port = 7; port < 24; ++port)
            setState(port, "Online");
    }

    void setState(int port, const std::string &state) {
        _switch->set("Oper.UserPort.0." + std::to_string(port) + ".OperState", state, sim::Notify::no);
    }

    /// The numbers of the ports that are listed.
    static std::vector<int> listed(const PortFilter &filter) {
        std::vector<int> numbers;
        const auto object = dcache::jsonOf(showPorts(filter));
        for (const auto &port : object.at("ports"))
            numbers.push_back(port.at("index"));
        return numbers;
    }

    static nlohmann::json jsonOf(int port) { return dcache::jsonOf(showPort(std::to_string(port))); }

    /// The line of the table about this port.
    static std::string lineOf(int port) {
        for (const std::string &line : support::lines(render(showPorts({true, {}}), Format::table, false)))
            if (line.rfind(std::to_string(port) + " ", 0) == 0)
                return line;
        return "";
    }

    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

} // namespace

TEST_F(Ports, EveryStateHasItsWordAndItsNumber) {
    EXPECT_THAT(lineOf(0), StartsWith("0     20:00:00:C0:DD:00:A1:B2  online (2) "));
    EXPECT_THAT(lineOf(1), StartsWith("1     20:01:00:C0:DD:00:A1:B2  offline (10) "));
    EXPECT_THAT(lineOf(2), StartsWith("2     20:02:00:C0:DD:00:A1:B2  diagnostics (11) "));
    EXPECT_THAT(lineOf(3), StartsWith("3     20:03:00:C0:DD:00:A1:B2  error (6) "));
    EXPECT_THAT(lineOf(4), StartsWith("4     20:04:00:C0:DD:00:A1:B2  unknown (0) "));
    EXPECT_THAT(lineOf(5), StartsWith("5     -                        absent (0) "));
}

TEST_F(Ports, AbsentPortsAreCountedAndListedOnlyWhenAskedFor) {
    const std::string counts = "24 ports: 18 online, 1 offline, 1 diagnostics, 1 error, 1 unknown, 2 absent";
    const std::string table = render(showPorts({}), Format::table, false);
    EXPECT_THAT(table, Not(HasSubstr("absent (0)")));
    EXPECT_THAT(table, EndsWith("\n\n" + counts + " (--all lists them).\n"));
    EXPECT_THAT(render(showPorts({true, {}}), Format::table, false), EndsWith("\n\n" + counts + ".\n"));
    EXPECT_EQ(listed({}).size(), 22u);
    EXPECT_EQ(listed({true, {}}).size(), 24u);
}

TEST_F(Ports, AStateSelectsItsPortsAlone) {
    EXPECT_THAT(listed({false, "offline"}), ElementsAre(1));
    EXPECT_THAT(listed({false, "diagnostics"}), ElementsAre(2));
    EXPECT_THAT(listed({false, "error"}), ElementsAre(3));
    EXPECT_THAT(listed({false, "unknown"}), ElementsAre(4));
    EXPECT_THAT(listed({false, "absent"}), ElementsAre(5, 6));
    EXPECT_EQ(listed({false, "online"}).size(), 18u);
}

TEST_F(Ports, AStateThatNoPortIsInLeavesASentenceAndAnEmptyArray) {
    setState(2, "Online");
    const Report report = showPorts({false, "diagnostics"});
    EXPECT_THAT(render(report, Format::table, false), StartsWith("No port is in state \"diagnostics\".\n\n24 ports: "));
    EXPECT_EQ(render(report, Format::terse, false), "");
    EXPECT_EQ(dcache::jsonOf(report), support::parseJson(R"({"ports": []})"));
}

TEST_F(Ports, AnAbsentPortHasNoNameTypeOrTransceiver) {
    EXPECT_EQ(lineOf(5),
              "5     -                        absent (0)        -     -   -       -       -                 no");
    EXPECT_EQ(jsonOf(5), support::parseJson(R"({
        "index": 5, "wwn": null, "operationalStatus": [0], "state": "absent", "type": null, "cimType": 0,
        "hardwareType": null, "cimHardwareType": 0, "transceiverFormat": null, "vendorOui": null,
        "vendorSerial": null, "diagnostics": false})"));
}

TEST_F(Ports, ATransceiverWithoutDiagnosticsHasNoDataAndTheReportOfThePortSaysSo) {
    _switch->pullTransceiver(0, sim::Notify::no);
    sim::Transceiver plain;
    plain.diagnostics = false;
    _switch->plugTransceiver(0, plain, sim::Notify::no);
    EXPECT_EQ(render(showPort("0"), Format::table, false),
              "port                0\n"
              "WWN                 20:00:00:C0:DD:00:A1:B2\n"
              "state               online (2)\n"
              "type                F\n"
              "hardware type       GL\n"
              "transceiver format  -\n"
              "vendor OUI          -\n"
              "vendor serial       -\n"
              "diagnostics         no\n"
              "\n"
              "No transceiver, or one without digital diagnostics: the cache keeps no data of it.\n");
}

TEST_F(Ports, OtherTransceiversAreToldFromSfps) {
    _switch->pullTransceiver(0, sim::Notify::no);
    sim::Transceiver larger;
    larger.identifier = 0x11;
    larger.vendorOui = 0x00176A;
    larger.serialNumber = "AB  1";
    _switch->plugTransceiver(0, larger, sim::Notify::no);
    const auto port = jsonOf(0);
    EXPECT_EQ(port.at("transceiverFormat"), "other");
    EXPECT_EQ(port.at("vendorOui"), "00176A");
    EXPECT_EQ(port.at("vendorSerial"), "AB _1");
    EXPECT_EQ(port.at("diagnostics"), true);
}

TEST_F(Ports, TextsOfTransceiversCannotReachATerminalUnprinted) {
    sim::Fault strange;
    strange.key = "Oper.UserPort.0.0.SFPSerialNumber";
    strange.value = "A\x1b[2JB";
    strange.times = -1;
    _switch->addFault(strange);
    EXPECT_THAT(render(showPort("0"), Format::table, false), HasSubstr("vendor serial       A\\x1B[2JB\n"));
}

TEST_F(Ports, TypesAreShownAsTheSwitchCallsThem) {
    _switch->set("Config.UserPort.0.0.Type", "Donor", sim::Notify::no);
    _switch->set("Config.UserPort.0.1.Type", "PT", sim::Notify::no);
    EXPECT_EQ(jsonOf(0).at("type"), "Donor");
    EXPECT_EQ(jsonOf(0).at("cimType"), 16000);
    EXPECT_EQ(jsonOf(1).at("type"), "PT");
    EXPECT_EQ(jsonOf(1).at("cimType"), 16004);
}

TEST_F(Ports, APortThatDoesNotExistIsAFailureThatTellsWhichDo) {
    for (const std::string digits : {"24", "255", "256", "65535", "65536", "99999999999999999999999"})
        EXPECT_THAT([&] { showPort(digits); },
                    ThrowsMessage<Failure>("there is no port " + digits + "; the switch has ports 0 to 23"));
    EXPECT_THAT(render(showPort("023"), Format::terse, false), StartsWith("index=23\n"));
}

TEST_F(Ports, PortsThatCannotBeReadAreAFailureThatNamesTheArea) {
    sim::Fault fault;
    fault.key = "Oper.UserPort.0.23.OperState";
    fault.status = 7;
    fault.times = -1;
    _switch->addFault(fault);
    EXPECT_THAT([] { showPorts({}); }, ThrowsMessage<Failure>(HasSubstr("the ports data could not be read")));
}

TEST(PortsOfOtherSwitches, AreNumberedFromZeroAlsoWhenTheirNamesCountFromOne) {
    const auto other = sim::create("second-naming");
    const auto port = jsonOf(showPort("4"));
    EXPECT_EQ(port.at("index"), 4);
    EXPECT_EQ(port.at("wwn"), "20:05:00:0D:EC:00:A1:B2");
}

TEST(PortsOfOtherSwitches, ASwitchThatClaimsMoreThanItCanHaveShowsWhatIsRead) {
    const auto other = sim::create("claims-200");
    EXPECT_THAT(render(showPorts({}), Format::table, false), HasSubstr("\n128 ports: "));
}
