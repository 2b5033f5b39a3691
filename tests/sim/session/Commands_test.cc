#include "sim/session/Commands.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

struct Command {
    const char *key;
    int32_t withoutAdmin; ///< its status for a client that does not hold admin mode
};

void PrintTo(const Command &command, std::ostream *out) {
    *out << command.key;
}

class Commands : public testing::TestWithParam<Command> {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
};

INSTANTIATE_TEST_SUITE_P(Every, Commands,
                         testing::Values(Command{"Cmd.Switch.ReqAdmin", 0},
                                         Command{"Cmd.Switch.RelAdmin", simtest::kAdminNotHeld},
                                         Command{"Cmd.Switch.CancelAdmin", simtest::kAdminNotHeld},
                                         Command{"Cmd.Switch.EditConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Switch.SaveConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Switch.ActConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Switch.CancelConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Switch.BackupConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Switch.RestoreConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Cim.EditConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Cim.SaveConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Cim.CancelConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.FabricLock.77", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.FabricUnlock.77", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.EditConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.ClearConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.SaveConfig", simtest::kAdminRequired},
                                         Command{"Cmd.Zoning.Alias.ash.Create", simtest::kAdminRequired}));

} // namespace

TEST_P(Commands, WithoutAdminModeItIsRefused) {
    EXPECT_EQ(client.set(GetParam().key), GetParam().withoutAdmin);
}

TEST_P(Commands, CannotBeRead) {
    EXPECT_EQ(client.get(GetParam().key).status, simtest::kNotReadable);
    EXPECT_EQ(client.getBatch({GetParam().key})[0].status, simtest::kNotReadable);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST_P(Commands, DoesNotLookAtItsValue) {
    SmlMessage message = simtest::messageOf(GetParam().key);
    std::memset(message.value, 'v', sizeof message.value); // no terminator anywhere
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 1), 0);
    EXPECT_EQ(message.status, GetParam().withoutAdmin);
}

TEST(UnknownCommand, IsRefusedAsAnUnknownKey) {
    const auto device = sim::create();
    const Client client;
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    for (const char *key : {"Cmd.", "Cmd.Switch", "Cmd.Switch.ReqAdmin.1", "Cmd.Switch.Reboot", "cmd.switch.reladmin",
                            "Cmd.Zoning.", "Cmd.Zoning", "Cmd.Zoning.Zone.%s"}) {
        EXPECT_EQ(client.set(key), simtest::kNoSuchKey) << key;
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << key;
    }
}

TEST(CommandBatch, RunsItsCommandsInOrderInOneStep) {
    const auto device = sim::create();
    const Client client;
    std::vector<SmlMessage> messages;
    for (const char *key : {"Cmd.Switch.ReqAdmin", "Cmd.Switch.EditConfig", "Config.Switch.TransparentMode",
                            "Cmd.Switch.SaveConfig", "Cmd.Switch.ActConfig", "Cmd.Switch.RelAdmin"})
        messages.push_back(simtest::messageOf(key, "True"));
    ASSERT_EQ(zov_smlSetBatch(client.handle, messages.data(), static_cast<int32_t>(messages.size())), 0);
    for (const SmlMessage &message : messages)
        EXPECT_EQ(message.status, 0) << message.key;
    EXPECT_EQ(device->get("Config.Switch.TransparentMode"), "True");
    EXPECT_EQ(device->adminModeHolder(), 0U);
}
