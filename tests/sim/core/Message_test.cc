#include "sim/core/Message.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

/// A message whose key goes on to the last byte.
SmlMessage endlessKey() {
    SmlMessage message = simtest::messageOf("");
    std::memset(message.key, 'k', sizeof message.key);
    return message;
}

} // namespace

TEST(Message, KeyWithoutATerminatorIsRefusedAndTheOthersServed) {
    const auto device = sim::create();
    const Client client;
    std::vector<SmlMessage> messages = {endlessKey(), simtest::messageOf("Oper.Switch.DomainID")};
    EXPECT_EQ(zov_smlGetBatch(client.handle, messages.data(), 2), 0);
    EXPECT_EQ(messages[0].status, simtest::kBadKey);
    EXPECT_EQ(messages[1].status, 0);
    EXPECT_STREQ(messages[1].value, "1");
    EXPECT_EQ(zov_smlSetBatch(client.handle, messages.data(), 1), 0);
    EXPECT_EQ(messages[0].status, simtest::kBadKey);
}

TEST(Message, LongestKeyIsAKey) {
    const auto device = sim::create();
    const Client client;
    const std::string key(255, 'k');
    EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey);
    EXPECT_EQ(client.get(key + "k").status, simtest::kBadKey);
    EXPECT_EQ(client.set(key), simtest::kNoSuchKey);
    EXPECT_EQ(client.set(key + "k"), simtest::kBadKey);
}

TEST(Message, ValueWithoutATerminatorIsNoValue) {
    const auto device = sim::create();
    const Client client;
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    SmlMessage message = simtest::messageOf("Config.Switch.TransparentMode");
    std::memset(message.value, 'T', sizeof message.value);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &message, 1), 0);
    EXPECT_EQ(message.status, simtest::kBadValue);
}

TEST(Message, LongestValueFillsItsFieldButForTheTerminator) {
    const auto device = sim::create();
    const Client client;
    device->set("Oper.Switch.FaultList", std::string(255, 'f'));
    const std::vector<SmlMessage> messages = client.getBatch({"Oper.Switch.FaultList"});
    EXPECT_STREQ(messages[0].value, std::string(255, 'f').c_str());
    EXPECT_EQ(messages[0].value[255], '\0');
    EXPECT_EQ(messages[0].status, 0);
}

TEST(Message, FailedReadLeavesTheValueAlone) {
    const auto device = sim::create();
    const Client client;
    SmlMessage message = simtest::messageOf("Oper.Switch.Color", "stale");
    EXPECT_EQ(zov_smlGetBatch(client.handle, &message, 1), 0);
    EXPECT_EQ(message.status, simtest::kNoSuchKey);
    EXPECT_STREQ(message.value, "stale");
}
