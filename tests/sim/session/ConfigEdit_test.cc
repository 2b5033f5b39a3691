#include "sim/session/ConfigEdit.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

constexpr const char *kMode = "Config.Switch.TransparentMode";
constexpr const char *kTelnet = "Config.Services.TelnetEnable";

class ConfigEdit : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override {
        ASSERT_EQ(client.registerFor({52, 78}), 0);
        ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    }
};

/// Edits of either configuration, by the middle part of their commands.
class EveryConfigEdit : public ConfigEdit, public testing::WithParamInterface<const char *> {
protected:
    int32_t run(const char *command) const {
        return client.set(std::string("Cmd.") + GetParam() + "." + command + "Config");
    }

    /// Makes what was saved the running configuration, if it is not already; there must be something saved.
    int32_t activate() const { return std::string(GetParam()) == "Cim" ? 0 : client.set("Cmd.Switch.ActConfig"); }
};

INSTANTIATE_TEST_SUITE_P(OfEitherKind, EveryConfigEdit, testing::Values("Switch", "Cim"));

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

TEST_F(ConfigEdit, CancelledItLeavesWhatWasSavedBefore) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "False"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.CancelConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kMode), "True");
    EXPECT_EQ(device->get(kTelnet), "True");
}

TEST_F(ConfigEdit, WhatWasSavedOutlivesTheLossOfAdminMode) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kAdminRequired);
    EXPECT_EQ(device->get(kTelnet), "True");
    device->holdAdminModeElsewhere(false);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kTelnet), "False");
    EXPECT_EQ(device->get(kMode), "False");
}

TEST_F(ConfigEdit, ActivationPassesOverWhatIsNoLongerThereOrSupported) {
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    ASSERT_EQ(client.set("Config.System.IPv6Enable", "True"), 0);
    ASSERT_EQ(client.set("Config.UserPort.0.23.Type", "F"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    device->set("Oper.Switch.IPv6Feature", "False");
    device->set("Oper.Switch.MaxPorts", "23");
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kTelnet), "False");
    device->set("Oper.Switch.IPv6Feature", "True");
    device->set("Oper.Switch.MaxPorts", "24");
    EXPECT_EQ(device->get("Config.System.IPv6Enable"), "False");
    EXPECT_EQ(device->get("Config.UserPort.0.23.Type"), "GL");
}

TEST_P(EveryConfigEdit, KeepsEveryKeyThatWasSetAndNoOther) {
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Config.UserPort.0.3.Type", "FL"), 0);
    ASSERT_EQ(client.set("Config.Snmp.ReadComm", "monitors"), 0);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    device->restart(); // it is not forgotten either
    EXPECT_EQ(device->get(kMode), "True");
    EXPECT_EQ(device->get("Config.UserPort.0.3.Type"), "FL");
    EXPECT_EQ(device->get("Config.UserPort.0.4.Type"), "F");
    EXPECT_EQ(device->get("Config.Snmp.ReadComm"), "monitors");
    EXPECT_EQ(device->get(kTelnet), "True");
}

TEST_P(EveryConfigEdit, ForgetsWhatWasCancelled) {
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(run("Cancel"), 0);
    EXPECT_EQ(client.set(kMode, "True"), simtest::kEditRequired);
    EXPECT_EQ(run("Save"), simtest::kEditRequired);
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(device->get(kMode), "False");
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_P(EveryConfigEdit, IsForgottenWhenAdminModeIsTakenAwayInTheMiddle) {
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(client.set(kTelnet, "False"), simtest::kAdminRequired);
    for (const char *command : {"Save", "Cancel", "Edit"})
        EXPECT_EQ(run(command), simtest::kAdminRequired) << command;
    device->holdAdminModeElsewhere(false);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    for (const char *command : {"Save", "Cancel"})
        EXPECT_EQ(run(command), simtest::kEditRequired) << command;
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(device->get(kMode), "False");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_P(EveryConfigEdit, IsForgottenWhenTheSwitchRestarts) {
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    device->restart();
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(run("Save"), simtest::kEditRequired);
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(device->get(kMode), "False");
}

TEST_P(EveryConfigEdit, IsNeitherOpenedNorEndedByAClientThatDoesNotHoldAdminMode) {
    const Client other;
    const std::string commands = std::string("Cmd.") + GetParam() + ".";
    EXPECT_EQ(other.set(commands + "EditConfig"), simtest::kAdminRequired);
    EXPECT_EQ(run("Save"), simtest::kEditRequired); // none is open
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    for (const char *command : {"SaveConfig", "CancelConfig", "EditConfig"})
        EXPECT_EQ(other.set(commands + command), simtest::kAdminRequired) << command;
    EXPECT_EQ(other.set(kMode, "False"), simtest::kAdminRequired);
    EXPECT_EQ(other.set("Cmd.Switch.CancelAdmin"), simtest::kAdminNotHeld);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(device->get(kMode), "True");
}

TEST_P(EveryConfigEdit, RefusesAtOnceWhatCannotBeSetAndKeepsTheRest) {
    device->set("Oper.Switch.IPv6Feature", "False", sim::Notify::no);
    ASSERT_EQ(run("Edit"), 0);
    std::vector<SmlMessage> messages = {
        simtest::messageOf(kMode, "True"),
        simtest::messageOf(kTelnet, "off"),
        simtest::messageOf("Oper.Switch.ActiveVer", "9"),
        simtest::messageOf("Config.Mfg.BrandName", "x"),
        simtest::messageOf("Config.System.IPv6Enable", "True"),
        simtest::messageOf("Config.UserPort.0.24.Type", "F"),
        simtest::messageOf("Config.Services.SSHEnable", "True"),
    };
    ASSERT_EQ(zov_smlSetBatch(client.handle, messages.data(), static_cast<int32_t>(messages.size())), 0);
    std::vector<int32_t> statuses;
    statuses.reserve(messages.size());
    for (const SmlMessage &message : messages)
        statuses.push_back(message.status);
    EXPECT_EQ(statuses, (std::vector<int32_t>{0, simtest::kBadValue, simtest::kReadOnly, simtest::kReadOnly,
                                              simtest::kNotSupported, simtest::kNoSuchKey, 0}));
    const std::string version = device->get("Oper.Switch.ActiveVer");
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(device->get(kMode), "True");
    EXPECT_EQ(device->get("Config.Services.SSHEnable"), "True");
    EXPECT_EQ(device->get(kTelnet), "True");
    EXPECT_EQ(device->get("Oper.Switch.ActiveVer"), version);
    EXPECT_EQ(device->get("Config.System.IPv6Enable"), "False");
}

TEST_P(EveryConfigEdit, TellsOfItsKeysInTheOrderInWhichTheyWereFirstSet) {
    Client listener;
    ASSERT_EQ(listener.registerFor({15, 52, 57}), 0);
    ASSERT_EQ(run("Edit"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(client.set(kMode, "True"), 0);
    ASSERT_EQ(client.set("Config.UserPort.0.3.Type", "FL"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(run("Save"), 0);
    ASSERT_EQ(activate(), 0);
    EXPECT_EQ(listener.codes(*device), (std::vector<int32_t>{57, 52, 15}));
}
