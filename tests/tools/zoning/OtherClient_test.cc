#include "tools/dcache/zoning/otherclient.h"

#include <gmock/gmock.h>

#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(OtherClient, ADescriptionBecomesTheZoningOfTheSwitch) {
    const auto device = sim::create();
    giveZoning(*device, support::kActiveZoning + "lock\n");
    const sim::ZoningDatabase zoning = device->zoning();
    ASSERT_EQ(zoning.zonesets.size(), 2u);
    EXPECT_THAT(zoning.zonesets[0].zones, testing::ElementsAre("db", "mail"));
    ASSERT_EQ(zoning.zones.size(), 3u);
    EXPECT_EQ(zoning.zones[0].type, ZOV_ZT_HARDACL);
    EXPECT_EQ(zoning.zones[0].members.size(), 4u);
    EXPECT_EQ(zoning.zones[0].members[0].text, "10000000C92B4401");
    ASSERT_EQ(zoning.aliases.size(), 1u);
    EXPECT_EQ(zoning.aliases[0].members.size(), 1u);
    EXPECT_EQ(device->get("Oper.Zoning.ActiveZoneSet"), "day");
    EXPECT_EQ(device->zoningLockHolder(), sim::kOtherClient);
}

TEST(OtherClient, NothingActiveAndNothingLockedUnlessSaid) {
    const auto device = sim::create();
    giveZoning(*device, support::kZoning);
    EXPECT_EQ(device->get("Oper.Zoning.ActiveZoneSet"), "");
    EXPECT_EQ(device->zoningLockHolder(), 0u);
}

TEST(OtherClient, AMistakeIsAnsweredWithItsLine) {
    const auto device = sim::create();
    const auto give = [&device](const char *text) { return [&device, text] { giveZoning(*device, text); }; };
    EXPECT_THAT(
        give("create set day\nx\n"),
        ThrowsMessage<Misuse>(HasSubstr("the zoning of the switch has 1 error, so nothing was done:\n  line 2: ")));
    EXPECT_THAT(give("create set day\nadd member db 1:1\n"), ThrowsMessage<Misuse>("line 2: there is no zone \"db\""));
    EXPECT_THAT(give("add zone day db"), ThrowsMessage<Misuse>("line 1: there is no zone set \"day\""));
    EXPECT_THAT(give("add alias-member tape 1:1"), ThrowsMessage<Misuse>("line 1: there is no alias \"tape\""));
}

TEST(OtherClient, WhatTheSwitchRefusesIsSaidInItsWords) {
    const auto device = sim::create();
    const auto give = [&device](const char *text) { return [&device, text] { giveZoning(*device, text); }; };
    for (const char *text : {"create set day\nadd zone day db\n", "create set 1st\n", "activate day\n"})
        EXPECT_THAT(give(text), ThrowsMessage<Misuse>(testing::StartsWith("the switch does not take this zoning: ")))
            << text;
}
