#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(SmlGet, HandsOutATextOfItsOwnWithItsSize) {
    const auto device = sim::create();
    const Client client;
    char *value = nullptr;
    uint32_t size = 0;
    ASSERT_EQ(zov_smlGet(client.handle, "Oper.Switch.OperState", &value, &size), 0);
    EXPECT_STREQ(value, "Online");
    EXPECT_EQ(size, 7U); // the terminator counts
    value[0] = 'o';      // the client's to write
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(zov_libFreeMemory(value), 0);
}

TEST(SmlGet, EmptyTextIsAText) {
    const auto device = sim::create();
    const Client client;
    char *value = nullptr;
    uint32_t size = 0;
    ASSERT_EQ(zov_smlGet(client.handle, "Oper.Switch.FaultList", &value, &size), 0);
    EXPECT_STREQ(value, "");
    EXPECT_EQ(size, 1U);
    EXPECT_EQ(zov_libFreeMemory(value), 0);
}

TEST(SmlGet, FailingItLeavesItsOutArgumentsAlone) {
    const auto device = sim::create();
    const Client client;
    char before = 'b';
    char *value = &before;
    uint32_t size = 77;
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Nothing", &value, &size), simtest::kNoSuchKey);
    EXPECT_EQ(value, &before);
    EXPECT_EQ(size, 77U);
}

TEST(SmlGet, NullArgumentsAreRefused) {
    const auto device = sim::create();
    const Client client;
    char *value = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(zov_smlGet(client.handle, nullptr, &value, &size), simtest::kBadArgument);
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.WWN", nullptr, &size), simtest::kBadArgument);
    EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.WWN", &value, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_smlGet(0, "Oper.Switch.WWN", &value, &size), simtest::kBadHandle);
    EXPECT_EQ(value, nullptr);
}

TEST(SmlGetBatch, NeedsAtLeastOneMessage) {
    const auto device = sim::create();
    const Client client;
    SmlMessage message = simtest::messageOf("Oper.Switch.WWN", "before");
    EXPECT_EQ(zov_smlGetBatch(client.handle, nullptr, 1), simtest::kBadArgument);
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 0), simtest::kBadArgument);
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, -1), simtest::kBadArgument);
    EXPECT_STREQ(message.value, "before");
}

TEST(SmlGetBatch, TakesAsManyMessagesAsTheClientHas) {
    const auto device = sim::create();
    const Client client;
    std::vector<SmlMessage> messages(1000, simtest::messageOf("Oper.Switch.DomainID"));
    EXPECT_EQ(zov_smlGetBatch(client.handle, messages.data(), 1000), 0);
    for (const SmlMessage &message : messages)
        EXPECT_STREQ(message.value, "1");
}

TEST(SmlSet, UsesTheMemoryOfItsValue) {
    const auto device = sim::create();
    const Client client;
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    char value[] = "True";
    EXPECT_EQ(zov_smlSet(client.handle, "Config.Switch.TransparentMode", value), 0);
    EXPECT_STREQ(value, "");
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get("Config.Switch.TransparentMode"), "True");
}

TEST(SmlSet, NullArgumentsAreRefused) {
    const auto device = sim::create();
    const Client client;
    char value[] = "";
    EXPECT_EQ(zov_smlSet(client.handle, nullptr, value), simtest::kBadArgument);
    EXPECT_EQ(zov_smlSet(client.handle, "Cmd.Switch.ReqAdmin", nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_smlSet(0, "Cmd.Switch.ReqAdmin", value), simtest::kBadHandle);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}

TEST(SmlSetBatch, HandlesEveryKeyAndReportsEachOne) {
    const auto device = sim::create();
    const Client client;
    std::vector<SmlMessage> messages;
    for (const char *key : {"Cmd.Switch.EditConfig", "Cmd.Switch.ReqAdmin", "Oper.Switch.WWN", "Cmd.Nothing",
                            "Config.Switch.TransparentMode", "Cmd.Switch.EditConfig"})
        messages.push_back(simtest::messageOf(key, "True"));
    EXPECT_EQ(zov_smlSetBatch(client.handle, messages.data(), static_cast<int32_t>(messages.size())), 0);
    std::vector<int32_t> statuses;
    statuses.reserve(messages.size());
    for (const SmlMessage &message : messages)
        statuses.push_back(message.status);
    EXPECT_EQ(statuses, (std::vector<int32_t>{simtest::kAdminRequired, 0, simtest::kReadOnly, simtest::kNoSuchKey,
                                              simtest::kEditRequired, 0}));
}

TEST(SmlSetBatch, NeedsAtLeastOneMessage) {
    const auto device = sim::create();
    const Client client;
    SmlMessage message = simtest::messageOf("Cmd.Switch.ReqAdmin");
    EXPECT_EQ(zov_smlSetBatch(client.handle, nullptr, 1), simtest::kBadArgument);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 0), simtest::kBadArgument);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, -1), simtest::kBadArgument);
    EXPECT_EQ(device->adminModeHolder(), 0U);
}
