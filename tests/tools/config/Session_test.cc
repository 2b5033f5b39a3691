#include "tools/dcache/config/session.h"

#include <gmock/gmock.h>

#include "sim/Simulator.h"
#include "tools/dcache/cache.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char *kTelnet = "Config.Services.TelnetEnable";
constexpr const char *kSsh = "Config.Services.SSHEnable";

const std::vector<ConfigEdit> kEdits = {{kTelnet, "False"}, {kSsh, "True"}};

class ConfigSessionTest : public testing::Test {
protected:
    ConfigSessionTest() {
        _switch->set(kTelnet, "True", sim::Notify::no);
        _switch->set(kSsh, "False", sim::Notify::no);
        connect();
        _switch->clearRecords();
    }

    /// The exit code and the words with which an edit ends.
    std::string failureOf(const std::vector<ConfigEdit> &edits) {
        return failureOf([&] { _session.edit(edits); });
    }

    std::string failureOf(const std::function<void()> &work) {
        try {
            work();
        } catch (const Stopped &stopped) {
            return std::to_string(stopped.exitCode) + ": " + stopped.what();
        } catch (const Failure &failure) {
            return failure.what();
        }
        return "none";
    }

    static sim::Fault refuse(const char *key, int times = 1) {
        sim::Fault fault;
        fault.key = key;
        fault.status = 7;
        fault.times = times;
        return fault;
    }

    /// The switch does this when it is given the key.
    void when(const char *key, std::function<void()> action) {
        sim::Fault fault;
        fault.call = "zov_smlSet";
        fault.key = key;
        fault.action = std::move(action);
        _switch->addFault(fault);
    }

    /// Every key that was set, in order.
    std::vector<std::string> keysSet() {
        std::vector<std::string> keys;
        for (const sim::Record &record : _switch->records())
            if (record.call == "zov_smlSet")
                keys.push_back(record.exchanges.front().key);
        return keys;
    }

    void expectNothingChanged() {
        EXPECT_EQ(_switch->get(kTelnet), "True");
        EXPECT_EQ(_switch->get(kSsh), "False");
        EXPECT_EQ(_switch->adminModeHolder(), 0u);
    }

    std::unique_ptr<sim::Simulator> _switch = sim::create();
    std::vector<std::string> _told;
    ConfigSession _session{[this](const std::string &words) { _told.push_back(words); }};
};

} // namespace

TEST_F(ConfigSessionTest, AnEditChangesEverythingAndTellsWhatItWasBefore) {
    const auto changes = _session.edit(kEdits);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].key, kTelnet);
    EXPECT_EQ(changes[0].before, "True");
    EXPECT_EQ(changes[0].now, "False");
    EXPECT_EQ(changes[1].before, "False");
    EXPECT_EQ(changes[1].now, "True");
    EXPECT_EQ(_switch->get(kTelnet), "False");
    EXPECT_EQ(_switch->get(kSsh), "True");
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
    EXPECT_THAT(keysSet(), ElementsAre("Cmd.Switch.ReqAdmin", "Cmd.Switch.ReqAdmin", "Cmd.Cim.EditConfig", kTelnet,
                                       kSsh, "Cmd.Cim.SaveConfig", "Cmd.Switch.CancelAdmin"));
    EXPECT_THAT(_told, IsEmpty());
}

TEST_F(ConfigSessionTest, TheFirstRefusalEndsAnEditOfWhichNothingIsKept) {
    EXPECT_EQ(failureOf({{kTelnet, "False"}, {kSsh, "perhaps"}, {"Config.Services.SSLEnable", "True"}}),
              "5: the switch refused Config.Services.SSHEnable=perhaps with status 6; nothing of the edit is kept");
    expectNothingChanged();
    EXPECT_THAT(keysSet(), ElementsAre("Cmd.Switch.ReqAdmin", "Cmd.Switch.ReqAdmin", "Cmd.Cim.EditConfig", kTelnet,
                                       kSsh, "Cmd.Cim.CancelConfig", "Cmd.Switch.CancelAdmin"));
}

TEST_F(ConfigSessionTest, ASettingThatTheSwitchDoesNotHaveIsToldAsSuch) {
    sim::Fault unsupported = refuse(kTelnet);
    unsupported.call = "zov_smlSet";
    unsupported.status = 103;
    _switch->addFault(unsupported);
    EXPECT_THAT(failureOf({{kTelnet, "False"}}),
                HasSubstr("TelnetEnable=False with status 103: it does not have this setting; nothing"));
}

TEST_F(ConfigSessionTest, ASecretIsNotToldWhenItIsRefused) {
    EXPECT_THAT(failureOf({{"Config.Snmp.WriteComm", "geheim"}}), HasSubstr("refused Config.Snmp.WriteComm=... with"));
}

TEST_F(ConfigSessionTest, ACancelThatIsRefusedIsMadeGoodByGivingAdminModeBack) {
    _switch->addFault(refuse("Cmd.Cim.CancelConfig"));
    EXPECT_THAT(failureOf({{kTelnet, "perhaps"}}), HasSubstr("5: the switch refused"));
    expectNothingChanged();
    EXPECT_EQ(keysSet().back(), "Cmd.Switch.CancelAdmin");
    EXPECT_THAT(_told, IsEmpty());
}

