#include "sim/tree/Tree.h"

#include <set>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Tree, HoldsEveryAttributeOfTheDefaultSwitchInOrder) {
    const auto device = sim::create();
    std::vector<std::string> expected = {
        "Oper.Switch.WWN",
        "Oper.Switch.WhoIsPrincipal",
        "Oper.Switch.OperState",
        "Oper.Switch.DomainID",
        "Oper.Switch.Nop",
        "Oper.Switch.TransparentModeFeature",
        "Oper.Switch.FCOEFeature",
        "Oper.Switch.EthernetPassthroughFeature",
        "Oper.Switch.EnhFaultMonFeature",
        "Config.Switch.TransparentMode",
        "Oper.Switch.MaxPorts",
    };
    const auto append = [&](std::initializer_list<const char *> keys) {
        expected.insert(expected.end(), keys.begin(), keys.end());
    };
    for (const char *attribute :
         {"Oper.UserPort.0.%u.OperState", "Oper.UserPort.0.%u.AdminState", "Config.UserPort.0.%u.Type",
          "Oper.UserPort.0.%u.DDM.Supported", "Oper.UserPort.0.%u.SFPData0_31", "Oper.UserPort.0.%u.SFPData32_63",
          "Oper.UserPort.0.%u.SFPSerialNumber", "Oper.UserPort.0.%u.WWN"})
        for (int port = 0; port < 24; ++port) {
            std::string key = attribute;
            expected.push_back(key.replace(key.find("%u"), 2, std::to_string(port)));
        }
    append({
        "Oper.Chassis.0.PowerSupplies",
        "Oper.Chassis.0.PowerSupply.0",
        "Oper.Chassis.0.PowerSupply.1",
        "Oper.Chassis.0.Fans",
        "Oper.Chassis.0.Fan.0",
        "Oper.Chassis.0.Fan.1",
        "Oper.Chassis.0.Fan.2",
        "Oper.Switch.FaultList",
        "Oper.Chassis.0.MaxSlots",
        "Oper.Blade.0.OperState",
        "Oper.Blade.0.AdminState",
        "Oper.Blade.0.DiagStatus",
        "Oper.Blade.0.Type",
        "Oper.Blade.0.PlanarPartNum",
        "Oper.Blade.0.BoardSerialNum",
        "Oper.Blade.0.TempSensors",
        "Oper.Blade.0.VoltageSensors",
        "Oper.Blade.0.FaultList",
        "Oper.Switch.FirstPotentialUser",
        "Oper.Switch.NextPotentialUser.admin",
        "Oper.Switch.NextPotentialUser.operator",
        "Oper.Switch.NextPotentialUser.monitor",
        "Config.Mfg.BrandName",
        "Config.Mfg.ChassisPartNum",
        "Config.Mfg.ChassisSerialNum",
        "Config.Mfg.PlanarPartNum",
        "Config.Mfg.ProductFeatureType",
        "Config.Services.TelnetEnable",
        "Config.Services.SSHEnable",
        "Config.Services.EmbeddedGUIEnable",
        "Config.Services.SSLEnable",
        "Config.Services.SNMPEnable",
        "Config.Snmp.ReadComm",
        "Config.Snmp.SysDescr",
        "Oper.Switch.IPv4Feature",
        "Config.System.IPv4Enable",
        "Oper.System.Eth.0.IPv4Address",
        "Oper.Switch.IPv6Feature",
        "Config.System.IPv6Enable",
        "Oper.System.Eth.0.IPv6Address.0",
        "Oper.Switch.ActiveVer",
        "Oper.Switch.OemActiveVer",
        "Oper.Switch.Type",
        "Oper.Eport.LsdbRecordList.255",
        "Oper.Eport.FirstLsdbRecord",
        "Oper.Eport.NextLsdbRecord.1",
        "Oper.Eport.LsdbRecord.1.WWN",
        "Oper.Eport.LsdbRecord.1.Hops",
        "Oper.Eport.LsdbRecord.1.NumberOfLinks",
        "Oper.NameServerAll.1.FirstNsEntry",
    });
    for (const char *port :
         {"00", "01", "02", "03", "04", "05", "06", "07", "08", "09", "0A", "0B", "0C", "0D", "0E", "0F"})
        expected.push_back(std::string("Oper.NameServerAll.1.NextNsEntry.01") + port + "00");
    expected.push_back("Oper.TopologyAll.1.PortEntries");
    for (int port = 0; port < 24; ++port)
        expected.push_back("Oper.TopologyAll.1.Entry." + std::to_string(port) + ".PortWwn");
    for (const char *key : {"ActiveChecksum", "InactiveChecksum", "ActiveZoneSet"})
        expected.push_back(std::string("Oper.Zoning.") + key);
    EXPECT_EQ(device->keys(), expected);
}

