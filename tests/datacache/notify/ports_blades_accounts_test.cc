// Notifications about ports, transceivers, blades and accounts.
#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Ports.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class LocalNotifications : public support::CacheTest {
protected:
    explicit LocalNotifications(const char *profile = "fixed-24") {
        theSwitch.reset();
        theSwitch = sim::create(profile);
        support::levelPorts(*theSwitch);
    }

    void SetUp() override { load(); }

    static void queue(int32_t code, const std::string &text, int32_t third = 0) {
        auto *record = new zov_event_s{};
        record->code = code;
        record->source.number[2] = third;
        text.copy(record->text, sizeof(record->text));
        cache().queueZovlibEvent(record);
    }

    /// The ports that the last pass read.
    std::vector<unsigned> portsRead() const { return support::portsRead(traffic()); }

    bool refreshed(const std::string &area) const {
        const auto lines = log();
        return std::find(lines.begin(), lines.end(), "DCACHE: Updating " + area + " cache") != lines.end();
    }
};

TEST_F(LocalNotifications, APortsChangeReadsThatPort) {
    for (const int32_t code : {14, 15}) {
        queue(code, "", 7);
        pass();
        EXPECT_THAT(portsRead(), ElementsAre(7)) << code;
        EXPECT_FALSE(refreshed("blades"));
    }
}

TEST_F(LocalNotifications, APortThatTheSwitchDoesNotHaveChangesNothing) {
    for (const int32_t code : {14, 15}) {
        for (const int32_t port : {24, 25, 128, 256, 100000, -1, INT32_MIN}) {
            queue(code, "", port);
            pass();
            EXPECT_FALSE(refreshed("ports")) << code << ": " << port;
        }
        queue(code, "", 23);
        pass();
        EXPECT_THAT(portsRead(), ElementsAre(23));
    }
}

TEST_F(LocalNotifications, ABladesChangeReadsBladesAndAllPorts) {
    for (const int32_t code : {28, 29, 39}) {
        queue(code, "");
        pass();
        EXPECT_TRUE(refreshed("blades")) << code;
        EXPECT_EQ(portsRead().size(), 24U) << code;
        EXPECT_FALSE(refreshed("accounts"));
    }
}

TEST_F(LocalNotifications, AnAccountsChangeReadsTheAccounts) {
    queue(50, "");
    pass();
    EXPECT_TRUE(refreshed("accounts"));
    EXPECT_FALSE(refreshed("ports"));
    EXPECT_FALSE(refreshed("blades"));
}

// ---- transceivers ---------------------------------------------------------------------------------------

class Media : public LocalNotifications {
protected:
    explicit Media(const char *profile = "fixed-24") : LocalNotifications(profile) {}

    static std::string transceiver(const std::string &port) {
        return fmt::format("{} {} '{}' '{}'", cache().getTransceiverDDMSupported(port),
                           int{cache().getTransceiverFormat(port)}, cache().getTransceiverVendorOUI(port),
                           cache().getTransceiverVendorSN(port));
    }

    /// Dispatches one notification and gives the lines besides those of every pass.
    std::vector<std::string> dispatch(int32_t code, const std::string &text) {
        queue(code, text);
        forget();
        pass();
        std::vector<std::string> lines;
        for (const std::string &line : log()) {
            if (line.find("_PORT_MEDIA_") != std::string::npos)
                lines.push_back(line);
        }
        return lines;
    }

    static constexpr const char *kNone = "false 2 '' ''";
};

