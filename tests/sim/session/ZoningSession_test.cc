#include "sim/session/ZoningSession.h"

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;
using simtest::send;
using Statuses = std::vector<int32_t>;

namespace {

constexpr const char *kLock = "Cmd.Zoning.FabricLock.77";
constexpr const char *kUnlock = "Cmd.Zoning.FabricUnlock.77";
constexpr const char *kTakeAdmin = "Cmd.Switch.ReqAdmin";

class FabricLock : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    Client other;
};

class OpenZoningEdit : public FabricLock {
protected:
    void SetUp() override {
        ASSERT_EQ(send(client, simtest::kOpenEdit), Statuses(4, 0));
        ASSERT_EQ(send(client, simtest::kPlantOrchard), Statuses(simtest::kPlantOrchard.size(), 0));
    }

    /// Nothing of the edit came through, and the client can begin anew.
    void expectForgotten() {
        EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
        EXPECT_EQ(send(client,
                       {kTakeAdmin, kLock, "Cmd.Zoning.SaveConfig", "Cmd.Zoning.EditConfig", "Cmd.Zoning.SaveConfig"}),
                  (Statuses{0, 0, simtest::kEditRequired, 0, 0}));
        EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
    }
};

} // namespace

TEST_F(FabricLock, HasOneHolderWhoMayAskAgain) {
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(send(client, {kTakeAdmin, kLock, kLock}), Statuses(3, 0));
    EXPECT_EQ(device->zoningLockHolder(), client.handle);
    EXPECT_EQ(client.set(kUnlock), 0);
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(client.set(kUnlock), simtest::kLockNotHeld);
}

TEST_F(FabricLock, NeedsAdminModeAndSoHasOneConnectionAtMost) {
    EXPECT_EQ(client.set(kLock), simtest::kAdminRequired);
    EXPECT_EQ(client.set(kUnlock), simtest::kAdminRequired);
    ASSERT_EQ(send(client, {kTakeAdmin, kLock}), Statuses(2, 0));
    EXPECT_EQ(send(other, {kTakeAdmin, kLock, kUnlock}),
              (Statuses{simtest::kAdminBusy, simtest::kAdminRequired, simtest::kAdminRequired}));
    EXPECT_EQ(device->zoningLockHolder(), client.handle);
}

TEST_F(FabricLock, GoesWithAdminMode) {
    for (const char *release : {"Cmd.Switch.RelAdmin", "Cmd.Switch.CancelAdmin"}) {
        ASSERT_EQ(send(client, {kTakeAdmin, kLock, release}), Statuses(3, 0));
        EXPECT_EQ(device->zoningLockHolder(), 0U);
        EXPECT_EQ(send(other, {kTakeAdmin, kLock, release}), Statuses(3, 0));
    }
}

TEST_F(FabricLock, StaysWhenAdminModeIsNotGivenBack) {
    ASSERT_EQ(send(client, {kTakeAdmin, kLock}), Statuses(2, 0));
    EXPECT_EQ(other.set("Cmd.Switch.RelAdmin"), simtest::kAdminNotHeld);
    EXPECT_EQ(device->zoningLockHolder(), client.handle);
}

TEST_F(FabricLock, HeldElsewhereIsRefusedUntilGivenBack) {
    device->holdZoningLockElsewhere(true);
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
    EXPECT_EQ(send(client, {kTakeAdmin, kLock, "Cmd.Zoning.EditConfig", kUnlock}),
              (Statuses{0, simtest::kLockBusy, simtest::kLockRequired, simtest::kLockNotHeld}));
    EXPECT_EQ(client.set("Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
    device->holdZoningLockElsewhere(false);
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(send(client, {kTakeAdmin, kLock}), Statuses(2, 0));
    device->holdZoningLockElsewhere(false); // not held elsewhere: a connection keeps it
    EXPECT_EQ(device->zoningLockHolder(), client.handle);
}

TEST_F(FabricLock, HeldElsewhereOutlastsAdminModeTakenElsewhere) {
    device->holdZoningLockElsewhere(true);
    device->holdAdminModeElsewhere(true);
    device->holdAdminModeElsewhere(false);
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
}

TEST_F(FabricLock, IsEachSwitchsOwn) {
    ASSERT_EQ(send(client, {kTakeAdmin, kLock}), Statuses(2, 0));
    const auto second = sim::create();
    const Client guest;
    EXPECT_EQ(send(guest, {kTakeAdmin, kLock}), Statuses(2, 0));
    EXPECT_EQ(device->zoningLockHolder(), client.handle);
    EXPECT_EQ(second->zoningLockHolder(), guest.handle);
}

TEST_F(OpenZoningEdit, IsForgottenWithTheLock) {
    ASSERT_EQ(client.set(kUnlock), 0);
    expectForgotten();
}

TEST_F(OpenZoningEdit, IsForgottenWithAdminMode) {
    ASSERT_EQ(client.set("Cmd.Switch.RelAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Zoning.SaveConfig"), simtest::kAdminRequired);
    expectForgotten();
}

TEST_F(OpenZoningEdit, IsForgottenWhenTheLockIsTakenAway) {
    device->holdZoningLockElsewhere(true);
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
    EXPECT_EQ(device->adminModeHolder(), client.handle);
    EXPECT_EQ(send(client, simtest::kCloseEdit), (Statuses{simtest::kLockRequired, simtest::kLockNotHeld, 0}));
    device->holdZoningLockElsewhere(false);
    expectForgotten();
}

TEST_F(OpenZoningEdit, IsForgottenWhenAdminModeIsTakenAway) {
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(send(client, simtest::kCloseEdit),
              (Statuses{simtest::kAdminRequired, simtest::kAdminRequired, simtest::kAdminNotHeld}));
    device->holdAdminModeElsewhere(false);
    expectForgotten();
}

TEST_F(OpenZoningEdit, IsForgottenWhenTheSwitchRestarts) {
    device->restart();
    EXPECT_EQ(device->zoningLockHolder(), 0U);
    EXPECT_EQ(send(client, simtest::kCloseEdit),
              (Statuses{simtest::kAdminRequired, simtest::kAdminRequired, simtest::kAdminNotHeld}));
    expectForgotten();
}

TEST_F(OpenZoningEdit, SurvivesTheLockBeingAskedForAgain) {
    EXPECT_EQ(send(client, {kTakeAdmin, kLock}), Statuses(2, 0));
    EXPECT_EQ(send(client, simtest::kCloseEdit), Statuses(3, 0));
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(OpenZoningEdit, HasNothingToDoWithEditsOfOtherConfigurations) {
    EXPECT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.CancelConfig"), 0);
    EXPECT_EQ(send(client, simtest::kCloseEdit), Statuses(3, 0));
    EXPECT_EQ(device->zoning(), simtest::orchard());
}

TEST_F(OpenZoningEdit, StolenBetweenTheCommandsOfABatchItIsNotSaved) {
    sim::Fault fault; // just before the batch that would save
    fault.call = "zov_smlSetBatch";
    fault.action = [this] {
        device->holdZoningLockElsewhere(true);
        device->holdZoningLockElsewhere(false);
    };
    device->addFault(fault);
    EXPECT_EQ(send(client, simtest::kCloseEdit), (Statuses{simtest::kLockRequired, simtest::kLockNotHeld, 0}));
    EXPECT_EQ(device->zoning(), sim::ZoningDatabase());
}
