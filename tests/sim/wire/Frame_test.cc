#include "sim/wire/Frame.h"

#include <random>

#include <gtest/gtest.h>

using sim::Bytes;
using sim::Json;

namespace {

bool isBearable(const Bytes &bytes) {
    return sim::isBearable(bytes.data(), bytes.size());
}

Bytes repeated(uint8_t byte, size_t count) {
    return Bytes(count, byte);
}

Json someMessage() {
    return {{"call", "getBatch"},
            {"number", 7},
            {"keys", {"Oper.Switch.WWN", std::string("\0\xFF", 2), ""}},
            {"nothing", nullptr},
            {"numbers", {-1, 0, 23, 24, 255, 256, 65535, 65536, INT32_MIN, 4294967295U, 9000000000}},
            {"flags", {true, false}}};
}

Bytes bodyOf(const Json &message) {
    const Bytes frame = sim::frameOf(message).value();
    return {frame.begin() + sim::kLengthBytes, frame.end()};
}

} // namespace

TEST(Frame, AMessageComesBackAsItWas) {
    const Json message = someMessage();
    const Bytes frame = sim::frameOf(message).value();
    EXPECT_EQ(sim::sizeFrom({frame[0], frame[1], frame[2], frame[3]}), frame.size() - sim::kLengthBytes);
    EXPECT_EQ(sim::messageFrom(bodyOf(message)), message);
}

TEST(Frame, LengthHasItsMostSignificantByteFirst) {
    EXPECT_EQ(sim::sizeFrom({0, 0, 0, 5}), 5U);
    EXPECT_EQ(sim::sizeFrom({0x01, 0x02, 0x03, 0x04}), 0x01020304U);
    const Bytes frame = sim::frameOf({{"text", std::string(300, 'x')}}).value();
    EXPECT_EQ(frame[0], 0);
    EXPECT_EQ(frame[2], 1);
}

TEST(Frame, AMessageThatIsTooLargeIsNone) {
    EXPECT_FALSE(sim::frameOf({{"text", std::string(sim::kMaxMessage, 'x')}}));
    EXPECT_TRUE(sim::frameOf({{"text", std::string(sim::kMaxMessage - 100, 'x')}}));
}

TEST(Frame, WhatIsNoMapIsNoMessage) {
    for (const Json &other : {Json(1), Json("text"), Json::array(), Json(nullptr), Json(true)})
        EXPECT_FALSE(sim::messageFrom(bodyOf(other))) << other;
    EXPECT_TRUE(sim::messageFrom(bodyOf(Json::object())));
    EXPECT_FALSE(sim::messageFrom({}));
}

TEST(Frame, AMapWithKeysThatAreNoTextsIsNoMessage) {
    EXPECT_FALSE(sim::messageFrom({0xA1, 0x01, 0x02}));
    EXPECT_FALSE(sim::messageFrom({0xA1, 0xF6, 0x02}));
}

TEST(Frame, EveryMessageThatWasCutShortIsNone) {
    const Bytes whole = bodyOf(someMessage());
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(sim::messageFrom(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_FALSE(sim::messageFrom(longer));
}

TEST(Bearable, NestingThatWouldTakeAReadersStackIsNot) {
    for (const uint8_t opening : Bytes{0x81, 0x9F, 0xBF, 0x7F, 0x5F, 0xC1, 0xD8})
        EXPECT_FALSE(isBearable(repeated(opening, 1000000))) << static_cast<int>(opening);
}

TEST(Bearable, ManyItemsThatWouldTakeAReadersMemoryAreNot) {
    Bytes items = repeated(0xA0, 2000000); // empty maps
    const Bytes head = {0x9A, 0x00, 0x1E, 0x84, 0x80};
    items.insert(items.begin(), head.begin(), head.end());
    EXPECT_FALSE(isBearable(items));
}

TEST(Bearable, LengthsBeyondTheEndAreNot) {
    EXPECT_FALSE(isBearable({0x9B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_FALSE(isBearable({0xBB, 0x80, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(isBearable({0x7B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_FALSE(isBearable({0x62, 'x'}));
    EXPECT_FALSE(isBearable({0x82, 0x01}));
    EXPECT_FALSE(isBearable({0xA1, 0x61, 'x'}));
}

TEST(Bearable, WhatMessagesHaveNoNeedOfIsNot) {
    EXPECT_FALSE(isBearable({0xF9, 0x00, 0x00})); // a half of precision
    EXPECT_FALSE(isBearable({0xFB, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(isBearable({0xF7}));       // undefined
    EXPECT_FALSE(isBearable({0xE0}));       // a simple value without a name
    EXPECT_FALSE(isBearable({0xC0, 0x60})); // a tag
    EXPECT_FALSE(isBearable({0x1C}));       // reserved
    EXPECT_FALSE(isBearable({0xFF}));
}

TEST(Bearable, EmptyContainersEndTheOnesAroundThem) {
    EXPECT_TRUE(isBearable({0x82, 0x80, 0xA0}));
    EXPECT_TRUE(isBearable({0x81, 0x81, 0x81, 0x80}));
    EXPECT_FALSE(isBearable({0x82, 0x80, 0xA0, 0x80}));
}

TEST(Frame, WhateverBytesComeAreAMessageOrNone) {
    std::mt19937 random(20); // the same every time
    const Bytes whole = bodyOf(someMessage());
    size_t messages = 0;
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes = whole;
        for (unsigned changes = random() % 4; changes > 0; --changes)
            bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        const std::optional<Json> message = sim::messageFrom(bytes);
        messages += message ? 1 : 0;
        EXPECT_TRUE(!message || message->is_object());
    }
    EXPECT_GT(messages, 0U);
    EXPECT_LT(messages, 20000U);
}
