#include "sim/scenario/Scenario.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"
#include "tests/sim/Zoning.h"
#include "tests/sim/scenario/Reading.h"

using simtest::made;
using simtest::pictureOf;

TEST(Scenario, NothingAtAllIsTheDefaultSwitch) {
    EXPECT_EQ(pictureOf(*made("")), pictureOf(*sim::create()));
}

TEST(Scenario, StartsFromTheProfileItNames) {
    EXPECT_EQ(pictureOf(*made("profile = \"director-8\"")), pictureOf(*sim::create("director-8")));
}

TEST(Scenario, ConnectionsReachItsSwitch) {
    const auto device = made("[switch]\nwwn = \"100000C0DD00BEEF\"");
    EXPECT_EQ(simtest::Client().get("Oper.Switch.WWN").value, "100000C0DD00BEEF");
}

TEST(Scenario, ReadingOneIsNotNoticedByConnections) {
    const auto device = sim::create("director-8");
    sim::readScenario("[switch]\ndomain = 7", "a.toml");
    EXPECT_EQ(simtest::Client().get("Oper.Switch.WWN").value, device->get("Oper.Switch.WWN"));
    EXPECT_EQ(device->get("Oper.Switch.DomainID"), "1");
}

TEST(Scenario, TheSameOneMakesManySwitches) {
    const sim::Scenario scenario = sim::readScenario("[switch]\ndomain = 7\n[[peer]]\nwwn = \"100000C0DD00B201\"\n"
                                                     "domain = 1\n[[link]]\nends = [\"local:16\", \"1:0\"]",
                                                     "a.toml");
    EXPECT_EQ(pictureOf(*sim::makeSwitch(scenario)), pictureOf(*sim::makeSwitch(scenario)));
}

TEST(Scenario, SwitchSectionSaysWhoAndHowTheSwitchIs) {
    const auto device = made("[switch]\nwwn = \"10:00:00:C0:DD:00:BE:EF\"\ndomain = 7\nstate = \"Offline\"\n"
                             "hardware = \"X\"\nfaults = \"FW\"\nuptime = \"2 h\"\nadmin_mode = \"elsewhere\"\n"
                             "zoning_lock = \"elsewhere\"");
    EXPECT_EQ(device->get("Oper.Switch.WWN"), "100000C0DD00BEEF");
    EXPECT_EQ(device->get("Oper.Switch.DomainID"), "7");
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Offline");
    EXPECT_EQ(device->get("Oper.Switch.Nop"), "X");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "FW");
    EXPECT_EQ(device->uptime(), 7200);
    EXPECT_EQ(device->adminModeHolder(), sim::kOtherClient);
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
}

TEST(Scenario, PartsCanBeMoreOrFewerThanTheProfileHas) {
    const auto device = made("[switch]\nports = 30\nslots = 2\nsupplies = 1\nfans = 4\n[[port]]\nnumber = 29\n"
                             "state = \"Online\"\n[[fan]]\nnumber = 3\nstate = \"Bad\"");
    EXPECT_EQ(device->get("Oper.Switch.MaxPorts"), "30");
    EXPECT_EQ(device->get("Oper.UserPort.0.29.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.Chassis.0.MaxSlots"), "2");
    EXPECT_EQ(device->get("Oper.Chassis.0.PowerSupplies"), "1");
    EXPECT_EQ(device->get("Oper.Chassis.0.Fan.3"), "Bad");
}

TEST(Scenario, SettingsAreGivenByKeyInQuotesOrWithDots) {
    const auto device = made("[settings]\n\"Config.Snmp.ReadComm\" = \"secret\"\nConfig.Services.TelnetEnable = false\n"
                             "Oper.Switch.DomainID = 9\n\"Config.Snmp.SysDescr\" = { bytes = \"FF41\" }");
    EXPECT_EQ(device->get("Config.Snmp.ReadComm"), "secret");
    EXPECT_EQ(device->get("Config.Services.TelnetEnable"), "False");
    EXPECT_EQ(device->get("Oper.Switch.DomainID"), "9");
    EXPECT_EQ(device->get("Config.Snmp.SysDescr"), "\xFF\x41");
}

