#include "sim/session/Backup.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/Peers.h"

using simtest::Client;
using simtest::pictureOf;
using simtest::shown;

namespace {

constexpr const char *kBackup = "Cmd.Switch.BackupConfig";
constexpr const char *kRestore = "Cmd.Switch.RestoreConfig";
constexpr const char *kTelnet = "Config.Services.TelnetEnable";

using Settings = std::vector<std::pair<std::string, std::string>>;

/// What clients may configure, in the order of the tree.
Settings configurationOf(const sim::Simulator &device) {
    Settings settings;
    for (const std::string &key : device.keys())
        if (key.rfind("Config.", 0) == 0 && key.rfind("Config.Mfg.", 0) != 0)
            settings.emplace_back(key, device.get(key));
    return settings;
}

/// Another value that the attribute can take.
std::string otherThan(const std::string &value) {
    constexpr std::pair<const char *, const char *> kOthers[] = {
        {"True", "False"}, {"False", "True"}, {"F", "FL"}, {"GL", "G"}, {"E", "Donor"}};
    for (const auto &[one, other] : kOthers)
        if (value == one)
            return other;
    return "x" + value.substr(0, 10);
}

class Backup : public testing::Test {
protected:
    explicit Backup(const char *profile = "fixed-24") : device(sim::create(profile)) {}

    std::unique_ptr<sim::Simulator> device;
    Client client;

    void SetUp() override { ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0); }

    void edit(const std::string &kind, const Settings &settings) const {
        ASSERT_EQ(client.set("Cmd." + kind + ".EditConfig"), 0);
        for (const auto &[key, value] : settings)
            ASSERT_EQ(client.set(key, value), 0) << key;
        ASSERT_EQ(client.set("Cmd." + kind + ".SaveConfig"), 0);
    }

    void activate(const Settings &settings) const {
        ASSERT_NO_FATAL_FAILURE(edit("Switch", settings));
        ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    }

    /// What comes when this is done.
    template <class Action> std::vector<std::string> toldOf(const Action &action) const {
        device->waitUntilQuiet(simtest::kPatience);
        const size_t before = client.events(0).size();
        action();
        device->waitUntilQuiet(simtest::kPatience);
        std::vector<std::string> texts = shown(client.events(0));
        texts.erase(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(before));
        return texts;
    }
};

class DirectorBackup : public Backup {
protected:
    DirectorBackup() : Backup("director-8") {}
};

