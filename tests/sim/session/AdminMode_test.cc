#include "sim/session/AdminMode.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class AdminMode : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    Client other;
};

} // namespace

TEST_F(AdminMode, IsHeldByNobodyAtFirst) {
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_F(AdminMode, HasOneHolderWhoMayAskAgain) {
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(other.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
}

TEST_F(AdminMode, BothCommandsGiveItBack) {
    for (const char *command : {"Cmd.Switch.RelAdmin", "Cmd.Switch.CancelAdmin"}) {
        ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
        ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0); // however often it was asked for
        EXPECT_EQ(client.set(command), 0);
        EXPECT_EQ(device->adminModeHolder(), 0U);
        EXPECT_EQ(client.set(command), simtest::kAdminNotHeld);
    }
}

TEST_F(AdminMode, IsNotGivenBackByWhoDoesNotHoldIt) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(other.set("Cmd.Switch.RelAdmin"), simtest::kAdminNotHeld);
    EXPECT_EQ(other.set("Cmd.Switch.CancelAdmin"), simtest::kAdminNotHeld);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
    ASSERT_EQ(client.set("Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(other.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), other.handle);
}

TEST_F(AdminMode, HeldElsewhereIsRefusedUntilGivenBack) {
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(device->adminModeHolder(), sim::kOtherClient);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), simtest::kAdminBusy);
    EXPECT_EQ(client.set("Cmd.Switch.RelAdmin"), simtest::kAdminNotHeld);
    device->holdAdminModeElsewhere(false);
    EXPECT_EQ(device->adminModeHolder(), 0U);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    device->holdAdminModeElsewhere(false); // not held elsewhere: a connection keeps it
    EXPECT_EQ(device->adminModeHolder(), client.handle);
}

TEST_F(AdminMode, TakenByForceEndsTheEdit) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kAdminRequired);
    device->holdAdminModeElsewhere(false);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kEditRequired);
}

TEST_F(AdminMode, IsEachSwitchsOwn) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    const auto second = sim::create();
    const Client guest;
    EXPECT_EQ(guest.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
    EXPECT_EQ(second->adminModeHolder(), guest.handle);
}
