#include "sim/core/Event.h"

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class Event : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({1}), 0); }
};

} // namespace

TEST_F(Event, TextOf1395CharactersFits) {
    const std::string text(1395, 't');
    device->deliver(40, {0, 0, 0}, text);
    ASSERT_EQ(client.events(1).size(), 1U);
    EXPECT_EQ(client.events(1)[0].text, text);
    EXPECT_EQ(client.events(1)[0].rest, 0);
}

TEST_F(Event, LongerTextIsCut) {
    device->deliver(40, {0, 0, 0}, std::string(5000, 't'));
    ASSERT_EQ(client.events(1).size(), 1U);
    EXPECT_EQ(client.events(1)[0].text, std::string(1395, 't'));
}

TEST_F(Event, RawEventArrivesByteForByteAlsoWithoutATerminator) {
    zov_event_s event;
    std::memset(&event, 0xA5, sizeof event);
    event.code = 73;
    device->deliver(event);
    ASSERT_EQ(client.events(1).size(), 1U);
    EXPECT_EQ(std::memcmp(&client.events(1)[0], &event, sizeof event), 0);
}

TEST_F(Event, UnterminatedTextIsRecordedUpToItsEnd) {
    zov_event_s event = {};
    std::memset(event.text, 'u', sizeof event.text);
    event.rest = -1;
    event.code = 73;
    device->deliver(event);
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    EXPECT_EQ(simtest::linesOf(*device).back(),
              "notification(" + std::to_string(client.handle) + ", 73 [0:0:0] \"" + std::string(1396, 'u') + "\")");
}
