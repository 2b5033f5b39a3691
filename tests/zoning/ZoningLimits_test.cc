// How full the cached database is, and how full the switch lets it become.
#include <algorithm>
#include <climits>

#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/zoning/ZoningTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kNothingCounted = "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0";

std::vector<int> numbersOf(const zov_fzs_zoninglimits_s &record) {
    return {record.zonesets,       record.zones,   record.members,        record.zonesPerZoneset,
            record.membersPerZone, record.aliases, record.membersPerAlias};
}

class ZoningLimits : public ZoningTest {
protected:
    void limit(const zov_fzs_zoninglimits_s &limits) {
        scripted::zoning.limits = limits;
        EXPECT_TRUE(cache->initZoningLimits());
        forget();
    }
    /// Members, zones and aliases of the whole database, as counted now.
    std::vector<int> count() {
        EXPECT_TRUE(cache->updateZoningCounts());
        const zov_fzs_zoninglimits_s counts = cache->getZoningCounts();
        return {counts.zones, counts.aliases, counts.members};
    }
};

// ---- counting ----------------------------------------------------------------------------------------

TEST_F(ZoningLimits, CountingAnEmptyCacheNeedsNoSwitch) {
    EXPECT_TRUE(cache->updateZoningCounts());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(numbersOf(cache->getZoningCounts()), ElementsAre(0, 0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLimits, CountingReadsTheUberZoneSetOnly) {
    load();
    EXPECT_THAT(count(), ElementsAre(2, 1, 7));
    EXPECT_THAT(log(), ElementsAre("DCACHE: zsl = 2, zl = 2, al = 1, zml = 7"));
    EXPECT_THAT(calls(),
                ElementsAre("ZonesetGetZoneCount(uber)", "ZonesetListZones(uber, 0)", "ZoneGetMemberCount(oak@uber)",
                            "ZoneListMembers(oak@uber, 0)", "MemberGetAttr(010100@oak@uber)",
                            "ZoneListMembers(oak@uber, 1)", "MemberGetAttr(web@oak@uber)",
                            "ZonesetFindAlias(uber, web)", "ZoneAliasGetMemberCount(web@uber)",
                            "ZonesetListZones(uber, 1)", "ZoneGetMemberCount(elm@uber)", "ZoneListMembers(elm@uber, 0)",
                            "MemberGetAttr(1:10@elm@uber)", "ZonesetGetAliasCount(uber)", "ZonesetListAliases(uber, 0)",
                            "ZoneAliasGetMemberCount(web@uber)"));
    const zov_fzs_zoninglimits_s counts = cache->getZoningCounts();
    EXPECT_THAT(numbersOf(counts), ElementsAre(2, 2, 7, 0, 0, 1, 0));
}

TEST_F(ZoningLimits, AnAliasCountsForItselfAndForEveryZoneThatHasIt) {
    uber = scripted::zoneset("u");
    scripted::Object *three = scripted::alias(uber, "three");
    for (const char *member : {kFirst, kSecond, kThird})
        scripted::member(three, ZOV_ZMT_PORTWWN, member);
    enter(uber, ZONESET_UBER);
    EXPECT_THAT(count(), ElementsAre(0, 1, 3));
    scripted::member(scripted::zone(uber, "oak"), ZOV_ZMT_ALIAS, "three");
    EXPECT_THAT(count(), ElementsAre(1, 1, 7)) << "the reference itself, and three behind it";
    scripted::member(scripted::zone(uber, "elm"), ZOV_ZMT_ALIAS, "three");
    EXPECT_THAT(count(), ElementsAre(2, 1, 11));
    scripted::member(scripted::zone(uber, "fir"), ZOV_ZMT_ALIAS, "unknown");
    EXPECT_THAT(count(), ElementsAre(3, 1, 12));
}

TEST_F(ZoningLimits, OnlyAnAliasIsLookedUp) {
    uber = scripted::zoneset("u");
    scripted::member(scripted::alias(uber, "1:10"), ZOV_ZMT_FCADDRESS, kFirst);
    scripted::Object *oak = scripted::zone(uber, "oak");
    for (const auto type : {ZOV_ZMT_UNKNOWN, ZOV_ZMT_PORTWWN, ZOV_ZMT_DOMAINPORT, ZOV_ZMT_FCADDRESS, ZOV_ZMT_NODENAME})
        scripted::member(oak, type, "1:10");
    enter(uber, ZONESET_UBER);
    EXPECT_THAT(count(), ElementsAre(1, 1, 6));
    for (const std::string &call : calls())
        EXPECT_EQ(call.find("FindAlias"), std::string::npos) << call;
}

TEST_F(ZoningLimits, AnAliasNameWithoutItsEndIsLookedUpAsFarAsItsBytesGo) {
    uber = scripted::zoneset("uber");
    scripted::member(scripted::zone(uber, "oak", ZOV_ZT_SOFT), ZOV_ZMT_ALIAS, "web")->attribute = std::string(256, 'w');
    enter(uber, ZONESET_UBER);
    EXPECT_THAT(calls(), testing::Contains("ZonesetFindAlias(uber, " + std::string(255, 'w') + ")"));
}

TEST_F(ZoningLimits, WhatTheSwitchLibraryDoesNotHandOutCountsAsEmpty) {
    load();
    const struct {
        const char *call;
        std::vector<int> counts;
    } rows[] = {
        {"ZonesetListZones", {2, 1, 3}}, {"ZoneListMembers", {2, 1, 7}},    {"MemberGetAttr", {2, 1, 7}},
        {"ZonesetFindAlias", {2, 1, 5}}, {"ZonesetListAliases", {2, 1, 5}},
    };
    for (const auto &row : rows) {
        fail(row.call);
        EXPECT_EQ(count(), row.counts) << row.call;
    }
    fail("MemberGetAttr", 2);
    EXPECT_THAT(count(), ElementsAre(2, 1, 5)) << "an alias that cannot be read is a member like others";
}

TEST_F(ZoningLimits, NonsenseCountsAreTakenAsTheyAre) {
    load();
    fail("ZonesetGetZoneCount", 1, -3);
    EXPECT_THAT(count(), ElementsAre(-3, 1, 2));
    fail("ZonesetGetAliasCount", 1, -2);
    EXPECT_THAT(count(), ElementsAre(2, -2, 5));
    fail("ZoneAliasGetMemberCount", 1, INT_MAX);
    fail("ZoneAliasGetMemberCount", 2, INT_MAX);
    EXPECT_EQ(count().size(), 3U) << "a sum that wraps around";
    fail("ZoneGetMemberCount", 1, -1);
    EXPECT_THAT(count(), ElementsAre(2, 1, 2));
}

// ---- the limits --------------------------------------------------------------------------------------

TEST_F(ZoningLimits, AreAskedForOnceAfterCounting) {
    scripted::zoning.limits = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_TRUE(cache->initZoningLimits());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_THAT(calls(), ElementsAre("fzsGetZoningLimitations()"));
    EXPECT_THAT(numbersOf(cache->getZoningLimits()), ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLimits, StayAsTheyWereWhenTheSwitchRefuses) {
    limit({1, 2, 3, 4, 5, 6, 7});
    scripted::zoning.limits = {};
    fail("fzsGetZoningLimitations");
    EXPECT_FALSE(cache->initZoningLimits());
    EXPECT_THAT(log(), ElementsAre(kNothingCounted));
    EXPECT_THAT(numbersOf(cache->getZoningLimits()), ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_TRUE(support::isLockFree());
    EXPECT_TRUE(cache->initZoningLimits()) << "the next time it answers";
    EXPECT_THAT(numbersOf(cache->getZoningLimits()), ElementsAre(0, 0, 0, 0, 0, 0, 0));
}

TEST_F(ZoningLimits, OfTheDatabaseAreReachedByTheirVeryNumberOnly) {
    load(); // 2 zone sets, 2 zones, 1 alias, 7 members
    for (const int distance : {-1, 0, 1}) {
        limit({2 + distance, 2 + distance, 7 + distance, 0, 0, 1 + distance, 0});
        EXPECT_EQ(cache->zonesetLimitAtMax(), distance == 0);
        EXPECT_EQ(cache->zoneLimitAtMax(), distance == 0);
        EXPECT_EQ(cache->aliasLimitAtMax(), distance == 0);
        EXPECT_EQ(cache->memberLimitAtMax(), distance == 0);
        EXPECT_THAT(calls(), IsEmpty()) << "the counts are there";
        if (distance == 0)
            EXPECT_THAT(log(),
                        ElementsAre("DCACHE: Zoneset maximum of 2 reached", "DCACHE: Zone maximum of 2 reached",
                                    "DCACHE: Zone alias maximum of 1 reached", "DCACHE: Member maximum of 7 reached"));
        else
            EXPECT_THAT(log(), IsEmpty());
    }
}

TEST_F(ZoningLimits, FiveOfFiveZoneSetsAreTheMaximumAndSixAreNot) {
    limit({5, 0, 0, 0, 0, 0, 0});
    for (const char *name : {"a", "b", "c", "d", "e"}) {
        EXPECT_FALSE(cache->zonesetLimitAtMax());
        enter(scripted::zoneset(name), ZONESET_INACTIVE);
    }
    EXPECT_TRUE(cache->zonesetLimitAtMax());
    enter(scripted::zoneset("f"), ZONESET_INACTIVE);
    EXPECT_FALSE(cache->zonesetLimitAtMax());
}

TEST_F(ZoningLimits, OfAnObjectAreReachedFromTheirNumberOn) {
    load(); // 2 zones in the uber zone set, 2 members in its oak and its alias web
    for (const int distance : {-1, 0, 1}) {
        const int max = 2 + distance;
        limit({0, 0, 0, max, max, 0, max});
        const bool reached = distance <= 0;
        EXPECT_EQ(cache->zonesPerZonesetAtMax(uber), reached);
        EXPECT_EQ(cache->membersPerZoneAtMax(uber->zones[0]), reached);
        EXPECT_EQ(cache->membersPerAliasAtMax(uber->aliases[0]), reached);
        EXPECT_THAT(calls(), ElementsAre("ZonesetGetZoneCount(uber)", "ZoneGetMemberCount(oak@uber)",
                                         "ZoneAliasGetMemberCount(web@uber)"));
        const std::string end = std::to_string(max) + " reached";
        if (reached)
            EXPECT_THAT(log(), ElementsAre("DCACHE: Zones per zoneset maximum of " + end,
                                           "DCACHE: Members per zone maximum of " + end,
                                           "DCACHE: Members per alisa maximum of " + end));
        else
            EXPECT_THAT(log(), IsEmpty());
    }
    EXPECT_TRUE(support::isLockFree());
}

TEST_F(ZoningLimits, NoObjectCountsAsAnEmptyOne) {
    limit({0, 0, 0, 1, 1, 0, 1});
    EXPECT_FALSE(cache->zonesPerZonesetAtMax(nullptr));
    EXPECT_FALSE(cache->membersPerZoneAtMax(nullptr));
    EXPECT_FALSE(cache->membersPerAliasAtMax(nullptr));
    limit({});
    EXPECT_TRUE(cache->zonesPerZonesetAtMax(nullptr)) << "nothing may be in it";
    EXPECT_THAT(calls(), IsEmpty());
}

// ---- when the cache is made --------------------------------------------------------------------------

class ZoningLimitsOfTheCache : public support::CacheTest {
protected:
    ZoningLimitsOfTheCache() {
        scripted::zoning = {};
        scripted::zoning.connection = 1;
        scripted::zoning.limits = {300, 3000, 12000, 1000, 500, 3000, 500};
    }
    /// What was logged behind the counts.
    std::vector<std::string> logAfterCounting() const {
        const std::vector<std::string> lines = support::messagesSince(_mark);
        const auto counted = std::find(lines.begin(), lines.end(), kNothingCounted);
        return counted == lines.end() ? lines : std::vector<std::string>(counted + 1, lines.end());
    }

private:
    std::size_t _mark = support::logMark();
};

TEST_F(ZoningLimitsOfTheCache, AreLoadedThen) {
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(logAfterCounting(), ElementsAre("DCACHE: Zoning limits loaded"));
    EXPECT_EQ(cache().getZoningLimits().members, 12000);
}

TEST_F(ZoningLimitsOfTheCache, ARefusalIsNoErrorOfTheCache) {
    scripted::zoning.faults = {{"fzsGetZoningLimitations", 1, 7, false}};
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(logAfterCounting(), ElementsAre("DCACHE: Zoning limits failed to load"));
}

} // namespace
