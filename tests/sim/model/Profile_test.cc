#include "sim/model/Profile.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

TEST(Profile, DefaultIsAHealthySwitchOf24PortsAloneInItsFabric) {
    const auto device = sim::create();
    EXPECT_EQ(device->get("Oper.Switch.MaxPorts"), "24");
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), device->get("Oper.Switch.WWN"));
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_EQ(sim::create("fixed-24")->keys(), device->keys());
}

TEST(Profile, UnknownOneIsRefusedNamingTheKnown) {
    try {
        const auto device = sim::create("director");
        FAIL() << "made a switch of an unknown profile";
    } catch (const std::invalid_argument &error) {
        EXPECT_STREQ(error.what(), "no switch profile 'director'; there are: fixed-24");
    }
    EXPECT_THROW(sim::create(nullptr), std::invalid_argument);
    EXPECT_THROW(sim::create(""), std::invalid_argument);
}
