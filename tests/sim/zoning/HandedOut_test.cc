#include "sim/zoning/HandedOut.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "sim/record/Replay.h"
#include "tests/sim/Zoning.h"

using simtest::Client;

namespace {

/// The replay of one call on a connection.
std::unique_ptr<sim::Replay> replayOf(const std::string &call) {
    return sim::makeReplay(
        "zovlib recording, format 1\n0 zov_IPConnect(1, \"localhost\", \"test\", \"\") = 0\n0 " + call + "\n", "x.rec");
}

std::string lastLine(const sim::Simulator &device) {
    return device.records().back().line();
}

/// What "all" is shown as, handed out by the replay of just that.
std::string handedOutAgain(const std::string &shown) {
    const auto replay = replayOf("zov_fzsGetAllZonesAndAliases(1, \"all\", #7) = 0 -> " + shown);
    const Client client;
    void *zoneset = nullptr;
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset), 0);
    const std::string again = replay->device().records().back().handedOut;
    zov_ZonesetDestroy(zoneset);
    EXPECT_EQ(replay->deviations(), 0U);
    return again;
}

} // namespace

TEST(HandedOut, ShowsAZoneSetWhole) {
    const auto device = sim::create();
    device->setZoning(simtest::orchard());
    const Client client;
    void *zoneset = nullptr;
    ASSERT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset), 0);
    EXPECT_EQ(device->records().back().handedOut,
              "\"all\": zone \"oak\" 3 [\"port 21000000000000ab\", \"alias ash\"], "
              "zone \"elm\" 1 [\"domain:port 239:255\", \"address fffffe\"], zone \"yew\" 2 [], "
              "alias \"ash\" [\"port 2100000000000001\", \"domain:port 1:10\"], alias \"fir\" [\"address 0a0b0c\"]");
    zov_ZonesetDestroy(zoneset);
}

TEST(HandedOut, HandsAZoneSetOutAgainAsItWasShown) {
    for (const std::string shown : {"\"all\"", "\"all\": zone \"a\" 1 []", "\"all\": alias \"a\" []",
                                    "\"all\": zone \"oak\" 3 [\"port 21000000000000ab\", \"alias ash\"], zone \"yew\" "
                                    "2 [\"node 2000000000000001\"], "
                                    "alias \"fir\" [\"address 0a0b0c\", \"domain:port 1:0\"], alias \"ash\" []"})
        EXPECT_EQ(handedOutAgain(shown), shown);
    EXPECT_EQ(sim::create()->zoningObjects().members, 0U);
}

TEST(HandedOut, ClientFindsInItWhatWasThere) {
    const auto replay =
        replayOf("zov_fzsGetZoneset(1, \"north\", #7) = 0 -> \"north\": zone \"oak\" 3 [\"port 21000000000000ab\", "
                 "\"alias ash\"], alias \"ash\" [\"domain:port 1:10\"]");
    const Client client;
    void *zoneset = nullptr;
    ASSERT_EQ(zov_fzsGetZoneset(client.handle, "north", &zoneset), 0);
    sim::ZoningDatabase expected;
    expected.zonesets = {{"north", {"oak"}}};
    expected.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_PORTWWN, "21000000000000AB"}, {ZOV_ZMT_ALIAS, "ash"}}}};
    expected.aliases = {{"ash", {{ZOV_ZMT_DOMAINPORT, "1:10"}}}};
    EXPECT_TRUE(simtest::takeApart(zoneset) == expected);
}

TEST(HandedOut, LimitsAndNamesComeBackAsTheyWere) {
    const std::string limits =
        "zov_fzsGetZoningLimitations(1) = 0 -> zonesets 1, zones 2, members 3, zones per zoneset 4, "
        "members per zone 5, aliases 6, members per alias -7";
    {
        const auto replay = replayOf(limits);
        const Client client;
        zov_fzs_zoninglimits_s read = {};
        ASSERT_EQ(zov_fzsGetZoningLimitations(client.handle, &read), 0);
        EXPECT_EQ(read.zonesets, 1);
        EXPECT_EQ(read.membersPerZone, 5);
        EXPECT_EQ(read.membersPerAlias, -7);
    }
    for (const std::string names : {"none", "\"oak\"", "\"oak\", \"\", \"elm\""}) {
        const auto replay = replayOf("zov_fzsGetZonesetList(1) = 0 -> " + names);
        const Client client;
        simtest::listedZonesets(client);
        EXPECT_EQ(lastLine(replay->device()),
                  "zov_fzsGetZonesetList(" + std::to_string(client.handle) + ") = 0 -> " + names);
    }
}

TEST(HandedOut, WhatIsNoneOfItIsRefused) {
    const std::string zoneset = "zov_fzsGetZoneset(1, \"a\", #7) = 0 -> ";
    for (const char *text :
         {"none", "\"a\":", "\"a\": ", "\"a\" zone", "\"a\": zone \"b\"", "\"a\": zone \"b\" x []",
          "\"a\": zone \"b\" 1 [", "\"a\": zone \"b\" 1 [\"port 21\"]", "\"a\": zone \"b\" 1 [\"tree oak\"]",
          "\"a\": zone \"b\" 1 [\"alias c\" \"alias d\"]", "\"a\": zone \"b\" 1 [\"alias c\", \"alias c\"]",
          "\"a\": alias \"b\" 1 []", "\"a\": bush \"b\" []", "\"a\": zone \"b\" 1 [] and"})
        EXPECT_THROW(replayOf(zoneset + text), std::invalid_argument) << text;
    for (const char *text : {"zonesets 1", "zonesets 1, zones 2, members 3, zones per zoneset 4, members per zone 5, "
                                           "aliases 6, members per alias 7, more 8"})
        EXPECT_THROW(replayOf("zov_fzsGetZoningLimitations(1) = 0 -> " + std::string(text)), std::invalid_argument)
            << text;
    EXPECT_THROW(replayOf("zov_fzsGetZonesetList(1) = 0 -> \"a\","), std::invalid_argument);
    EXPECT_THROW(replayOf("zov_fzsGetZonesetList(1) = 0 -> \"" + std::string(65, 'a') + "\""), std::invalid_argument);
}
