#include "sim/record/RecordedScript.h"

#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

#include "tests/sim/record/Recorded.h"

using simtest::Client;
using simtest::kConnect;
using simtest::kRegister;
using simtest::replayOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace {

constexpr int32_t kNotRecorded = 40;

using Statuses = std::vector<int32_t>;

Statuses statusesOf(const std::vector<SmlMessage> &messages) {
    Statuses statuses;
    for (const SmlMessage &message : messages)
        statuses.push_back(message.status);
    return statuses;
}

/// Everything but the end, which most tests come to.
std::vector<std::string> deviationsOf(const sim::Replay &replay) {
    std::vector<std::string> texts = replay.reports();
    if (!texts.empty() && texts.back() == "trouble.rec: the recording is at its end")
        texts.pop_back();
    return texts;
}

std::string mistakeIn(const std::string &record) {
    try {
        replayOf({kConnect, record});
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "none";
}

/// "(N)", a connection as records show it
std::string in(const Client &client) {
    return "(" + std::to_string(client.handle);
}

} // namespace

// ---- as recorded ---------------------------------------------------------------------------------------

TEST(RecordedScript, ReadsAreAnsweredAsRecordedOneAfterAnother) {
    const auto replay = replayOf({kConnect, "zov_smlGet(1) = 0: Oper.Any=\"first\"",
                                  "zov_smlGetBatch(1) = 0: Oper.Any=\"second\", Oper.Other=\"\" status 103",
                                  "zov_smlGet(1) = 7: Oper.Any=\"\" status 7"});
    const Client client;
    EXPECT_EQ(client.get("Oper.Any").value, "first");
    const std::vector<SmlMessage> messages = client.getBatch({"Oper.Any", "Oper.Other"});
    EXPECT_EQ(statusesOf(messages), (Statuses{0, 103}));
    EXPECT_STREQ(messages[0].value, "second");
    EXPECT_EQ(client.get("Oper.Any").status, 7);
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
    EXPECT_EQ(replay->deviations(), 0U);
}

TEST(RecordedScript, BatchThatFailedLeavesItsMessagesAlone) {
    const auto replay = replayOf({kConnect, "zov_smlGetBatch(1) = 9: Oper.A=\"\", Oper.B=\"\""});
    const Client client;
    std::vector<SmlMessage> messages = {simtest::messageOf("Oper.A", "before"), simtest::messageOf("Oper.B")};
    messages[0].status = 77;
    EXPECT_EQ(zov_smlGetBatch(client.handle, messages.data(), 2), 9);
    EXPECT_EQ(messages[0].status, 77);
    EXPECT_STREQ(messages[0].value, "before");
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
}

TEST(RecordedScript, ValueThatFilledItsFieldStillDoes) {
    const std::string value(256, 'w');
    const auto replay = replayOf({kConnect, "zov_smlGetBatch(1) = 0: Oper.A=\"" + value + "\""});
    const Client client;
    const std::vector<SmlMessage> messages = client.getBatch({"Oper.A"});
    EXPECT_EQ(std::string(messages[0].value, 256), value);
}

TEST(RecordedScript, SetsAndCommandsAreTakenAsRecorded) {
    const auto replay =
        replayOf({kConnect, "zov_smlSet(1) = 0: Config.Any=\"one\"",
                  "zov_smlSetBatch(1) = 0: Cmd.Any=\"\", Config.Any=\"two\" status 6",
                  "zov_smlSet(1) = 10: Config.Any=\"three\" status 10", "zov_smlSetBatch(1) = 4: Config.Any=\"\""});
    const Client client;
    EXPECT_EQ(client.set("Config.Any", "one"), 0);
    std::vector<SmlMessage> messages = {simtest::messageOf("Cmd.Any", "x"), simtest::messageOf("Config.Any", "two")};
    EXPECT_EQ(zov_smlSetBatch(client.handle, messages.data(), 2), 0);
    EXPECT_EQ(statusesOf(messages), (Statuses{0, 6}));
    EXPECT_EQ(client.set("Config.Any", "three"), 10);
    EXPECT_EQ(zov_smlSetBatch(client.handle, &messages[1], 1), 4);
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
    EXPECT_EQ(replay->device().adminModeHolder(), 0U);
}

TEST(RecordedScript, RegistrationIsAnsweredCodeByCode) {
    const auto replay = replayOf(
        {kConnect, "zov_enRegisterForEventList(1, 33, 300 status 22, 7) = 0", "zov_enRegisterForEventList(1, 33) = 6"});
    Client client;
    EXPECT_EQ(client.registerFor({33, 300, 7}), 0);
    EXPECT_EQ(client.registration[0].result, 0);
    EXPECT_EQ(client.registration[1].result, 22);
    EXPECT_EQ(client.registration[2].result, 0);
    EXPECT_EQ(client.registerFor({33}), 6);
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
}

TEST(RecordedScript, NotificationHasReachedItsCallbackBeforeTheNextCallIsAnswered) {
    const auto replay = replayOf({kConnect, kRegister, "zov_smlGet(1) = 0: A=\"1\"",
                                  "notification(1, 33 [0:2:0] \"one\")", "notification(1, 99 [1:-2:3] \"t\\\"wo\")",
                                  "zov_smlGet(1) = 0: A=\"2\"", "notification(1, 7 [0:0:0] \"three\")"});
    Client client;
    client.registerFor({33, 7});
    EXPECT_THAT(client.events(0), IsEmpty());
    client.get("A");
    client.get("A");
    const std::string ones = "notification" + in(client) + ", 33 [0:2:0] \"one\")";
    const std::string twos = "notification" + in(client) + ", 99 [1:-2:3] \"t\\\"wo\")";
    const std::string next = "zov_smlGet" + in(client) + ") = 0: A=\"2\"";
    // Memory may be given back at any time between.
    std::vector<std::string> lines = simtest::linesOf(replay->device());
    lines.erase(std::remove(lines.begin(), lines.end(), "zov_libFreeMemory() = 0"), lines.end());
    EXPECT_THAT(lines, IsSupersetOf({ones, twos, next}));
    EXPECT_EQ(std::find(lines.begin(), lines.end(), next) - std::find(lines.begin(), lines.end(), ones), 2);
    ASSERT_TRUE(replay->device().waitUntilQuiet(simtest::kPatience));
    EXPECT_THAT(simtest::shown(client.events(3)), ElementsAre("33 one", "99 t\"wo", "7 three"));
    EXPECT_EQ(client.events(3)[1].source.number[1], -2);
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
}

TEST(RecordedScript, CallInACallbackDoesNotWaitForTheCallback) {
    const auto replay =
        replayOf({kConnect, "zov_enRegisterForEventList(1, 33) = 0", "notification(1, 33 [0:0:0] \"one\")",
                  "zov_smlGet(1) = 0: A=\"1\"", "notification(1, 33 [0:0:0] \"two\")"});
    Client client;
    std::string seen;
    client.inCallback([&](void *, zov_event_s *event) {
        if (event->text == std::string("one"))
            seen = client.get("A").value;
    });
    client.registerFor({33});
    EXPECT_EQ(client.events(2).size(), 2U);
    EXPECT_EQ(seen, "1");
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
}

TEST(RecordedScript, EachConnectionHasItsOwnStory) {
    const auto replay =
        replayOf({kConnect, "zov_IPConnect(5, \"localhost\", \"test\", \"\") = 0", "zov_smlGet(1) = 0: A=\"of one\"",
                  "zov_smlGet(5) = 0: A=\"of five\"", "zov_smlGet(1) = 0: A=\"of one again\""});
    const Client one;
    const Client five;
    EXPECT_EQ(five.get("A").value, "of five");
    EXPECT_EQ(one.get("A").value, "of one");
    EXPECT_EQ(one.get("A").value, "of one again");
    EXPECT_THAT(replay->reports(), ElementsAre("trouble.rec: the recording is at its end"));
}

TEST(RecordedScript, ConnectionsAreRefusedAsRecorded) {
    const auto replay = replayOf({"zov_IPConnect(\"localhost\", \"test\", \"\") = 4", kConnect});
    const Client refused;
    EXPECT_EQ(refused.connected, 4);
    const Client taken;
    EXPECT_EQ(taken.connected, 0);
    const Client further;
    EXPECT_EQ(further.connected, kNotRecorded);
    EXPECT_EQ(replay->deviations(), 1U);
}

TEST(RecordedScript, NumberOfAConnectionStandsForAnotherOneOnceItIsMadeAgain) {
    const std::string twice = simtest::recordingOf({kConnect, "zov_smlGet(1) = 0: A=\"a\""});
    const auto replay = sim::makeReplay(twice + twice, simtest::kFileName);
    const Client one;
    EXPECT_EQ(one.get("A").value, "a");
    EXPECT_FALSE(replay->isOver());
    const Client other;
    EXPECT_EQ(other.get("A").value, "a");
    EXPECT_TRUE(replay->isOver());
    EXPECT_EQ(replay->deviations(), 0U);
}

TEST(RecordedScript, RecordingThatBeganInTheMiddleIsJoined) {
    const auto replay = replayOf({"notification(9, 33 [0:0:0] \"one\")", "zov_smlGet(9) = 0: A=\"1\""});
    Client client;
    EXPECT_EQ(client.registerFor({33}), 0);
    EXPECT_EQ(client.get("A").value, "1");
    EXPECT_THAT(simtest::shown(client.events(1)), ElementsAre("33 one"));
    EXPECT_THAT(deviationsOf(*replay), IsEmpty());
}

TEST(RecordedScript, ClockGoesWithTheRecording) {
    const auto replay = sim::makeReplay("zovlib recording, format 1\n"
                                        "4000000 zov_IPConnect(1, \"localhost\", \"test\", \"\") = 0\n"
                                        "4000000 zov_smlGet(1) = 0: A=\"1\"\n"
                                        "4090000 zov_smlGet(1) = 0: A=\"2\"\n",
                                        simtest::kFileName);
    EXPECT_EQ(replay->device().uptime(), 4000);
    const Client client;
    EXPECT_EQ(replay->device().uptime(), 4000);
    client.get("A");
    EXPECT_EQ(replay->device().uptime(), 4090) << "nothing more happened before";
}

// ---- deviations ----------------------------------------------------------------------------------------

TEST(RecordedScript, CallThatIsNotTheNextIsReportedWithBothLines) {
    const auto replay = replayOf({kConnect, "zov_smlGet(1) = 0: Oper.A=\"1\""});
    const Client client;
    EXPECT_EQ(client.get("Oper.B").status, kNotRecorded);
    EXPECT_THAT(replay->reports(), ElementsAre("trouble.rec:3: not as recorded\n"
                                               "    recorded: zov_smlGet(1) = 0: Oper.A=\"1\"\n"
                                               "    called:   zov_smlGet(1) = 40: Oper.B=\"\" status 40"));
    EXPECT_EQ(replay->deviations(), 1U);
    EXPECT_EQ(client.get("Oper.A").value, "1") << "the story has waited";
    EXPECT_EQ(replay->deviations(), 1U);
    EXPECT_TRUE(replay->isOver());
}

TEST(RecordedScript, CallThatWasLeftOutIsReportedAndTheStoryGoesOn) {
    const auto replay =
        replayOf({kConnect, kRegister, "zov_smlGet(1) = 0: A=\"1\"", "notification(1, 33 [0:0:0] \"one\")",
                  "zov_smlGet(1) = 0: B=\"2\"", "zov_smlGet(1) = 0: C=\"3\""});
    Client client;
    client.registerFor({33, 7});
    EXPECT_EQ(client.get("B").value, "2");
    EXPECT_EQ(client.get("C").value, "3");
    EXPECT_THAT(simtest::shown(client.events(1)), ElementsAre("33 one"));
    EXPECT_THAT(deviationsOf(*replay), ElementsAre("trouble.rec:4: not as recorded\n"
                                                   "    recorded: zov_smlGet(1) = 0: A=\"1\"\n"
                                                   "    called:   zov_smlGet(1) = 0: B=\"2\""));
    EXPECT_EQ(client.get("A").value, "1") << "it comes too late, and is known all the same";
    EXPECT_EQ(replay->deviations(), 2U);
}

TEST(RecordedScript, OtherKeysInABatchAreAnsweredKeyByKey) {
    const auto replay =
        replayOf({kConnect, "zov_smlGetBatch(1) = 0: A=\"1\", B=\"2\"", "zov_smlGetBatch(1) = 0: A=\"3\", B=\"4\""});
    const Client client;
    const std::vector<SmlMessage> messages = client.getBatch({"B", "A", "C"});
    EXPECT_STREQ(messages[0].value, "2");
    EXPECT_STREQ(messages[1].value, "1");
    EXPECT_EQ(statusesOf(messages), (Statuses{0, 0, kNotRecorded}));
    EXPECT_EQ(client.get("A").value, "3");
    EXPECT_EQ(client.get("A").value, "3") << "the last answer again";
    EXPECT_EQ(replay->deviations(), 3U);
}

TEST(RecordedScript, OtherValueIsADeviation) {
    const auto replay = replayOf({kConnect, "zov_smlSet(1) = 6: Config.A=\"red\" status 6"});
    const Client client;
    EXPECT_EQ(client.set("Config.A", "blue"), 6) << "the best match";
    EXPECT_THAT(deviationsOf(*replay), ElementsAre("trouble.rec:3: not as recorded\n"
                                                   "    recorded: zov_smlSet(1) = 6: Config.A=\"red\" status 6\n"
                                                   "    called:   zov_smlSet(1) = 6: Config.A=\"blue\" status 6"));
}

TEST(RecordedScript, OtherRegistrationIsReportedAndTaken) {
    const auto replay = replayOf({kConnect, "zov_enRegisterForEventList(1, 33) = 0", "zov_smlGet(1) = 0: A=\"1\""});
    Client client;
    EXPECT_EQ(client.registerFor({34}), 0);
    EXPECT_EQ(client.registration[0].result, 0);
    EXPECT_EQ(client.get("A").value, "1");
    EXPECT_THAT(replay->reports()[0], testing::HasSubstr("called:   zov_enRegisterForEventList(1, 34) = 0"));
}

TEST(RecordedScript, OtherClientIsReportedAndTaken) {
    const auto replay = replayOf({"zov_IPConnect(1, \"localhost\", \"cim\", \"\") = 0", "zov_smlGet(1) = 0: A=\"1\""});
    const Client client;
    EXPECT_EQ(client.connected, 0);
    EXPECT_EQ(client.get("A").value, "1");
    EXPECT_THAT(deviationsOf(*replay),
                ElementsAre("trouble.rec:2: not as recorded\n"
                            "    recorded: zov_IPConnect(1, \"localhost\", \"cim\", \"\") = 0\n"
                            "    called:   zov_IPConnect(1, \"localhost\", \"test\", \"\") = 0"));
}

TEST(RecordedScript, EndIsToldAndWhatComesAfterItIsADeviation) {
    const auto replay = replayOf({kConnect, "zov_smlGet(1) = 0: A=\"1\""});
    std::vector<std::string> heard;
    replay->onReport([&](const std::string &text) { heard.push_back(text); });
    const Client client;
    EXPECT_FALSE(replay->isOver());
    client.get("A");
    EXPECT_TRUE(replay->isOver());
    EXPECT_THAT(heard, ElementsAre("trouble.rec: the recording is at its end"));
    EXPECT_EQ(client.get("A").value, "1");
    EXPECT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[1], "trouble.rec: not as recorded\n"
                        "    recorded: nothing more on connection 1\n"
                        "    called:   zov_smlGet(1) = 0: A=\"1\"");
    EXPECT_EQ(replay->reports(), heard);
}

