// What a served switch still knows after it was switched off and on again.

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/sim/Served.h"
#include "tests/sim/Zoning.h"

using simtest::Client;

namespace {

constexpr const char *kFile = "/tmp/state";

sim::ServerOptions keeping() {
    sim::ServerOptions options = simtest::options();
    options.stateFile = kFile;
    return options;
}

std::string kept() {
    std::ifstream input(kFile);
    return {std::istreambuf_iterator<char>(input), {}};
}

/// Before there is a client.
struct OverTheSocket {
    OverTheSocket() { simtest::goOverTheSocket(); }
};

class StateKeeper : public OverTheSocket, public testing::Test {
protected:
    /// The switch goes, and one like it as it was made comes.
    void switchOffAndOn() {
        server.reset();
        device = sim::create();
        server = sim::serve(*device, keeping());
    }

    /// An edit of the switch's configuration that is saved.
    static void saveName(const Client &client, const std::string &name) {
        EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
        EXPECT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
        EXPECT_EQ(client.set("Config.Snmp.SysDescr", name), 0);
        EXPECT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    }

    std::string name() const { return device->get("Config.Snmp.SysDescr"); }

    std::unique_ptr<sim::Simulator> device = sim::create();
    std::unique_ptr<sim::Server> server = sim::serve(*device, keeping());
    Client client;
};

} // namespace

TEST_F(StateKeeper, ZoningThatWasCommittedIsThereAgain) {
    EXPECT_EQ(simtest::commit(client, simtest::kPlantOrchard), simtest::allDone(simtest::kPlantOrchard.size()));
    const sim::ZoningDatabase committed = device->zoning();
    EXPECT_EQ(committed.zones.size(), 3U);
    switchOffAndOn();
    EXPECT_EQ(device->zoning(), committed);
    EXPECT_TRUE(device->activeZoning().zonesets.empty());
}

TEST_F(StateKeeper, TheActiveZoneSetIsThereAgainEvenIfItIsDefinedNoLonger) {
    device->setZoning(simtest::orchard());
    device->activateZoneset("north");
    const sim::ZoningDatabase active = device->activeZoning();
    EXPECT_EQ(simtest::commit(client, {"Cmd.Zoning.Zone.larch.Create"}), simtest::allDone(1));
    EXPECT_EQ(device->activeZoning(), active);
    switchOffAndOn();
    EXPECT_EQ(device->activeZoning(), active);
    ASSERT_EQ(device->zoning().zones.size(), 1U);
    EXPECT_EQ(device->zoning().zones[0].name, "larch");
}

TEST_F(StateKeeper, ConfigurationThatWasActivatedIsThereAgain) {
    const std::string before = name();
    const std::string bytes = "l\xE4rch \x01\"\x80\xFF";
    saveName(client, bytes);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(name(), bytes);
    EXPECT_NE(before, bytes);
    switchOffAndOn();
    EXPECT_EQ(name(), bytes);
}

TEST_F(StateKeeper, ConfigurationThatWasSavedStillWaitsToBeActivated) {
    const std::string before = name();
    saveName(client, "larch");
    switchOffAndOn();
    EXPECT_EQ(name(), before);
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(name(), "larch");
    switchOffAndOn();
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), simtest::kNothingSaved);
}

TEST_F(StateKeeper, TheBackupIsThereAgain) {
    const std::string before = name();
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.BackupConfig"), 0);
    saveName(client, "larch");
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    switchOffAndOn();
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.RestoreConfig"), 0);
    EXPECT_EQ(name(), before);
}

TEST_F(StateKeeper, WhatWasNotSavedIsGone) {
    const std::string before = name();
    EXPECT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    EXPECT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set("Config.Snmp.SysDescr", "larch"), 0);
    switchOffAndOn();
    EXPECT_EQ(name(), before);
}

TEST_F(StateKeeper, TheFileIsReplacedAndNotWrittenOver) {
    saveName(client, "larch");
    const std::string first = kept();
    std::ifstream reader(kFile); // opened before
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_NE(kept(), first);
    const std::string seen{std::istreambuf_iterator<char>(reader), {}};
    EXPECT_EQ(seen, first);
}

TEST_F(StateKeeper, WhatChangedWithoutAClientIsKeptWhenAskedForAndAtTheEnd) {
    device->setZoning(simtest::orchard());
    EXPECT_EQ(kept(), "") << "nobody has saved anything";
    server->keep();
    const std::string first = kept();
    EXPECT_NE(first.find("yew"), std::string::npos) << first;
    device->activateZoneset("north");
    const sim::ZoningDatabase active = device->activeZoning();
    switchOffAndOn();
    EXPECT_EQ(device->activeZoning(), active);
}

TEST_F(StateKeeper, NothingIsKeptOfASwitchThatStayedAsItWasMade) {
    switchOffAndOn();
    EXPECT_EQ(kept(), "");
}

TEST_F(StateKeeper, OneServerHasTheFile) {
    sim::ServerOptions other = keeping();
    other.socketPath = "/tmp/other";
    try {
        sim::serve(*device, other);
        ADD_FAILURE() << "served";
    } catch (const std::runtime_error &error) {
        EXPECT_STREQ(error.what(), "/tmp/state: another switch keeps its state there");
    }
    server.reset();
    EXPECT_NE(sim::serve(*device, other), nullptr);
}

TEST_F(StateKeeper, APlaceWhereThereCanBeNoFileIsRefused) {
    sim::ServerOptions other = keeping();
    other.socketPath = "/tmp/other";
    other.stateFile = "/tmp/none/state";
    try {
        sim::serve(*device, other);
        ADD_FAILURE() << "served";
    } catch (const std::runtime_error &error) {
        EXPECT_STREQ(error.what(), "/tmp/none/state.lock: No such file or directory");
    }
}

TEST_F(StateKeeper, AFileThatIsNoStateIsRefused) {
    server.reset();
    for (const char *text : {"", "larch", "{}", R"({"format": 2})", R"({"format": 1, "configuration": 5})"}) {
        std::ofstream(kFile) << text;
        EXPECT_THROW(sim::serve(*device, keeping()), std::runtime_error) << text;
        EXPECT_EQ(kept(), text);
    }
}

TEST_F(StateKeeper, AValueThatTheSwitchCannotHaveIsRefusedAndChangesNothing) {
    EXPECT_EQ(simtest::commit(client, simtest::kPlantOrchard), simtest::allDone(simtest::kPlantOrchard.size()));
    server.reset();
    device = sim::create();
    std::string text = kept();
    const std::string right = R"("Config.Switch.TransparentMode": ")";
    ASSERT_NE(text.find(right), std::string::npos) << text.substr(0, 2000);
    text.insert(text.find(right) + right.size(), "perhaps ");
    std::ofstream(kFile) << text;
    EXPECT_THROW(sim::serve(*device, keeping()), std::runtime_error);
    EXPECT_TRUE(device->zoning().zones.empty());
}