TEST(Tree, EveryKeyIsThereOnceAndReadable) {
    const auto device = sim::create("director-8");
    const Client client;
    const std::vector<std::string> keys = device->keys();
    const std::set<std::string> lastOnes = {"Oper.Switch.NextPotentialUser.monitor", "Oper.Eport.NextLsdbRecord.1",
                                            "Oper.NameServerAll.1.NextNsEntry.012900"};
    EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()).size(), keys.size());
    for (const std::string &key : keys) {
        const bool endsAWalk = lastOnes.count(key) != 0;
        EXPECT_EQ(client.get(key).status, endsAWalk ? simtest::kEndOfList : 0) << key;
        EXPECT_EQ(client.get(key).value, device->get(key)) << key;
    }
}

TEST(Tree, KeysFollowTheNumberOfUnits) {
    const auto device = sim::create();
    const size_t before = device->keys().size();
    device->set("Oper.Chassis.0.Fans", "0");
    EXPECT_EQ(device->keys().size(), before - 3);
    device->set("Oper.Chassis.0.MaxSlots", "16");
    EXPECT_EQ(device->keys().size(), before - 3 + 15 * 9);
    device->set("Oper.Switch.MaxPorts", "25");
    EXPECT_EQ(device->keys().size(), before - 3 + 15 * 9 + 9);
    device->removeAccount("operator");
    EXPECT_EQ(device->keys().size(), before - 3 + 15 * 9 + 9 - 1);
}

TEST(Tree, NeighboursOfAKeyAreNotTheKey) {
    const auto device = sim::create();
    const Client client;
    for (const char *key : {"",
                            ".",
                            "Oper",
                            "Oper.Switch",
                            "Oper.Switch.",
                            "Oper.Switch.WW",
                            "Oper.Switch.WWNX",
                            "oper.switch.wwn",
                            " Oper.Switch.WWN",
                            "Oper.Switch.WWN ",
                            "Oper.Chassis.0.Fan.%u",
                            "Oper.Switch.NextPotentialUser.%s",
                            "Oper.Switch.NextPotentialUser.",
                            "Oper.Switch.NextPotentialUser",
                            "Oper.Switch.NextPotentialUser.admin.",
                            "Oper.UserPort.0.0.DDM",
                            "Oper.UserPort.0.1",
                            "Oper.UserPort.1.0.OperState",
                            "Config.UserPort.0.0.OperState",
                            "Oper.Blade.0FaultList",
                            "Oper.Blade..FaultList",
                            "Oper.Blade.0.FaultList.0",
                            "Oper.Blade.FaultList",
                            "Oper.Blade.99999999999999999999.FaultList",
                            "Oper.Blade.4294967296.FaultList",
                            "Oper.TopologyAll.1.Entry.%u.PortWwn",
                            "Oper.TopologyAll.1.Entry.PortWwn",
                            "Oper.TopologyAll.1.Entry..PortWwn",
                            "Oper.TopologyAll..Entry.0.PortWwn",
                            "Oper.TopologyAll.1.Entry.0.0.PortWwn",
                            "Oper.TopologyAll.1.0.Entry.0.PortWwn",
                            "Oper.TopologyAll.1.Entry.00.PortWwn",
                            "Oper.TopologyAll.01.Entry.0.PortWwn",
                            "Oper.TopologyAll.1.Entry.24.PortWwn",
                            "Oper.TopologyAll.2.Entry.0.PortWwn",
                            "Oper.TopologyAll.1.Entry.0.PortWwn ",
                            "Oper.TopologyAll.1.entry.0.PortWwn",
                            "Oper.TopologyAll.1.Entry.Entry.0.PortWwn",
                            "Oper.TopologyAll.PortWwn",
                            "Oper.System.Eth.0.IPv6Address",
                            "Oper.System.Eth.0.IPv6Address.1",
                            "Oper.System.Eth.1.IPv4Address",
                            "Config.Mfg.ActiveVer"})
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << "'" << key << "'";
}

TEST(Tree, AKeyOfTwoNumbersIsFoundByBoth) {
    const auto device = sim::create("fabric-2");
    const Client client;
    EXPECT_EQ(client.get("Oper.TopologyAll.1.Entry.2.PortWwn").value, "200200C0DD02A001");
    EXPECT_EQ(client.get("Oper.TopologyAll.2.Entry.1.PortWwn").value, "200100C0DD02A002");
    EXPECT_EQ(client.get("Oper.TopologyAll.2.Entry.23.PortWwn").value, "201700C0DD02A002");
    EXPECT_EQ(client.get("Oper.TopologyAll.2.Entry.24.PortWwn").status, simtest::kNoSuchKey);
}

TEST(Tree, EveryKeyOfAFabricIsFoundAgain) {
    const auto device = sim::create("fabric-12");
    const std::vector<std::string> keys = device->keys();
    EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()).size(), keys.size());
    for (const std::string &key : keys)
        EXPECT_NO_THROW(device->get(key)) << key;
    // 12 domains: 4 keys of a record, 42 link ends of 2 keys, 160 devices, 2 cores of 64 ports and 10 edges of 24.
    const size_t ofTheFabric = 2 + 12 * 4 + 42 * 2 + 12 + 160 + 12 + 2 * 64 + 10 * 24;
    EXPECT_EQ(keys.size(), sim::create()->keys().size() - (2 + 4 + 1 + 16 + 1 + 24) + ofTheFabric);
}
