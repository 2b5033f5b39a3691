// `dcache fabric`: commands/fabric.cc.
#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tests/support/Uptime.h"
#include "tests/tools/Json.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

namespace {

std::string tableOf(const Report &report) {
    return render(report, Format::table, false);
}

/// The twin's peer, with its management server as it is wanted.
void setManagementServer(sim::Simulator &twin, unsigned seconds, bool answers) {
    sim::Peer peer = twin.peers().front();
    peer.topology.seconds = seconds;
    peer.topology.answers = answers;
    twin.changePeer(peer, sim::Notify::no);
}

} // namespace

TEST(Fabric, IsATableOfItsSwitchesInTheOrderOfTheirDomains) {
    const auto twin = sim::create("fabric-2");
    sim::Peer core;
    core.wwn = "100000C0DD00C001";
    core.domain = 5;
    core.priority = 1;
    core.ports = 3;
    twin->addPeer(core);
    twin->connect({twin->get("Oper.Switch.WWN"), 17, core.wwn, 0}, sim::Notify::no);
    twin->set("Oper.Switch.DomainID", "9", sim::Notify::no);
    EXPECT_EQ(tableOf(showFabric()), "fabric    10:00:00:C0:DD:00:C0:01\n"
                                     "switches  3\n"
                                     "\n"
                                     "DOMAIN  WWN                      LOCAL  PRINCIPAL  PORTS  MANAGEMENT SERVER\n"
                                     "2       10:00:00:C0:DD:02:A0:02  -      -          24     answers\n"
                                     "5       10:00:00:C0:DD:00:C0:01  -      yes        3      answers\n"
                                     "9       10:00:00:C0:DD:02:A0:01  yes    -          24     -\n");
}

TEST(Fabric, ForProgramsAndScripts) {
    const auto twin = sim::create("fabric-2");
    const Report report = showFabric();
    EXPECT_EQ(jsonOf(report), support::parseJson(R"({
        "fabricWwn": "10:00:00:C0:DD:02:A0:01", "switchCount": 2, "switches": [
        {"domain": 1, "wwn": "10:00:00:C0:DD:02:A0:01", "local": true, "principal": true, "portCount": 24,
         "managementServer": null, "managementServerErrors": 0},
        {"domain": 2, "wwn": "10:00:00:C0:DD:02:A0:02", "local": false, "principal": false, "portCount": 24,
         "managementServer": "answers", "managementServerErrors": 0}]})"));
    EXPECT_THAT(render(report, Format::terse, false),
                StartsWith("fabricWwn=10:00:00:C0:DD:02:A0:01\nswitchCount=2\nswitches.1.domain=1\n"));
}

TEST(Fabric, ASwitchWhoseManagementServerTookTooLongIsRemarkedOn) {
    const auto twin = sim::create("fabric-2");
    support::setUptimeSource([&twin] { return twin->uptime(); });
    setManagementServer(*twin, 11, false);
    const Report report = showFabric();
    support::setUptime(0);
    EXPECT_THAT(tableOf(report),
                EndsWith("2       10:00:00:C0:DD:02:A0:02  -      -          0      timed out\n"
                         "\n"
                         "The management server took too long for domain 2: it is not asked for its ports again.\n"));
    EXPECT_EQ(jsonOf(report).at("switches").at(1).at("managementServer"), "timed out");
}

TEST(Fabric, ErrorsOfTheManagementServerAreCounted) {
    const auto twin = sim::create("fabric-2");
    setManagementServer(*twin, 0, false);
    const Report report = showFabric();
    EXPECT_THAT(tableOf(report), EndsWith("-      -          0      1 error\n"));
    EXPECT_EQ(jsonOf(report).at("switches").at(1).at("managementServer"), "failing");
    EXPECT_EQ(jsonOf(report).at("switches").at(1).at("managementServerErrors"), 1);
}

TEST(Fabric, ATransparentSwitchIsInNone) {
    const auto device = sim::create();
    device->set("Oper.Switch.TransparentModeFeature", "True", sim::Notify::no);
    device->set("Config.Switch.TransparentMode", "True", sim::Notify::no);
    const Report report = showFabric();
    EXPECT_THAT(tableOf(report), StartsWith("fabric    none\n"));
    EXPECT_THAT(tableOf(report), EndsWith("\n\nThe switch is in transparent mode, and so in no fabric.\n"));
    EXPECT_EQ(jsonOf(report).at("fabricWwn"), nullptr);
}