TEST(Scenario, PortsHaveStatesTypesAndTransceivers) {
    const auto device =
        made("[[port]]\nnumber = 3\nstate = \"Offline\"\nadmin_state = \"Down\"\ntype = \"E\"\n"
             "transceiver = false\n[[port]]\nnumber = 23\ntransceiver = { serial = \"S1\", part = \"P\", "
             "vendor = \"V\", oui = 255, identifier = 13, diagnostics = false, long_wave = true }\n"
             "[[port]]\nnumber = 22\ntransceiver = true\n");
    const auto other = sim::create();
    sim::Transceiver transceiver;
    transceiver.serialNumber = "S1";
    transceiver.partNumber = "P";
    transceiver.vendorName = "V";
    transceiver.vendorOui = 255;
    transceiver.identifier = 13;
    transceiver.diagnostics = false;
    transceiver.longWave = true;
    other->plugTransceiver(23, transceiver);
    other->plugTransceiver(22, {});
    other->pullTransceiver(3);
    other->set("Oper.UserPort.0.3.OperState", "Offline");
    other->set("Oper.UserPort.0.3.AdminState", "Down");
    other->set("Config.UserPort.0.3.Type", "E");
    EXPECT_EQ(pictureOf(*device), pictureOf(*other));
}

TEST(Scenario, ABladeThatIsNotPresentTakesItsPortsAlong) {
    const auto device = made("profile = \"director-8\"\n[[blade]]\nslot = 7\npresent = false\n");
    const auto other = sim::create("director-8");
    other->removeBlade(7);
    EXPECT_EQ(pictureOf(*device), pictureOf(*other));
}

TEST(Scenario, ABladeThatIsPresentIsANewOneOfItsType) {
    const auto device = made("profile = \"director-8\"\n[[blade]]\nslot = 7\npresent = true\ntype = \"FAN\"\n"
                             "serial = \"S\"\npart = \"P\"\ntemperature_sensors = \"1\"\nvoltage_sensors = \"0\"\n"
                             "[[blade]]\nslot = 1\npresent = true\n[[blade]]\nslot = 2\nstate = \"Down\"\n"
                             "diagnosis = \"Failed\"\nadmin_state = \"Offline\"\nfaults = \"F\"\n");
    const auto other = sim::create("director-8");
    other->removeBlade(7);
    other->insertBlade(7, {"FAN", "P", "S", 1, 0});
    other->removeBlade(1);
    other->insertBlade(1, {});
    other->set("Oper.Blade.2.OperState", "Down");
    other->set("Oper.Blade.2.DiagStatus", "Failed");
    other->set("Oper.Blade.2.AdminState", "Offline");
    other->set("Oper.Blade.2.FaultList", "F");
    EXPECT_EQ(pictureOf(*device), pictureOf(*other));
}

TEST(Scenario, AccountsComeAndGo) {
    const auto device = made("[[account]]\nname = \"ann\"\n[[account]]\nname = \"admin\"\npresent = false\n");
    EXPECT_EQ(device->get("Oper.Switch.FirstPotentialUser"), "operator");
    EXPECT_EQ(device->get("Oper.Switch.NextPotentialUser.monitor"), "ann");
}

