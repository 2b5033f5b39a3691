// zovsim replay, the program itself, with clients in this process.
#include <gmock/gmock.h>

#include "tests/sim/Client.h"
#include "tests/tools/zovsim/RunZovsim.h"

using simtest::Client;
using testing::HasSubstr;
using zovsimtest::Outcome;
using zovsimtest::run;
using zovsimtest::Serving;
using zovsimtest::writeFile;

namespace {

/// Of a switch whose domain is one that no switch of software begins with.
constexpr const char *kRecording = "zovlib recording, format 1\n"
                                   "3600000 zov_IPConnect(1, \"localhost\", \"test\", \"\") = 0\n"
                                   "3600000 zov_smlGet(1) = 0: Oper.Switch.DomainID=\"77\"\n"
                                   "3700000 zov_smlGet(1) = 0: Oper.Switch.DomainID=\"78\"\n";

} // namespace

TEST(ReplayProgram, AnswersAsRecordedAndEndsWellWhenNothingElseWasCalled) {
    writeFile("/tmp/trouble.rec", kRecording);
    Serving replaying("replay /tmp/trouble.rec");
    ASSERT_TRUE(replaying.isServed) << replaying.err();
    zovsimtest::goOverTheSocket();
    const Client client;
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "77");
    EXPECT_EQ(client.get("Oper.Switch.DomainID").value, "78");
    EXPECT_EQ(replaying.endBy(SIGTERM), 0);
    EXPECT_THAT(replaying.out(), HasSubstr("/tmp/trouble.rec: 0 deviations, played to its end\n"));
    EXPECT_EQ(replaying.err(), "/tmp/trouble.rec: the recording is at its end\n");
}

TEST(ReplayProgram, WhatWasNotRecordedIsToldWithBothLinesAndFails) {
    writeFile("/tmp/trouble.rec", kRecording);
    Serving replaying("replay /tmp/trouble.rec");
    zovsimtest::goOverTheSocket();
    const Client client;
    client.get("Oper.Switch.WWN");
    EXPECT_TRUE(replaying.complains("/tmp/trouble.rec:3: not as recorded\n"
                                    "    recorded: zov_smlGet(1) = 0: Oper.Switch.DomainID=\"77\"\n"
                                    "    called:   zov_smlGet(1) = 40: Oper.Switch.WWN=\"\" status 40\n"));
    EXPECT_EQ(replaying.endBy(SIGINT), 1);
    EXPECT_THAT(replaying.out(), HasSubstr("/tmp/trouble.rec: 1 deviation, not played to its end\n"));
}

TEST(ReplayProgram, HasNoStateToDump) {
    writeFile("/tmp/trouble.rec", kRecording);
    const Serving replaying("replay --quiet /tmp/trouble.rec");
    ASSERT_TRUE(replaying.isServed) << replaying.err();
    const Outcome dump = run("dump --socket /tmp/switch");
    EXPECT_EQ(dump.exitCode, 1);
    EXPECT_THAT(dump.err, HasSubstr("a replay has no state of its own to dump"));
}

TEST(ReplayProgram, QuietTellsByTheExitCode) {
    writeFile("/tmp/trouble.rec", kRecording);
    Serving replaying("replay --quiet /tmp/trouble.rec");
    zovsimtest::goOverTheSocket();
    const Client client;
    client.get("Oper.Switch.WWN");
    EXPECT_EQ(replaying.endBy(SIGTERM), 1);
    EXPECT_EQ(replaying.out(), "export ZOVSIM_SOCKET=/tmp/switch\n");
    EXPECT_EQ(replaying.err(), "");
}

TEST(ReplayProgram, RecordsOfAnUnknownKindAreToldAndPassedOver) {
    writeFile("/tmp/trouble.rec", std::string(kRecording) + "3700000 zov_smlDream(1) = 0\n");
    Serving replaying("replay /tmp/trouble.rec");
    ASSERT_TRUE(replaying.isServed);
    EXPECT_TRUE(replaying.complains("/tmp/trouble.rec:5: "));
}

TEST(ReplayProgram, ServesTheRecordingsThatAreKept) {
    const std::string recording = std::string(RECORDINGS) + "/commit-rejected-by-the-switch.rec";
    Serving replaying("replay " + recording);
    ASSERT_TRUE(replaying.isServed) << replaying.err();
    zovsimtest::goOverTheSocket();
    zov_handle_t handle = 0;
    EXPECT_EQ(zov_IPConnect("localhost", "cim", "", &handle), 0);
    zov_fzs_zoninglimits_s limits = {};
    EXPECT_EQ(zov_fzsGetZoningLimitations(handle, &limits), 0);
    EXPECT_EQ(limits.zones, 3000);
    EXPECT_EQ(replaying.endBy(SIGTERM), 0);
    EXPECT_EQ(replaying.err(), "");
}

TEST(ReplayProgram, WhatIsNoRecordingIsRefused) {
    writeFile("/tmp/text", "once upon a time\n");
    const Outcome text = run("replay /tmp/text");
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_THAT(text.err, HasSubstr("zovsim: /tmp/text:1: "));
    EXPECT_THAT(run("replay /tmp/nothing").err, HasSubstr("cannot read /tmp/nothing: No such file"));
}