TEST(Fabric, ThatCannotBeReadIsAFailureThatNamesTheArea) {
    const auto twin = sim::create("fabric-2");
    sim::Fault fault;
    fault.key = "Oper.Switch.DomainID";
    fault.status = 7;
    fault.times = -1;
    twin->addFault(fault);
    EXPECT_THAT(showFabric, ThrowsMessage<Failure>(HasSubstr("the fabric data could not be read")));
    EXPECT_THAT([] { showFabricSwitch("1"); }, ThrowsMessage<Failure>(HasSubstr("could not be read")));
}

TEST(Fabric, OneSwitchIsShownWithItsPortsAndTheDevicesAtThem) {
    const auto twin = sim::create("fabric-2");
    const Report report = showFabricSwitch("2");
    EXPECT_THAT(tableOf(report), StartsWith("domain ID          2\n"
                                            "WWN                10:00:00:C0:DD:02:A0:02\n"
                                            "local              -\n"
                                            "principal          -\n"
                                            "ports              24\n"
                                            "management server  answers\n"
                                            "\n"
                                            "PORT  WWN                      DEVICES\n"
                                            "0     20:00:00:C0:DD:02:A0:02  020000\n"
                                            "1     20:01:00:C0:DD:02:A0:02  020100\n"));
    EXPECT_THAT(tableOf(report), EndsWith("16    20:10:00:C0:DD:02:A0:02  -\n"
                                          "17    20:11:00:C0:DD:02:A0:02  -\n"
                                          "18    20:12:00:C0:DD:02:A0:02  -\n"
                                          "19    20:13:00:C0:DD:02:A0:02  -\n"
                                          "20    20:14:00:C0:DD:02:A0:02  -\n"
                                          "21    20:15:00:C0:DD:02:A0:02  -\n"
                                          "22    20:16:00:C0:DD:02:A0:02  -\n"
                                          "23    20:17:00:C0:DD:02:A0:02  -\n"
                                          "\n"
                                          "16 devices logged in.\n"));
    const auto object = jsonOf(report);
    EXPECT_EQ(object.at("domain"), 2);
    EXPECT_EQ(object.at("devices").size(), 16u);
    EXPECT_EQ(object.at("ports").at(15), support::parseJson(R"({
        "index": 15, "wwn": "20:0F:00:C0:DD:02:A0:02", "devices": ["020F00"]})"));
    EXPECT_EQ(object.at("ports").at(16).at("devices"), nlohmann::json::array());
}

TEST(Fabric, TheLocalSwitchIsShownInTheSameWay) {
    const auto twin = sim::create("fabric-2");
    const auto object = jsonOf(showFabricSwitch("01"));
    EXPECT_EQ(object.at("local"), true);
    EXPECT_EQ(object.at("ports").at(0).at("devices"), support::parseJson(R"(["010000"])"));
}

TEST(Fabric, DevicesThatAreAtNoneOfThePortsAreToldBeneath) {
    const auto twin = sim::create("fabric-2");
    sim::Fault strange;
    strange.key = "Oper.NameServerAll.2.FirstNsEntry";
    strange.times = -1;
    const auto notes = [&](const char *address) {
        strange.value = address;
        const int number = twin->addFault(strange);
        const std::string table = tableOf(showFabricSwitch("2"));
        twin->removeFault(number);
        return table.substr(table.find("\n\n1 device"));
    };
    EXPECT_EQ(notes("03000A"), "\n\n1 device logged in.\nDevice \"03000A\" is at none of these ports.\n");
}

TEST(Fabric, ASwitchOfWhichNoPortsAreKnownSaysSo) {
    const auto twin = sim::create("fabric-2");
    setManagementServer(*twin, 0, false);
    for (const sim::NameServerEntry &entry : twin->nameServer())
        twin->logOut(entry.portWwn, sim::Notify::no);
    EXPECT_THAT(tableOf(showFabricSwitch("2")),
                EndsWith("\nNo ports are known of this switch.\n\nNo device is logged in.\n"));
}

TEST(Fabric, ADomainThatIsNoneIsAFailureThatTellsWhichThereAre) {
    const auto twin = sim::create("fabric-2");
    for (const char *digits : {"3", "0", "258", "99999999999999999999"}) {
        EXPECT_THAT([&] { showFabricSwitch(digits); },
                    ThrowsMessage<Failure>(std::string("no switch of the fabric has domain ID ") + digits +
                                           "; there are: 1, 2"));
    }
}
