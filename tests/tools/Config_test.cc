// `dcache config`: commands/config.cc, and the command line around it.
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"
#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/config/session.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using support::runDcache;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char *kTelnet = "Config.Services.TelnetEnable";
constexpr const char *kCommunity = "Config.Snmp.ReadComm";
const std::string kNote = "\nThis is a simulated switch: what was done to it ends with this command.\n";

class Config : public testing::Test {
protected:
    Config() {
        _switch->set(kTelnet, "True", sim::Notify::no);
        _switch->set(kCommunity, "before", sim::Notify::no);
    }

    /// The switch keeps a copy of what it has now.
    void keepCopy() {
        connect();
        ConfigSession([](const std::string &) {}).backUp();
    }

    /// While it is given this key, the program is interrupted, and the switch answers no more.
    void interruptForGoodAt(const char *key) {
        sim::Fault fault;
        fault.key = key;
        fault.action = [] {
            raise(SIGINT);
            for (;;)
                pause();
        };
        _switch->addFault(fault);
    }

    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

std::string tableOf(const Report &report) {
    return render(report, Format::table, false);
}

} // namespace

TEST_F(Config, AnEditShowsWhatItChanged) {
    EXPECT_EQ(tableOf(editConfiguration({{kTelnet, "False"}}, false)), "saved  yes\n"
                                                                       "\n"
                                                                       "KEY                           BEFORE  NOW\n"
                                                                       "Config.Services.TelnetEnable  True    False\n" +
                                                                           kNote);
    EXPECT_EQ(_switch->get(kTelnet), "False");
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
}

TEST_F(Config, AnEditIsToldToPrograms) {
    EXPECT_EQ(jsonOf(editConfiguration({{kTelnet, "False"}}, false)), support::parseJson(R"({
        "saved": true,
        "changes": [{"key": "Config.Services.TelnetEnable", "before": "True", "now": "False"}]})"));
}

TEST_F(Config, ASecretIsMaskedUnlessItIsAskedFor) {
    const Report masked = editConfiguration({{kCommunity, "geheim"}}, false);
    EXPECT_THAT(tableOf(masked), HasSubstr("Config.Snmp.ReadComm  (set)   (set)\n"));
    EXPECT_EQ(jsonOf(masked).at("changes").at(0).at("now"), true);
    const Report shown = editConfiguration({{kCommunity, "geheimer"}}, true);
    EXPECT_THAT(tableOf(shown), HasSubstr("Config.Snmp.ReadComm  geheim  geheimer\n"));
}

TEST_F(Config, ABackupIsDoneInAdminModeWhichIsGivenBack) {
    EXPECT_EQ(tableOf(backUpConfiguration()), "copy kept  yes\n" + kNote);
    EXPECT_EQ(jsonOf(backUpConfiguration()), support::parseJson(R"({"kept": true})"));
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
}

TEST_F(Config, ARestorationShowsTheSettingsThatChanged) {
    keepCopy();
    _switch->set(kTelnet, "False", sim::Notify::no);
    _switch->set(kCommunity, "geheim", sim::Notify::no);
    const std::string text = tableOf(restoreConfiguration(false));
    EXPECT_EQ(text, "restored  yes\n"
                    "\n"
                    "SETTING              BEFORE  NOW\n"
                    "Telnet               off     on\n"
                    "SNMP read community  (set)   (set)\n" +
                        kNote);
    EXPECT_EQ(_switch->get(kCommunity), "before");
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
}

TEST_F(Config, ARestorationIsToldToPrograms) {
    keepCopy();
    _switch->set(kCommunity, "geheim", sim::Notify::no);
    EXPECT_EQ(jsonOf(restoreConfiguration(true)).at("changes"), support::parseJson(R"([
        {"setting": "snmpReadCommunity", "label": "SNMP read community", "before": "geheim", "now": "before"}])"));
}

TEST_F(Config, ARestorationThatChangesNothingSaysSo) {
    keepCopy();
    EXPECT_THAT(tableOf(restoreConfiguration(false)), HasSubstr("The settings are what they were before.\n"));
}

TEST_F(Config, CtrlCBetweenTwoSettingsForgetsTheEditAndGivesAdminModeBack) {
    sim::Fault fault;
    fault.call = "zov_smlSet";
    fault.key = kTelnet;
    // The signal ends a wait of the main thread; only when that has stopped the work is this key answered.
    fault.action = [] { raise(SIGINT); };
    _switch->addFault(fault);
    sim::Fault slow;
    slow.call = "zov_smlSet";
    slow.key = "Config.Services.SSHEnable";
    slow.delay = std::chrono::milliseconds(300);
    _switch->addFault(slow);
    EXPECT_THAT(
        [] {
            editConfiguration({{kTelnet, "False"}, {"Config.Services.SSHEnable", "True"}}, false);
        },
        testing::ThrowsMessage<Failure>("interrupted; nothing of the edit is kept"));
    EXPECT_EQ(_switch->get(kTelnet), "True");
    EXPECT_EQ(_switch->adminModeHolder(), 0u);
}

TEST_F(Config, CtrlCWhileTheSwitchDoesNotAnswerEndsTheProgram) {
    EXPECT_EXIT(
        {
            interruptForGoodAt("Cmd.Cim.EditConfig");
            editConfiguration({{kTelnet, "False"}}, false);
        },
        testing::ExitedWithCode(1), "dcache: interrupted; the switch does not answer, and frees admin mode");
}

TEST_F(Config, CtrlCDuringASaveSaysThatItIsTooLate) {
    EXPECT_EXIT(
        {
            interruptForGoodAt("Cmd.Cim.SaveConfig");
            editConfiguration({{kTelnet, "False"}}, false);
        },
        testing::ExitedWithCode(1), "dcache: interrupted while the switch is at work on its configuration");
}

TEST(ConfigCommandLine, EditsSeveralSettings) {
    const auto run = runDcache(
        {"config", "edit", "Config.Services.TelnetEnable=False", "Config.Services.SSHEnable=True", "-o", "terse"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_EQ(run.out, "saved=true\n"
                       "changes.1.key=Config.Services.TelnetEnable\n"
                       "changes.1.before=True\n"
                       "changes.1.now=False\n"
                       "changes.2.key=Config.Services.SSHEnable\n"
                       "changes.2.before=False\n"
                       "changes.2.now=True\n");
}

TEST(ConfigCommandLine, ARefusedEditIsTheSwitchsRejection) {
    const auto run = runDcache({"config", "edit", "Config.Services.TelnetEnable=False", "Config.No.Such=1"});
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err, "dcache: the switch refused Config.No.Such=1 with status 5; nothing of the edit is kept\n");
}

TEST(ConfigCommandLine, ABackupLivesAsLongAsTheSimulatedSwitch) {
    const auto backup = runDcache({"config", "backup"});
    EXPECT_EQ(backup.exitCode, 0);
    EXPECT_EQ(backup.out, "copy kept  yes\n" + kNote);
    const auto restoration = runDcache({"config", "restore", "--secrets"});
    EXPECT_EQ(restoration.exitCode, 5);
    EXPECT_THAT(restoration.out, IsEmpty());
    EXPECT_THAT(restoration.err,
                HasSubstr("dcache: a simulated switch keeps a copy only as long as a command lasts\n"));
    EXPECT_THAT(restoration.err, HasSubstr("dcache: the switch refused to go back to the copy of its configuration"));
}

TEST(ConfigCommandLine, WithoutAVerbThereIsNothingToDo) {
    EXPECT_THAT(runDcache({"config"}).err, HasSubstr("there are: backup, restore, edit\n"));
}