TEST_F(ConfigSessionTest, AnEditThatCannotBeOpenedGivesAdminModeBack) {
    _switch->addFault(refuse("Cmd.Cim.EditConfig"));
    EXPECT_EQ(failureOf(kEdits), "5: the switch refused to open an edit of its configuration");
    expectNothingChanged();
}

TEST_F(ConfigSessionTest, AnEditThatCannotBeSavedIsForgotten) {
    _switch->addFault(refuse("Cmd.Cim.SaveConfig"));
    EXPECT_EQ(failureOf(kEdits), "5: the switch refused to save the edit; nothing of the edit is kept");
    expectNothingChanged();
}

TEST_F(ConfigSessionTest, WhatASwitchKeepsOfAFailedEditIsTold) {
    sim::Fault fault = refuse("Cmd.Cim.SaveConfig");
    fault.action = [this] { _switch->set(kSsh, "True", sim::Notify::no); };
    _switch->addFault(fault);
    EXPECT_EQ(failureOf(kEdits),
              "5: the switch refused to save the edit; the switch kept the edit of Config.Services.SSHEnable");
}

TEST_F(ConfigSessionTest, ASaveThatWorkedIsNoFailureBecauseAdminModeWasNotTakenBackAtOnce) {
    _switch->addFault(refuse("Cmd.Switch.CancelAdmin"));
    EXPECT_EQ(_session.edit(kEdits).at(1).now, "True");
    EXPECT_EQ(_switch->get(kTelnet), "False");
    EXPECT_EQ(_switch->adminModeHolder(), 0u) << "the second try";
    EXPECT_THAT(_told, IsEmpty());
}

TEST_F(ConfigSessionTest, AdminModeThatTheSwitchDoesNotTakeBackIsTold) {
    _switch->addFault(refuse("Cmd.Switch.CancelAdmin", -1));
    _session.edit(kEdits);
    EXPECT_THAT(_told, ElementsAre("the switch did not take admin mode back; it ends with this connection"));
}

TEST_F(ConfigSessionTest, AnotherClientInAdminModeIsALockThatIsBusy) {
    _switch->holdAdminModeElsewhere(true);
    EXPECT_THAT(failureOf(kEdits), HasSubstr("3: the switch refused admin mode: another management client has it"));
    EXPECT_THAT(failureOf([this] { _session.backUp(); }), HasSubstr("3: the switch refused admin mode"));
    EXPECT_THAT(failureOf([this] { _session.restore(); }), HasSubstr("3: the switch refused admin mode"));
    EXPECT_EQ(_switch->adminModeHolder(), sim::kOtherClient);
    EXPECT_EQ(_switch->get(kTelnet), "True");
}

TEST_F(ConfigSessionTest, StoppedBetweenTwoSettingsAnEditIsForgotten) {
    when(kTelnet, [this] { _session.stop(); });
    EXPECT_EQ(failureOf(kEdits), "interrupted; nothing of the edit is kept");
    expectNothingChanged();
    EXPECT_FALSE(_session.isFinal());
    EXPECT_THAT(keysSet(), testing::Not(testing::Contains(kSsh)));
}

TEST_F(ConfigSessionTest, StoppedBeforeItBeginsNothingIsChanged) {
    _session.stop();
    EXPECT_EQ(failureOf(kEdits), "interrupted; nothing was changed");
    EXPECT_EQ(failureOf([this] { _session.restore(); }), "interrupted; nothing was changed");
    expectNothingChanged();
    EXPECT_THAT(keysSet(), testing::Each(testing::AnyOf("Cmd.Switch.ReqAdmin", "Cmd.Switch.CancelAdmin")));
}

TEST_F(ConfigSessionTest, ASaveOnItsWayIsFinal) {
    bool wasFinal = false;
    when("Cmd.Cim.SaveConfig", [&] { wasFinal = _session.isFinal(); });
    _session.edit(kEdits);
    EXPECT_TRUE(wasFinal);
}

TEST_F(ConfigSessionTest, ARestorationBringsBackWhatWasKept) {
    _session.backUp();
    _session.edit(kEdits);
    _session.restore();
    expectNothingChanged();
}

TEST_F(ConfigSessionTest, RefusedBackupsAndRestorationsTellTheStatusAndGiveAdminModeBack) {
    _switch->addFault(refuse("Cmd.Switch.BackupConfig"));
    EXPECT_EQ(failureOf([this] { _session.backUp(); }),
              "5: the switch refused to keep a copy of its configuration, with status 7");
    _switch->addFault(refuse("Cmd.Switch.RestoreConfig"));
    EXPECT_EQ(failureOf([this] { _session.restore(); }),
              "5: the switch refused to go back to the copy of its configuration, with status 7");
    expectNothingChanged();
}

TEST_F(ConfigSessionTest, AKeyThatCannotBeReadHasNoValue) {
    EXPECT_EQ(readKey(kTelnet), "True");
    EXPECT_EQ(readKey("Config.No%sSuch%nKey"), std::nullopt);
}