TEST_F(Media, AnInsertedTransceiverIsKeptAsTheNotificationTells) {
    EXPECT_THAT(dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;3"), IsEmpty());
    EXPECT_EQ(transceiver("5"), "true 3 'A' 'ABCDEFGHIJKLMNOP'");
    EXPECT_FALSE(refreshed("ports")) << "no refresh by itself";
    EXPECT_EQ(transceiver("4"), kNone);
    EXPECT_THAT(events(), Not(Contains(testing::HasSubstr("Port"))));
}

TEST_F(Media, CodeAndFormatAreCutToOneByte) {
    dispatch(76, "0;0;0;5;-1;321;ABCDEFGHIJKLMNOP;258");
    EXPECT_EQ(transceiver("5"), "true 2 'A' 'ABCDEFGHIJKLMNOP'");
    dispatch(76, "0;0;0;5;1;-191;ABCDEFGHIJKLMNOP;-1");
    EXPECT_EQ(transceiver("5"), "true 255 'A' 'ABCDEFGHIJKLMNOP'");
}

TEST_F(Media, ACodeMayBeAnyByte) {
    dispatch(76, "0;0;0;5;1;200;ABCDEFGHIJKLMNOP;3");
    EXPECT_EQ(transceiver("5"), "true 3 '\xC8' 'ABCDEFGHIJKLMNOP'");
    for (const char *code : {"0", "256", "-256"}) {
        dispatch(76, fmt::format("0;0;0;5;1;{};ABCDEFGHIJKLMNOP;3", code));
        EXPECT_EQ(cache().getTransceiverVendorOUI("5"), std::string(1, '\0')) << "one character all the same";
    }
}

TEST_F(Media, WhatFollowsTheFieldsDoesNotMatter) {
    EXPECT_THAT(dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;3;4;more"), IsEmpty());
    EXPECT_EQ(transceiver("5"), "true 3 'A' 'ABCDEFGHIJKLMNOP'");
    EXPECT_THAT(dispatch(77, "0;0;0;5;0;65;more"), IsEmpty());
    EXPECT_EQ(transceiver("5"), kNone);
}

TEST_F(Media, ACountOfZeroResetsThePort) {
    dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;1");
    dispatch(76, "0;0;0;5;0;65;ABCDEFGHIJKLMNOP;1");
    EXPECT_EQ(transceiver("5"), kNone);
}

TEST_F(Media, ATextWithTooFewFieldsLeavesThePort) {
    dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;1");
    const std::vector<std::pair<std::string, int>> texts = {
        {"0;0;0;5;1;66;ABCDEFGHIJKLMNOP", 7},
        {"0;0;0;5;1;66;SHORT;1", 7},
        {"0;0;0;5;1;66;", 6},
        {"0;0;0;5;1;66;AB DEFGHIJKLMNOP;1", 7},
        {"0;0;0;5", 4},
        {"text", 0},
        {"", -1},
    };
    for (const auto &[text, items] : texts) {
        EXPECT_THAT(
            dispatch(76, text),
            ElementsAre(fmt::format(
                "DCACHE: ZOV_EVENT_PORT_MEDIA_INSTERTED event only contains {} items, string = '{}'", items, text)));
        EXPECT_EQ(transceiver("5"), "true 1 'A' 'ABCDEFGHIJKLMNOP'") << text;
    }
}

TEST_F(Media, ARemovedTransceiverIsForgotten) {
    dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;1");
    EXPECT_THAT(dispatch(77, "0;0;0;5"), IsEmpty());
    EXPECT_EQ(transceiver("5"), kNone);
    EXPECT_FALSE(refreshed("ports"));
}

TEST_F(Media, ARemovalWithTooFewFieldsLeavesThePort) {
    dispatch(76, "0;0;0;5;1;65;ABCDEFGHIJKLMNOP;1");
    dispatch(76, "0;0;0;0;1;65;ABCDEFGHIJKLMNOP;1"); // port 0 is what a text without a port must not be taken for
    const std::vector<std::pair<std::string, int>> texts = {{"0;0;0", 3}, {"0;0;0;", 3}, {"0;0;0;x", 3}, {"", -1}};
    for (const auto &[text, items] : texts) {
        EXPECT_THAT(
            dispatch(77, text),
            ElementsAre(fmt::format("DCACHE: ZOV_EVENT_PORT_MEDIA_REMOVED event only contains {} items, string = '{}'",
                                    items, text)));
        EXPECT_EQ(transceiver("5"), "true 1 'A' 'ABCDEFGHIJKLMNOP'") << text;
        EXPECT_EQ(transceiver("0"), "true 1 'A' 'ABCDEFGHIJKLMNOP'") << text;
    }
}

TEST_F(Media, APortOutsideTheTableIsNotTouched) {
    for (const char *port : {"256", "-1", "100000", "-2147483648"}) {
        EXPECT_THAT(dispatch(76, fmt::format("0;0;0;{};1;65;ABCDEFGHIJKLMNOP;1", port)), IsEmpty());
        EXPECT_THAT(dispatch(77, fmt::format("0;0;0;{}", port)), IsEmpty());
    }
    for (int port = 0; port < 24; ++port)
        EXPECT_EQ(transceiver(std::to_string(port)), kNone);
}

TEST_F(Media, APortBeyond32BitsIsNotTouched) {
    dispatch(76, "0;0;0;4294967301;1;65;ABCDEFGHIJKLMNOP;1"); // 2^32 + 5
    EXPECT_EQ(transceiver("5"), kNone);
}

TEST_F(Media, ATextWithTooFewFieldsIsNoFailureOfTheCache) {
    dispatch(76, "text");
    dispatch(77, "text");
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), Not(Contains(testing::HasSubstr("_PORT_MEDIA_"))));
}

class MediaOfALargeSwitch : public Media {
protected:
    MediaOfALargeSwitch() : Media("fixed-128") {}
};

TEST_F(MediaOfALargeSwitch, EveryPortThatIsThereIsServed) {
    for (const char *port : {"24", "100", "127"}) {
        dispatch(76, fmt::format("0;0;0;{};1;65;ABCDEFGHIJKLMNOP;1", port));
        EXPECT_EQ(transceiver(port), "true 1 'A' 'ABCDEFGHIJKLMNOP'");
        dispatch(77, fmt::format("0;0;0;{}", port));
        EXPECT_EQ(transceiver(port), kNone);
    }
}

TEST_F(MediaOfALargeSwitch, TheLastPortOfTheTableDisturbsNoOther) {
    EXPECT_THAT(dispatch(76, "0;0;0;255;1;65;ABCDEFGHIJKLMNOP;1"), IsEmpty());
    for (int port = 0; port < 256; ++port)
        EXPECT_EQ(transceiver(std::to_string(port)), kNone) << port;
    EXPECT_THAT(dispatch(77, "0;0;0;255"), IsEmpty());
    EXPECT_TRUE(cache().isPortPresent("127"));
}

TEST_F(Media, TheSwitchsOwnNotificationsAreUnderstood) {
    theSwitch->pullTransceiver(3);
    EXPECT_TRUE(theSwitch->waitUntilQuiet());
    pass();
    EXPECT_EQ(transceiver("3"), kNone);
    sim::Transceiver media;
    theSwitch->plugTransceiver(3, media);
    EXPECT_TRUE(theSwitch->waitUntilQuiet());
    pass();
    EXPECT_TRUE(cache().getTransceiverDDMSupported("3"));
    EXPECT_EQ(cache().getTransceiverVendorSN("3").size(), 16U);
}

} // namespace
