#include "sim/session/ConfigEdit.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

constexpr const char *kMode = "Config.Switch.TransparentMode";

class ConfigEdit : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override {
        ASSERT_EQ(client.registerFor({52, 78}), 0);
        ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    }
};

} // namespace

TEST_F(ConfigEdit, SavedAndActivatedItIsTheRunningConfiguration) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    EXPECT_EQ(client.get(kMode).value, "False");
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    EXPECT_EQ(client.get(kMode).value, "False");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(client.get(kMode).value, "True");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{52});
}

TEST_F(ConfigEdit, ActivatingWhatIsRunningAlreadySaysNothing) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "False"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(ConfigEdit, TheLastValueOfAKeyCounts) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "False"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "True");
}

TEST_F(ConfigEdit, SavedTwiceBeforeActivationTheLaterCounts) {
    for (const char *value : {"True", "False"}) {
        ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
        ASSERT_EQ(client.set(kMode, value), 0);
        ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    }
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0); // an empty edit keeps what was saved before it
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "False");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(ConfigEdit, CancelledItIsForgotten) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.CancelConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "False");
}

TEST_F(ConfigEdit, OneIsOpenAtATimeOfWhateverKind) {
    for (const char *first : {"Switch", "Cim"}) {
        const std::string command = std::string("Cmd.") + first;
        ASSERT_EQ(client.set(command + ".EditConfig"), 0);
        EXPECT_EQ(client.set("Cmd.Switch.EditConfig"), simtest::kEditOpen);
        EXPECT_EQ(client.set("Cmd.Cim.EditConfig"), simtest::kEditOpen);
        EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kEditOpen);
        ASSERT_EQ(client.set(command + ".CancelConfig"), 0);
    }
}

TEST_F(ConfigEdit, IsSavedAndCancelledByItsOwnKindOfCommandOnly) {
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kEditRequired);
    EXPECT_EQ(client.set("Cmd.Switch.CancelConfig"), simtest::kEditRequired);
    ASSERT_EQ(client.set("Cmd.Cim.CancelConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set("Cmd.Cim.SaveConfig"), simtest::kEditRequired);
    EXPECT_EQ(client.set("Cmd.Cim.CancelConfig"), simtest::kEditRequired);
    EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
}

TEST_F(ConfigEdit, WithoutOneThereIsNothingToSetSaveOrCancel) {
    EXPECT_EQ(client.set(kMode, "True"), simtest::kEditRequired);
    for (const char *command :
         {"Cmd.Switch.SaveConfig", "Cmd.Switch.CancelConfig", "Cmd.Cim.SaveConfig", "Cmd.Cim.CancelConfig"})
        EXPECT_EQ(client.set(command), simtest::kEditRequired) << command;
}

TEST_F(ConfigEdit, NothingSavedNothingActivated) {
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kNothingSaved);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kNothingSaved);
}

TEST_F(ConfigEdit, CimConfigurationRunsAsSoonAsItIsSavedAndIsAnnounced) {
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    EXPECT_EQ(device->get(kMode), "False");
    ASSERT_EQ(client.set("Cmd.Cim.SaveConfig"), 0);
    EXPECT_EQ(device->get(kMode), "True");
    EXPECT_EQ(client.codes(*device), (std::vector<int32_t>{52, 78}));
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kNothingSaved);
}

TEST_F(ConfigEdit, CimConfigurationSavedWithoutAChangeIsNotAnnounced) {
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "False"), 0);
    ASSERT_EQ(client.set("Cmd.Cim.SaveConfig"), 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(ConfigEdit, EndsWithAdminMode) {
    for (const char *release : {"Cmd.Switch.RelAdmin", "Cmd.Switch.CancelAdmin"}) {
        ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
        ASSERT_EQ(client.set(kMode, "True"), 0);
        ASSERT_EQ(client.set(release), 0);
        EXPECT_EQ(client.set(kMode, "True"), simtest::kAdminRequired);
        ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
        EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), simtest::kEditRequired);
    }
}

TEST_F(ConfigEdit, WhatWasSavedOutlivesAdminMode) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.RelAdmin"), 0);
    const Client other;
    ASSERT_EQ(other.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(other.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "True");
}

TEST_F(ConfigEdit, RefusesAValueTheAttributeCannotTake) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(kMode, "yes"), simtest::kBadValue);
    EXPECT_EQ(client.set("Config.Switch.Unheard", "1"), simtest::kNoSuchKey);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "False");
}

TEST_F(ConfigEdit, IsTheHoldersOwn) {
    const Client other;
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(other.set(kMode, "True"), simtest::kAdminRequired);
    EXPECT_EQ(other.set("Cmd.Switch.SaveConfig"), simtest::kAdminRequired);
}
