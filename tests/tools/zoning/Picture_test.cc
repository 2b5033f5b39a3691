#include "tools/dcache/zoning/picture.h"

#include <gmock/gmock.h>

#include "tests/tools/zoning/Samples.h"
#include "tools/dcache/zoning/difference.h"

using namespace dcache;
using support::ZonedSwitch;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> namesOf(const ZoningPicture &zoning) {
    std::vector<std::string> names;
    for (const ZonesetPicture &zoneset : zoning.zonesets)
        names.push_back("set " + zoneset.name);
    for (const ZonePicture &zone : zoning.zones)
        names.push_back("zone " + zone.name);
    for (const AliasPicture &alias : zoning.aliases)
        names.push_back("alias " + alias.name);
    return names;
}

} // namespace

TEST(Picture, TheDefinedHalfIsCopiedWhole) {
    ZonedSwitch zoned;
    const CacheLock cache;
    const ZoningPicture picture = definedZoning(cache);
    EXPECT_THAT(namesOf(picture),
                ElementsAre("set day", "set night", "zone db", "zone mail", "zone old", "alias tape"));
    EXPECT_THAT(picture.zonesets[0].zones, ElementsAre("db", "mail"));
    EXPECT_EQ(picture.zones[0].type, ZOV_ZT_HARDACL);
    EXPECT_THAT(picture.zones[0].members,
                ElementsAre(Member{ZOV_ZMT_PORTWWN, "10:00:00:00:C9:2B:44:01"}, Member{ZOV_ZMT_DOMAINPORT, "1:7"},
                            Member{ZOV_ZMT_FCADDRESS, "010A00"}, Member{ZOV_ZMT_ALIAS, "tape"}));
    EXPECT_THAT(picture.aliases[0].members, ElementsAre(Member{ZOV_ZMT_PORTWWN, "50:06:01:60:3B:A0:11:22"}));
}

TEST(Picture, TheActiveZoneSetComesWithItsZonesAndTheirAliases) {
    ZonedSwitch zoned(support::kZoning + "activate night\n");
    const CacheLock cache;
    const auto picture = activeZoning(cache);
    ASSERT_TRUE(picture.has_value());
    EXPECT_THAT(namesOf(*picture), ElementsAre("set night", "zone db", "alias tape"));
}

TEST(Picture, WithoutAnActiveZoneSetThereIsNone) {
    ZonedSwitch zoned(support::kZoning);
    const CacheLock cache;
    EXPECT_FALSE(activeZoning(cache).has_value());
}

TEST(Picture, OneZoneSetAloneIsAsIfItWereTheActiveOne) {
    ZonedSwitch zoned;
    const CacheLock cache;
    const ZoningPicture defined = definedZoning(cache);
    EXPECT_THAT(difference(zonesetAlone(defined, "day"), activeZoning(cache).value()), IsEmpty());
    EXPECT_THAT(namesOf(zonesetAlone(defined, "night")), ElementsAre("set night", "zone db", "alias tape"));
    EXPECT_THAT(namesOf(zonesetAlone(defined, "dusk")), IsEmpty());
}

TEST(Picture, AsAScriptItIsWhatMadeIt) {
    ZonedSwitch zoned;
    const CacheLock cache;
    EXPECT_EQ(scriptOf(definedZoning(cache)), support::kZoning);
}

TEST(Picture, OfNothingTheScriptOnlyCommits) {
    EXPECT_EQ(scriptOf({}), "commit\n");
}

TEST(Picture, WhatNoScriptCanSayIsAComment) {
    const ZoningPicture picture = {{}, {{"db", ZOV_ZT_INVALID, {{ZOV_ZMT_NODENAME, "(type 4)"}}}}, {}};
    EXPECT_EQ(scriptOf(picture), "# create zone db (type 0)\n"
                                 "# add member db (type 4)\n"
                                 "commit\n");
}

TEST(Picture, ItStaysWhenTheCacheGoesOn) {
    ZonedSwitch zoned;
    const CacheLock cache;
    const ZoningPicture before = definedZoning(cache);
    cache->removeZone("db");
    EXPECT_THAT(namesOf(before), testing::Contains("zone db"));
    EXPECT_THAT(namesOf(definedZoning(cache)), testing::Not(testing::Contains("zone db")));
}