class BackupOfEveryKind : public Backup, public testing::WithParamInterface<const char *> {
protected:
    BackupOfEveryKind() : Backup(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(All, BackupOfEveryKind, testing::Values("fixed-24", "director-8", "second-naming"));

} // namespace

TEST_P(BackupOfEveryKind, BringsEverySettingBackAsASavedEditWould) {
    ASSERT_EQ(client.registerFor({9, 15, 16, 17, 52, 57, 68, 69, 78}), 0);
    const bool hasIpv6 = device->get("Oper.Switch.IPv6Feature") == "True";
    Settings original;
    Settings changed;
    for (const auto &[key, value] : configurationOf(*device))
        if (hasIpv6 || key != "Config.System.IPv6Enable") {
            original.emplace_back(key, value);
            changed.emplace_back(key, otherThan(value));
        }
    ASSERT_EQ(original.size(), std::stoul(device->get("Oper.Switch.MaxPorts")) + (hasIpv6 ? 10 : 9));
    const std::vector<std::string> before = pictureOf(*device);
    ASSERT_EQ(client.set(kBackup), 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());

    ASSERT_NO_FATAL_FAILURE(activate(changed));
    for (const auto &[key, value] : changed)
        ASSERT_EQ(device->get(key), value) << key;
    const std::vector<std::string> edited = toldOf([&] { activate(original); });
    ASSERT_EQ(pictureOf(*device), before);

    ASSERT_NO_FATAL_FAILURE(activate(changed));
    EXPECT_EQ(toldOf([&] { EXPECT_EQ(client.set(kRestore), 0); }), edited);
    EXPECT_GT(edited.size(), original.size()); // addresses come and go with their IP versions
    EXPECT_EQ(pictureOf(*device), before);
}

TEST_F(Backup, IsRestoredAsOftenAsAskedAndTellsOfChangesOnly) {
    ASSERT_EQ(client.registerFor({57}), 0);
    ASSERT_EQ(client.set(kBackup), 0);
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
    for (int i = 0; i < 2; ++i) {
        device->set(kTelnet, "False", sim::Notify::no);
        EXPECT_EQ(toldOf([&] { EXPECT_EQ(client.set(kRestore), 0); }),
                  std::vector<std::string>{"57 Config.Services.TelnetEnable is now True"});
        EXPECT_EQ(device->get(kTelnet), "True");
    }
}

TEST_F(Backup, ThatWasNeverTakenIsNotRestored) {
    device->set(kTelnet, "False");
    EXPECT_EQ(client.set(kRestore), simtest::kNoBackup);
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_F(Backup, IsReplacedByTheNext) {
    ASSERT_EQ(client.set(kBackup), 0);
    device->set(kTelnet, "False");
    ASSERT_EQ(client.set(kBackup), 0);
    device->set(kTelnet, "True");
    ASSERT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_F(Backup, IsOfWhatRunsNotOfWhatIsBeingEdited) {
    for (const char *kind : {"Cmd.Switch", "Cmd.Cim"}) {
        const std::string commands = kind;
        ASSERT_EQ(client.set(commands + ".EditConfig"), 0);
        ASSERT_EQ(client.set(kTelnet, "False"), 0);
        EXPECT_EQ(client.set(kBackup), 0);
        ASSERT_EQ(client.set(commands + ".CancelConfig"), 0);
        device->set(kTelnet, "False");
        ASSERT_EQ(client.set(kRestore), 0);
        EXPECT_EQ(device->get(kTelnet), "True");
    }
}

TEST_F(Backup, LeavesAnOpenEditAsItIs) {
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    ASSERT_EQ(client.set(kTelnet, "False"), 0);
    ASSERT_EQ(client.set(kBackup), 0);
    ASSERT_EQ(client.set("Cmd.Cim.SaveConfig"), 0);
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_F(Backup, IsNotRestoredWhileAnEditIsOpen) {
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    EXPECT_EQ(client.set(kRestore), simtest::kEditOpen);
    ASSERT_EQ(client.set(kBackup), 0);
    ASSERT_EQ(client.set("Cmd.Cim.CancelConfig"), 0);
    device->set(kTelnet, "False");
    for (const char *kind : {"Cmd.Switch", "Cmd.Cim"}) {
        const std::string commands = kind;
        ASSERT_EQ(client.set(commands + ".EditConfig"), 0);
        EXPECT_EQ(client.set(kRestore), simtest::kEditOpen);
        EXPECT_EQ(device->get(kTelnet), "False");
        ASSERT_EQ(client.set(commands + ".CancelConfig"), 0); // it is still open
    }
    EXPECT_EQ(client.set(kRestore), 0);
}

TEST_F(Backup, NeitherKnowsNorTouchesWhatWaitsToBeActivated) {
    ASSERT_NO_FATAL_FAILURE(edit("Switch", {{kTelnet, "False"}}));
    ASSERT_EQ(client.set(kBackup), 0);
    ASSERT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get(kTelnet), "True");
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_F(Backup, NeedsAdminModeOfItsOwn) {
    const Client other;
    EXPECT_EQ(other.set(kBackup), simtest::kAdminRequired);
    EXPECT_EQ(client.set(kRestore), simtest::kNoBackup); // nothing was kept
    ASSERT_EQ(client.set(kBackup), 0);
    device->set(kTelnet, "False");
    EXPECT_EQ(other.set(kRestore), simtest::kAdminRequired);
    device->holdAdminModeElsewhere(true);
    EXPECT_EQ(client.set(kBackup), simtest::kAdminRequired);
    EXPECT_EQ(client.set(kRestore), simtest::kAdminRequired);
    EXPECT_EQ(device->get(kTelnet), "False");
}

TEST_F(Backup, OutlivesAdminModeAndItsClient) {
    ASSERT_EQ(client.set(kBackup), 0);
    device->holdAdminModeElsewhere(true);
    device->holdAdminModeElsewhere(false);
    device->set(kTelnet, "False");
    const Client other;
    ASSERT_EQ(other.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(other.set(kRestore), 0);
    EXPECT_EQ(device->get(kTelnet), "True");
}

TEST_F(Backup, OutlivesARestart) {
    ASSERT_EQ(client.set(kBackup), 0);
    device->set(kTelnet, "False");
    device->restart();
    EXPECT_EQ(client.set(kRestore), simtest::kAdminRequired);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get(kTelnet), "True");
}

TEST_F(Backup, IsEachSwitchsOwn) {
    ASSERT_EQ(client.set(kBackup), 0);
    const auto second = sim::create();
    const Client guest;
    ASSERT_EQ(guest.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(guest.set(kRestore), simtest::kNoBackup);
    EXPECT_EQ(client.set(kRestore), 0);
}

TEST_F(Backup, PassesOverPortsThatAreNoLongerThere) {
    ASSERT_EQ(client.set(kBackup), 0);
    device->set("Oper.Switch.MaxPorts", "12");
    device->set("Config.UserPort.0.11.Type", "G");
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get("Config.UserPort.0.11.Type"), "F");
    device->set("Oper.Switch.MaxPorts", "24");
    EXPECT_EQ(device->get("Config.UserPort.0.12.Type"), "GL"); // as a new port is
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get("Config.UserPort.0.12.Type"), "F");
}

TEST_F(DirectorBackup, ReachesThePortsOfAPulledBladeForWhenItComesBack) {
    ASSERT_EQ(client.set(kBackup), 0);
    device->set("Config.UserPort.0.0.Type", "G");
    device->removeBlade(1);
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get("Oper.UserPort.0.0.OperState"), "NotInstalled");
    device->insertBlade(1, {});
    EXPECT_EQ(device->get("Config.UserPort.0.0.Type"), "F");
}

TEST_F(Backup, PassesOverWhatIsNotSupported) {
    constexpr const char *kFeature = "Oper.Switch.IPv6Feature";
    constexpr const char *kEnable = "Config.System.IPv6Enable";
    ASSERT_EQ(client.set(kBackup), 0);
    device->set(kEnable, "True");
    device->set(kFeature, "False");
    device->set(kTelnet, "False");
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get(kEnable), "True");
    EXPECT_EQ(device->get(kTelnet), "True");
    ASSERT_EQ(client.set(kBackup), 0); // without it
    device->set(kFeature, "True");
    device->set(kEnable, "False");
    EXPECT_EQ(client.set(kRestore), 0);
    EXPECT_EQ(device->get(kEnable), "False");
}

TEST_F(Backup, IsRecordedLikeAnyCommand) {
    const std::string n = std::to_string(client.handle);
    device->clearRecords();
    client.set(kRestore);
    client.set(kBackup, "ignored");
    client.set(kRestore);
    EXPECT_EQ(simtest::linesOf(*device),
              (std::vector<std::string>{"zov_smlSet(" + n + ") = 30: Cmd.Switch.RestoreConfig=\"\" status 30",
                                        "zov_smlSet(" + n + ") = 0: Cmd.Switch.BackupConfig=\"\"",
                                        "zov_smlSet(" + n + ") = 0: Cmd.Switch.RestoreConfig=\"\""}));
}
