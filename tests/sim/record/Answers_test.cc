#include "sim/record/Answers.h"

#include <gtest/gtest.h>

#include "tests/sim/record/Recorded.h"

using simtest::Client;
using simtest::kConnect;
using simtest::replayOf;

namespace {

std::string list(const Client &client) {
    int32_t count = -1;
    char *names = nullptr;
    const int32_t result = zov_fzsGetZonesetList(client.handle, &count, &names);
    return result == 0 ? std::to_string(count) + " " + names : "refused with " + std::to_string(result);
}

} // namespace

TEST(Answers, GoOnBehindWhatTheStoryHasPassed) {
    const auto replay = replayOf({kConnect, "zov_smlGet(1) = 0: A=\"1\"", "zov_smlGet(1) = 0: A=\"2\"",
                                  "zov_smlGet(1) = 0: B=\"x\"", "zov_smlGet(1) = 0: A=\"3\""});
    const Client client;
    EXPECT_EQ(client.get("A").value, "1");
    EXPECT_EQ(client.get("A").value, "2");
    EXPECT_EQ(client.getBatch({"A", "A"})[1].status, 0);
    EXPECT_EQ(replay->deviations(), 1U);
    EXPECT_EQ(client.get("B").value, "x");
    EXPECT_EQ(client.get("A").value, "3") << "what a deviation was answered is still there for the story";
    EXPECT_EQ(replay->deviations(), 1U);
}

TEST(Answers, ReadsAndSetsOfAKeyAreToldApart) {
    const auto replay =
        replayOf({kConnect, "zov_smlSet(1) = 6: Config.A=\"x\" status 6", "zov_smlGet(1) = 0: Config.A=\"y\""});
    const Client client;
    EXPECT_EQ(client.getBatch({"Config.A"})[0].status, 0);
    EXPECT_EQ(client.set("Config.A", "other"), 6);
    EXPECT_EQ(client.set("Config.B", "other"), 40);
    EXPECT_EQ(replay->deviations(), 3U);
}

TEST(Answers, CallsWithoutKeysHaveTheirOwn) {
    const auto replay = replayOf({kConnect, "zov_fzsGetZonesetList(1) = 5",
                                  "zov_fzsGetZonesetList(1) = 0 -> \"oak\", \"elm\"", "zov_smlGet(1) = 0: A=\"1\""});
    const Client client;
    EXPECT_EQ(list(client), "refused with 5");
    EXPECT_EQ(list(client), "2 oak");
    EXPECT_EQ(replay->deviations(), 0U);
    EXPECT_EQ(list(client), "2 oak") << "the last answer again";
    char name[65] = "untouched";
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, name), 40);
    EXPECT_STREQ(name, "untouched");
    EXPECT_EQ(replay->deviations(), 2U);
}

TEST(Answers, CallThatHandedNothingOutDoesNotAgain) {
    const auto replay = replayOf({kConnect, "zov_fzsGetActiveZoneset(1) = 0"});
    const Client client;
    int something = 0;
    void *zoneset = &something;
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), 0);
    EXPECT_EQ(zoneset, nullptr);
    EXPECT_EQ(replay->deviations(), 0U);
}