TEST(RecordedScript, LinesThatWerePassedOverAreReported) {
    const auto replay = replayOf({kConnect, "zov_later(1) = 0"});
    EXPECT_THAT(replay->reports(),
                ElementsAre("trouble.rec:3: 'zov_later' is no kind of record that is known; passed over"));
    EXPECT_EQ(replay->deviations(), 0U);
}

TEST(RecordedScript, RefusesRecordsThatSayWhatNoSwitchLibraryAnswers) {
    EXPECT_EQ(mistakeIn("zov_ZoneCreate(1, \"oak\") = 7"),
              "trouble.rec:3: 'zov_ZoneCreate' is not made on a connection");
    EXPECT_EQ(mistakeIn("zov_smlGet(1) = 0: A=\"\", B=\"\""), "trouble.rec:3: 'zov_smlGet' has one key");
    EXPECT_EQ(mistakeIn("zov_enRegisterForEventList(1, x) = 0"),
              "trouble.rec:3: the codes of a registration are not understood");
    EXPECT_EQ(mistakeIn("notification(1, 33 [0:0] \"x\")"),
              "trouble.rec:3: the source of the notification is not understood");
    EXPECT_EQ(mistakeIn("notification(1, 33 [0:0:0] x)"), "trouble.rec:3: the notification is not understood");
    EXPECT_EQ(mistakeIn("zov_fzsGetZonesetList(1) = 0 -> oak"), "trouble.rec:3: what was handed out is not understood");
    EXPECT_EQ(mistakeIn("zov_fzsGetActiveZonesetName(1) = 0 -> none"),
              "trouble.rec:3: what was handed out is not understood");
    EXPECT_EQ(mistakeIn("zov_smlGetBatch(1) = 0: A=\"" + std::string(257, 'x') + "\""),
              "trouble.rec:3: the value of 'A' has more than 256 bytes");
}
