#include <algorithm>

#include <gtest/gtest.h>

#include "sim/Record.h"
#include "tests/sim/Client.h"
#include "tests/sim/verbs/Commands.h"

using simtest::linesIn;
using simtest::refusalOf;

TEST(AttributeVerbs, EveryAttributeIsListedWithItsValue) {
    const auto device = sim::create("director-8");
    EXPECT_EQ(linesIn(sim::perform(*device, "keys")), device->keys());
    std::vector<std::string> lines;
    for (const std::string &key : device->keys())
        lines.push_back(key + " " + sim::quoted(device->get(key)));
    EXPECT_EQ(linesIn(sim::perform(*device, "values")), lines);
}

TEST(AttributeVerbs, PatternsPickAttributes) {
    const auto device = sim::create();
    EXPECT_EQ(sim::perform(*device, "keys Oper.Chassis.0.Fan.*"),
              "Oper.Chassis.0.Fan.0\nOper.Chassis.0.Fan.1\nOper.Chassis.0.Fan.2");
    EXPECT_EQ(sim::perform(*device, "values *.PowerSupply.1"), "Oper.Chassis.0.PowerSupply.1 \"Good\"");
    EXPECT_EQ(sim::perform(*device, "keys nothing*"), "");
    EXPECT_EQ(sim::perform(*device, "keys \"\""), "");
}

TEST(AttributeVerbs, EveryAttributeThatCanBeSetIsSetByItsLineOfValues) {
    const auto device = sim::create("director-8");
    size_t count = 0;
    for (const std::string &line : linesIn(sim::perform(*device, "values"))) {
        try {
            sim::perform(*device, "set " + line);
            ++count;
        } catch (const sim::CommandError &error) {
            EXPECT_NE(std::string(error.what()).find("follows from other attributes"), std::string::npos) << line;
        }
    }
    EXPECT_GT(count, 300U);
}

TEST(AttributeVerbs, AChangeIsAnnouncedUnlessSilent) {
    const auto device = sim::create();
    simtest::Client client;
    ASSERT_EQ(client.registerFor({17, 33}), 0);
    sim::perform(*device, "set Config.Snmp.SysDescr \"rack 4\"\nset Oper.Chassis.0.Fan.1 Bad silently");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{17});
    EXPECT_EQ(sim::perform(*device, "get Config.Snmp.SysDescr\nget Oper.Chassis.0.Fan.1"), "rack 4\nBad");
}

TEST(AttributeVerbs, UnknownKeysAreRefused) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "get Oper.None"), "the switch has no attribute 'Oper.None'");
    EXPECT_EQ(refusalOf(*device, "set Oper.None 1"), "the switch has no attribute 'Oper.None'");
}
