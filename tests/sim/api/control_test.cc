#include <stdexcept>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Control, AnotherVersionOfTheInterfaceGetsNothing) {
    EXPECT_EQ(zovsim_create("fixed-24", sim::kInterfaceVersion + 1), nullptr);
    EXPECT_EQ(zovsim_create("fixed-24", 0), nullptr);
    EXPECT_EQ(zovsim_create(nullptr, -1), nullptr);
}

TEST(Control, AProfileThatFailsLeavesNoSwitchBehind) {
    const auto device = sim::create();
    EXPECT_THROW(zovsim_create("none", sim::kInterfaceVersion), std::invalid_argument);
    const Client client;
    EXPECT_EQ(device->connectionCount(), 1U);
}

TEST(Control, IsFoundAtRunTimeByItsName) {
    using Create = sim::Simulator *(*)(const char *, int);
    const auto create = reinterpret_cast<Create>(dlsym(RTLD_DEFAULT, "zovsim_create"));
    ASSERT_NE(create, nullptr);
    const std::unique_ptr<sim::Simulator> device(create("fixed-24", sim::kInterfaceVersion));
    ASSERT_NE(device, nullptr);
    const Client client;
    EXPECT_EQ(device->connectionCount(), 1U);
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
}

TEST(Control, CallsOfTheControlInterfaceAreNotRecorded) {
    const auto device = sim::create();
    device->set("Oper.Switch.OperState", "Offline");
    device->get("Oper.Switch.OperState");
    device->keys();
    device->adminModeHolder();
    EXPECT_TRUE(device->records().empty());
}

TEST(Control, QuietIsWhatANewSwitchIs) {
    const auto device = sim::create();
    EXPECT_TRUE(device->waitUntilQuiet(std::chrono::milliseconds(0)));
}

TEST(Control, ASwitchApartIsReachedOnceItAcceptsConnections) {
    const auto first = sim::create();
    const auto apart = sim::createApart("director-8");
    const Client before;
    EXPECT_EQ(before.get("Oper.Switch.MaxPorts").value, "24");
    apart->acceptConnections();
    const Client after;
    EXPECT_EQ(after.get("Oper.Switch.MaxPorts").value, "64");
    first->acceptConnections();
    const Client again;
    EXPECT_EQ(again.get("Oper.Switch.MaxPorts").value, "24");
    EXPECT_EQ(after.get("Oper.Switch.MaxPorts").value, "64");
}

TEST(Control, ASwitchApartOfAnotherVersionIsNone) {
    EXPECT_EQ(zovsim_createApart("fixed-24", sim::kInterfaceVersion + 1), nullptr);
}

TEST(Control, TellsItsProfile) {
    EXPECT_EQ(sim::create("fixed-128")->profile(), "fixed-128");
}
