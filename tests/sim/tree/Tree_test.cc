#include "sim/tree/Tree.h"

#include <set>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Tree, HoldsEveryAttributeOfTheDefaultSwitchInOrder) {
    const auto device = sim::create();
    const std::vector<std::string> expected = {
        "Oper.Switch.WWN",
        "Oper.Switch.WhoIsPrincipal",
        "Oper.Switch.OperState",
        "Oper.Switch.DomainID",
        "Oper.Switch.MaxPorts",
        "Oper.Switch.Nop",
        "Oper.Switch.TransparentModeFeature",
        "Oper.Switch.FCOEFeature",
        "Oper.Switch.EthernetPassthroughFeature",
        "Oper.Switch.EnhFaultMonFeature",
        "Config.Switch.TransparentMode",
        "Oper.Chassis.0.PowerSupplies",
        "Oper.Chassis.0.PowerSupply.0",
        "Oper.Chassis.0.PowerSupply.1",
        "Oper.Chassis.0.Fans",
        "Oper.Chassis.0.Fan.0",
        "Oper.Chassis.0.Fan.1",
        "Oper.Chassis.0.Fan.2",
        "Oper.Chassis.0.MaxSlots",
        "Oper.Switch.FaultList",
        "Oper.Blade.0.FaultList",
        "Config.Mfg.BrandName",
        "Config.Mfg.ChassisPartNum",
        "Config.Mfg.ChassisSerialNum",
        "Config.Mfg.PlanarPartNum",
        "Config.Mfg.ProductFeatureType",
    };
    EXPECT_EQ(device->keys(), expected);
}

TEST(Tree, EveryKeyIsThereOnceAndReadable) {
    const auto device = sim::create();
    const Client client;
    const std::vector<std::string> keys = device->keys();
    EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()).size(), keys.size());
    for (const std::string &key : keys) {
        EXPECT_EQ(client.get(key).status, 0) << key;
        EXPECT_EQ(client.get(key).value, device->get(key)) << key;
    }
}

TEST(Tree, KeysFollowTheNumberOfUnits) {
    const auto device = sim::create();
    const size_t before = device->keys().size();
    device->set("Oper.Chassis.0.Fans", "0");
    EXPECT_EQ(device->keys().size(), before - 3);
    device->set("Oper.Chassis.0.MaxSlots", "16");
    EXPECT_EQ(device->keys().size(), before - 3 + 15);
}

TEST(Tree, NeighboursOfAKeyAreNotTheKey) {
    const auto device = sim::create();
    const Client client;
    for (const char *key :
         {"", ".", "Oper", "Oper.Switch", "Oper.Switch.", "Oper.Switch.WW", "Oper.Switch.WWNX", "oper.switch.wwn",
          " Oper.Switch.WWN", "Oper.Switch.WWN ", "Oper.Chassis.0.Fan.%u", "Oper.Blade.0FaultList",
          "Oper.Blade..FaultList", "Oper.Blade.0.FaultList.0", "Oper.Blade.FaultList",
          "Oper.Blade.99999999999999999999.FaultList", "Oper.Blade.4294967296.FaultList"})
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << "'" << key << "'";
}