TEST(Scenario, FabricIsMadeOfPeersLinksAndLoginsInWhateverOrder) {
    const auto device = made("[[login]]\nswitch = \"7\"\nport = 5\nnode_wwn = \"20:00:00:00:00:00:00:07\"\n"
                             "port_wwn = \"2100000000000007\"\n[[link]]\nends = [\"local:16\", \"7:60\"]\n"
                             "[[peer]]\nwwn = \"100000C0DD00B201\"\ndomain = 7\npriority = 1\nports = 64\n"
                             "topology_seconds = 4\ntopology_answers = false\n[fabric]\npriority = 200\n");
    ASSERT_EQ(device->peers().size(), 1U);
    EXPECT_EQ(device->peers()[0].ports, 64U);
    EXPECT_EQ(device->peers()[0].topology.seconds, 4U);
    EXPECT_FALSE(device->peers()[0].topology.answers);
    EXPECT_EQ(device->priority(), 200U);
    ASSERT_EQ(device->links().size(), 1U);
    EXPECT_EQ(device->links()[0].otherPort, 60U);
    EXPECT_EQ(device->nameServer().back().portWwn, "2100000000000007");
    EXPECT_EQ(device->nameServer().back().nodeWwn, "2000000000000007");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD00B201");
}

TEST(Scenario, WhatTheProfileHasCanChangeOrGo) {
    const auto device = made("profile = \"fabric-2\"\n[[peer]]\nwwn = \"100000C0DD02A002\"\ndomain = 9\n"
                             "[[link]]\nends = [\"local:16\", \"2:16\"]\npresent = false\n"
                             "[[login]]\nport_wwn = \"21000024FF020001\"\npresent = false\n"
                             "[fabric]\nprincipal = \"100000C0DD02A002\"");
    EXPECT_EQ(device->peers()[0].domain, 9U);
    EXPECT_TRUE(device->links().empty());
    EXPECT_EQ(device->nameServer().size(), 31U);
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecord.9.Hops"), "255");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), "100000C0DD02A002");
}

TEST(Scenario, APeerThatGoesTakesItsLinksAndDevicesAlong) {
    const auto device = made("profile = \"fabric-2\"\n[[peer]]\nwwn = \"100000C0DD02A002\"\npresent = false\n");
    const auto other = sim::create("fabric-2");
    other->removePeer("100000C0DD02A002");
    EXPECT_EQ(pictureOf(*device), pictureOf(*other));
}

TEST(Scenario, APeerThatIsRememberedHasARecordOutOfReach) {
    const auto device = made("[[peer]]\nwwn = \"100000C0DD00B201\"\ndomain = 7\nports = 0\nremembered = true\n"
                             "[[peer]]\nwwn = \"100000C0DD00B202\"\ndomain = 8\n");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecordList.255"), "1,7");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecord.7.Hops"), "255");
    EXPECT_EQ(device->peers()[0].ports, 0U);
    EXPECT_TRUE(device->links().empty());
}

TEST(Scenario, ZoningHasAliasesZonesAndSetsWithMembersOfEveryKind) {
    const auto device = made(R"(
[zoning]
active = "south"
[[zoning.alias]]
name = "ash"
members = ["21:00:00:00:00:00:00:01", "1:10"]
[[zoning.alias]]
name = "fir"
members = ["0A0B0C"]
[[zoning.zone]]
name = "oak"
type = "hard-acl"
members = ["21000000000000AB", "alias:ash"]
[[zoning.zone]]
name = "elm"
members = ["239:255", "FFFFFE"]
[[zoning.zone]]
name = "yew"
type = "hard-vpf"
[[zoning.zoneset]]
name = "north"
zones = ["oak", "elm"]
[[zoning.zoneset]]
name = "south"
zones = ["oak"]
[zoning.limits]
zones = 3
)");
    EXPECT_EQ(device->zoning(), simtest::orchard());
    EXPECT_EQ(device->get("Oper.Zoning.ActiveZoneSet"), "south");
    EXPECT_EQ(device->zoningLimits().zones, 3);
    EXPECT_EQ(device->zoningLimits().zonesets, sim::create()->zoningLimits().zonesets);
}

TEST(Scenario, ZoningMayBeLargerThanTheLimitsAllow) {
    const auto device = made("[zoning.limits]\nzones = 0\n[[zoning.zone]]\nname = \"oak\"\n");
    EXPECT_EQ(device->zoning().zones.size(), 1U);
    EXPECT_EQ(device->zoningLimits().zones, 0);
}

