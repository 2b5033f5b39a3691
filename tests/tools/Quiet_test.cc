#include "tools/dcache/quiet.h"

#include <gmock/gmock.h>

#include "sim/verbs/perform.h"

using dcache::whyNoEvent;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Quiet, CommandsThatTheCacheKeepsQuietAboutHaveAReason) {
    EXPECT_THAT(whyNoEvent("port 5 type E"), HasSubstr("port types"));
    EXPECT_THAT(whyNoEvent("port 6 powered-off"), HasSubstr("goes away"));
    EXPECT_THAT(whyNoEvent("media 55 plug serial=1"), HasSubstr("knows it now"));
    EXPECT_THAT(whyNoEvent("media 55 pull"), HasSubstr("forgotten"));
    EXPECT_THAT(whyNoEvent("fan 0 bad"), HasSubstr("fans"));
    EXPECT_THAT(whyNoEvent("link 2:21 10:0"), HasSubstr("same switches"));
    EXPECT_THAT(whyNoEvent("deliver 3 0 0 0 zoning"), HasSubstr("checksums"));
    EXPECT_THAT(whyNoEvent("deliver 39 0 0 0"), HasSubstr("code"));
}

TEST(Quiet, WordsCountInSmallAndCapitalLetters) {
    EXPECT_EQ(whyNoEvent("PORT 5 Type GL"), whyNoEvent("port 7 type E"));
    EXPECT_EQ(whyNoEvent("  fan   1 good"), whyNoEvent("fan 0 bad"));
}

TEST(Quiet, WhatRaisesEventsHasNone) {
    for (const char *command : {"", "port 3 online", "port", "switch offline", "supply 1 bad", "account add ann",
                                "zoning activate day", "fans", "portly 3 type E"})
        EXPECT_THAT(whyNoEvent(command), IsEmpty()) << command;
}

TEST(Quiet, ReasonsFitATerminal) {
    for (const char *command : {"port 5 type E", "port 6 absent", "media 5 plug", "media 5 pull", "blade 1 pull",
                                "blade 1 diagnosis failed", "blade 1 fault X", "fan 0 bad", "fault X", "link 1:1 2:2",
                                "deliver 3 0 0 0", "deliver 4 0 0 0", "lock zoning free", "rule clear", "reboot"}) {
        EXPECT_NO_THROW(sim::checkCommands(command));
        EXPECT_THAT(whyNoEvent(command), testing::Not(IsEmpty())) << command;
        EXPECT_LE(14 + std::string("(no event: )").size() + whyNoEvent(command).size(), 80U) << command;
    }
}