TEST(Scenario, RulesAreInForce) {
    const auto device =
        made("[[rule]]\ncall = \"zov_smlGet\"\nkey = \"Oper.Switch.*\"\nskip = 1\ntimes = 2\nstatus = 9\n"
             "[[rule]]\nkey = \"Oper.Switch.Nop\"\nvalue = \"no\"\ntimes = \"always\"\n");
    const simtest::Client client;
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 9);
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 9);
    EXPECT_EQ(client.get("Oper.Switch.WWN").status, 0);
    EXPECT_EQ(client.get("Oper.Switch.Nop").value, "no");
}

TEST(Scenario, RulesCanSayAllThatARuleHas) {
    const auto device =
        made("[[rule]]\ncall = \"zov_smlGet\"\nkey = 7\nstep = \"x\"\nafter = 90\nskip = 2\ntimes = \"3\"\n"
             "chance = 50\nseed = \"18446744073709551615\"\nresult = -3\nstatus = 5\nstale = true\n"
             "garbled = false\nnullhandle = true\ndelay = \"1500 ms\"\nhang = \"1 min\"\n"
             "do = [\"port 3 offline\", \"port 4 offline\"]\n"
             "[[rule]]\ncall = \"notification\"\nlate = \"5 s\"\nlost = true\nreordered = true\n"
             "value = { bytes = \"00FF\" }\n");
    const std::map<int, sim::Fault> rules = device->faults();
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(sim::perform(*device, "rule list"),
              "1: rule add call=zov_smlGet key=7 step=x after=90s skip=2 times=3 chance=50 seed=18446744073709551615 "
              "result=-3 status=5 stale nullhandle delay=1500ms hang=1min do=\"port 3 offline\\x0aport 4 offline\"\n"
              "2: rule add call=notification value=\"\\x00\\xff\" late=5s lost reordered");
}

TEST(Scenario, RulesCarryOutTheirCommandsOnTheirOwnSwitch) {
    const sim::Scenario scenario =
        sim::readScenario("[[rule]]\nkey = \"Oper.Switch.WWN\"\ndo = \"fault A\"\n", "a.toml");
    const auto one = sim::makeSwitch(scenario);
    const auto other = sim::makeSwitch(scenario);
    EXPECT_EQ(simtest::Client().get("Oper.Switch.WWN").status, 0);
    EXPECT_EQ(other->get("Oper.Switch.FaultList"), "A");
    EXPECT_EQ(one->get("Oper.Switch.FaultList"), "");
}

TEST(Scenario, StepsHaveTimesAndCommandsWithTheirPlaces) {
    const sim::Scenario scenario = sim::readScenario("[[step]]\nat = \"2 min\"\ndo = \"port 3 offline\"\n[[step]]\n"
                                                     "every = 10\nrepeat = 3\ndo = [\"fan 0 bad\",\n  \"fan 0 good\"]\n"
                                                     "[[step]]\nat = 0\nevery = \"1 h\"\ndo = \"who\"\n",
                                                     "a.toml");
    ASSERT_EQ(scenario.steps.size(), 3U);
    EXPECT_EQ(scenario.steps[0].at, std::chrono::minutes(2));
    EXPECT_EQ(scenario.steps[0].every.count(), 0);
    EXPECT_EQ(scenario.steps[0].commands[0].text, "port 3 offline");
    EXPECT_EQ(scenario.steps[1].at, std::chrono::seconds(10));
    EXPECT_EQ(scenario.steps[1].repeat, 3U);
    ASSERT_EQ(scenario.steps[1].commands.size(), 2U);
    EXPECT_EQ(scenario.steps[1].commands[1].at.line, 8U);
    EXPECT_EQ(scenario.steps[1].commands[1].at.column, 3U);
    EXPECT_EQ(scenario.steps[2].at.count(), 0);
    EXPECT_EQ(scenario.steps[2].every, std::chrono::hours(1));
    EXPECT_EQ(scenario.steps[2].repeat, 0U);
}
