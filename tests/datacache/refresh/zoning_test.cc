// The refresh of zoning: what it reads, what it tells, and what it tries again.
#include <stdexcept>

#include <fmt/format.h>

#include "tests/datacache/refresh/ZoningRefreshTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kNoneCounted = "DCACHE: zsl = 0, zl = 0, al = 0, zml = 0";
constexpr const char *kOneCounted = "DCACHE: zsl = 1, zl = 0, al = 0, zml = 0";
constexpr const char *kTwoCounted = "DCACHE: zsl = 2, zl = 0, al = 0, zml = 0";

class ZoningRefresh : public ZoningRefreshTest {};

// ---- a refresh that finds changes --------------------------------------------------------------------

TEST_F(ZoningRefresh, TheFirstOneLoadsEverything) {
    EXPECT_TRUE(refresh());
    EXPECT_THAT(questions(), ElementsAre(kQuestion));
    EXPECT_THAT(log(),
                ElementsAre("DCACHE: Active zoneset added, 0s", kNoneCounted,
                            "DCACHE: DCEventActiveZonesetChange: activeZoneset=live previousActiveZoneset=",
                            kNoneCounted, kOneCounted, "DCACHE: Inactive zoneset 'Alpha' added, 0s", kTwoCounted,
                            "DCACHE: Inactive zoneset 'beta' added, 0s", kTwoCounted, "DCACHE: Uber zoneset added, 0s",
                            "DCACHE: Zoning database update complete", "DCACHE: DCEventZoningDBChange"));
    EXPECT_THAT(calls(), ElementsAre("fzsGetActiveZoneset()", "fzsGetZonesetList()", "fzsGetZoneset(Alpha)",
                                     "ZonesetGetName(Alpha)", "fzsGetZoneset(beta)", "ZonesetGetName(beta)",
                                     "fzsGetAllZonesAndAliases(__UberZoneset__)",
                                     "ZonesetGetZoneCount(__UberZoneset__)", "ZonesetGetAliasCount(__UberZoneset__)"));
    EXPECT_THAT(events(), ElementsAre(activeChange("", "live"), databaseChange()));
    EXPECT_THAT(zonesets(), ElementsAre("Alpha", "live", kUber, "beta"));
    EXPECT_NE(cache().getActiveZoneset(), nullptr);
    EXPECT_NE(cache().getUberZoneset(), nullptr);
}

TEST_F(ZoningRefresh, WithChecksumsOfZeroTheFirstOneLoadsEverythingToo) {
    tree[kActiveSum] = tree[kInactiveSum] = "0";
    tree[kActiveName] = "";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(activeChange("", ""), databaseChange()));
    EXPECT_THAT(fetches(), testing::ElementsAreArray(_everything));
}

TEST_F(ZoningRefresh, ChecksumsOfOneCountAsLoadedAtFirst) {
    tree[kActiveSum] = tree[kInactiveSum] = "1";
    tree[kActiveName] = "";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ZoningRefresh, WithoutAnyChangeNothingIsReadOrTold) {
    load();
    EXPECT_TRUE(refresh());
    EXPECT_THAT(questions(), ElementsAre(kQuestion));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ZoningRefresh, AMovedActiveChecksumReloadsTheActiveZoneSetOnly) {
    load();
    void *before = cache().getActiveZoneset();
    tree[kActiveSum] = "A2";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(log(),
                ElementsAre(kTwoCounted, "DCACHE: Active zoneset added, 0s", kTwoCounted,
                            "DCACHE: DCEventActiveZonesetChange: activeZoneset=live previousActiveZoneset=live"));
    EXPECT_THAT(fetches(), ElementsAre("fzsGetActiveZoneset()"));
    EXPECT_THAT(events(), ElementsAre(activeChange("live", "live")));
    EXPECT_NE(cache().getActiveZoneset(), before);
    EXPECT_TRUE(static_cast<scripted::Object *>(before)->destroyed);
}

TEST_F(ZoningRefresh, ANewActiveNameReloadsTheActiveZoneSetOnly) {
    load();
    tree[kActiveName] = scripted::zoning.activeName = "night";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(fetches(), ElementsAre("fzsGetActiveZoneset()"));
    EXPECT_THAT(events(), ElementsAre(activeChange("live", "night")));
    EXPECT_THAT(zonesets(), ElementsAre("Alpha", "night", kUber, "beta"));
}

TEST_F(ZoningRefresh, WhenNoZoneSetIsActiveAnyMoreThereIsNoneToRead) {
    load();
    tree[kActiveName] = "";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(log(), ElementsAre(kTwoCounted,
                                   "DCACHE: DCEventActiveZonesetChange: activeZoneset= previousActiveZoneset=live"));
    EXPECT_THAT(fetches(), IsEmpty());
    EXPECT_THAT(events(), ElementsAre(activeChange("live", "")));
    EXPECT_EQ(cache().getActiveZoneset(), nullptr);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ZoningRefresh, AMovedInactiveChecksumReloadsTheDatabaseOnly) {
    load();
    void *active = cache().getActiveZoneset();
    void *uber = cache().getUberZoneset();
    scripted::zoning.listed = {"gamma"};
    tree[kInactiveSum] = "B3";
    EXPECT_TRUE(refresh());
    const Lines counted = {"ZonesetGetZoneCount(__UberZoneset__)", "ZonesetGetAliasCount(__UberZoneset__)"};
    EXPECT_THAT(calls(), ElementsAre("ZonesetDestroy(Alpha)", "ZonesetDestroy(beta)", counted[0], counted[1],
                                     "ZonesetDestroy(__UberZoneset__)", "fzsGetZonesetList()", "fzsGetZoneset(gamma)",
                                     "ZonesetGetName(gamma)", _everything.back(), counted[0], counted[1]));
    EXPECT_THAT(events(), ElementsAre(databaseChange()));
    EXPECT_THAT(zonesets(), ElementsAre("live", kUber, "gamma"));
    EXPECT_EQ(cache().getActiveZoneset(), active);
    EXPECT_NE(cache().getUberZoneset(), uber);
}

TEST_F(ZoningRefresh, WithoutAnyZoneSetTheDatabaseIsLoadedAllTheSame) {
    scripted::zoning.listed = {};
    EXPECT_TRUE(refresh());
    EXPECT_THAT(fetches(), ElementsAre("fzsGetActiveZoneset()", "fzsGetZonesetList()", _everything.back()));
    EXPECT_THAT(events(), ElementsAre(activeChange("", "live"), databaseChange()));
    EXPECT_THAT(zonesets(), ElementsAre("live", kUber));
}

TEST_F(ZoningRefresh, ChecksumsAreHexadecimalNumbersOf32Bits) {
    load();
    for (const char *same : {"a1", "000000A1", "0xA1", " A1"}) {
        tree[kActiveSum] = same;
        EXPECT_TRUE(refresh());
        EXPECT_THAT(events(), IsEmpty()) << same;
    }
    for (const char *other : {"FFFFFFFF", "7FFFFFFF", "0", "10", "A"}) {
        tree[kActiveSum] = other;
        EXPECT_TRUE(refresh());
        EXPECT_THAT(events(), ElementsAre(activeChange("live", "live"))) << other;
    }
    tree[kActiveSum] = "nonsense"; // no number: 0
    EXPECT_TRUE(refresh());
    EXPECT_EQ(events().size(), 1U);
    tree[kActiveSum] = "0";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ZoningRefresh, LogsHowManySecondsTheSwitchTook) {
    scripted::zoning.fetch = [time = 1000L](const std::string &name) mutable {
        support::setUptime(time += static_cast<long>(name.size()));
        return scripted::zoneset(name);
    };
    EXPECT_TRUE(refresh());
    EXPECT_THAT(
        log(), testing::IsSupersetOf({"DCACHE: Active zoneset added, 4s", "DCACHE: Inactive zoneset 'Alpha' added, 5s",
                                      "DCACHE: Inactive zoneset 'beta' added, 4s", "DCACHE: Uber zoneset added, 15s"}));
}

TEST_F(ZoningRefresh, WhatTheSwitchTakesForNamesAndCountsIsNoneOfTheSecondsLogged) {
    scripted::zoning.enter = [time = 1000L]() mutable { support::setUptime(++time); };
    EXPECT_TRUE(refresh());
    scripted::zoning.enter = nullptr;
    EXPECT_THAT(log(),
                testing::IsSupersetOf({"DCACHE: Active zoneset added, 1s", "DCACHE: Inactive zoneset 'Alpha' added, 1s",
                                       "DCACHE: Inactive zoneset 'beta' added, 1s", "DCACHE: Uber zoneset added, 1s"}));
}

TEST_F(ZoningRefresh, EachEventComesRightAfterTheLineThatAnnouncesIt) {
    Lines seen;
    support::onEvent([&](DataCacheEvent &event) { seen.push_back(log().back() + " | " + support::describe(event)); });
    refresh();
    EXPECT_THAT(seen, ElementsAre("DCACHE: DCEventActiveZonesetChange: activeZoneset=live previousActiveZoneset= | " +
                                      activeChange("", "live"),
                                  "DCACHE: DCEventZoningDBChange | " + databaseChange()));
}

TEST_F(ZoningRefresh, ThePictureIsWholeWhenTheClientHearsOfIt) {
    Lines seen;
    support::onEvent([&](DataCacheEvent &event) {
        const Lines names = zonesets();
        seen.push_back(fmt::format("{}: {}", event.type, names.size()));
    });
    refresh();
    EXPECT_THAT(seen, ElementsAre("27: 1", "28: 4"));
}

// ---- names -------------------------------------------------------------------------------------------

TEST_F(ZoningRefresh, NamesFillTheirFields) {
    const std::string longest(64, 'n');
    scripted::zoning.listed = {longest, "beta", std::string(65, 'o') /* without an end */, "z"};
    EXPECT_TRUE(refresh());
    EXPECT_THAT(zonesets(), ElementsAre("live", kUber, "beta", longest, std::string(64, 'o'), "z"));
}

TEST_F(ZoningRefresh, AZoneSetThatIsListedTwiceIsEnteredOnce) {
    scripted::zoning.listed = {"Alpha", "beta", "Alpha"};
    EXPECT_TRUE(refresh());
    EXPECT_THAT(fetches(), ElementsAre("fzsGetActiveZoneset()", "fzsGetZonesetList()", "fzsGetZoneset(Alpha)",
                                       "fzsGetZoneset(beta)", "fzsGetZoneset(Alpha)", _everything.back()));
    EXPECT_THAT(zonesets(), ElementsAre("Alpha", "live", kUber, "beta"));
    EXPECT_EQ(scripted::zoning.alive(), 4);
    EXPECT_EQ(cache().getZoningCounts().zonesets, 2);
}

TEST_F(ZoningRefresh, AZoneSetThatIsHandedOutTwiceIsEnteredOnceAndKept) {
    scripted::Object *alpha = scripted::zoneset("Alpha");
    scripted::zoning.listed = {"Alpha", "beta", "Alpha"};
    scripted::zoning.fetch = [=](const std::string &name) { return name == "Alpha" ? alpha : scripted::zoneset(name); };
    EXPECT_TRUE(refresh());
    EXPECT_FALSE(alpha->destroyed);
    EXPECT_THAT(zonesets(), ElementsAre("Alpha", "live", kUber, "beta"));
    EXPECT_EQ(scripted::zoning.alive(), 4);
}

TEST_F(ZoningRefresh, AZoneSetWithoutANameIsNotEntered) {
    fail("ZonesetGetName", 1);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(zonesets(), ElementsAre("live", kUber, "beta"));
    EXPECT_EQ(scripted::zoning.alive(), 3);
    EXPECT_THAT(log(), testing::Contains("DCACHE: Inactive zoneset 'Alpha' added, 0s"));
}

// ---- failures ----------------------------------------------------------------------------------------

TEST_F(ZoningRefresh, WithoutAnyOneOfItsAnswersNothingHappens) {
    load();
    tree[kActiveSum] = "A2";
    tree[kInactiveSum] = "B3";
    for (const char *key : {"Oper.Switch.WhoIsPrincipal", kActiveSum, kInactiveSum, kActiveName}) {
        refused = {key};
        EXPECT_FALSE(refresh());
        EXPECT_THAT(log(), ElementsAre(fmt::format("DCACHE: sml command='{}', smlerror='0x5'", key),
                                       "DCACHE: Cache update failed: DataCache.cc:_getZoningInfo:2512"));
        EXPECT_THAT(calls(), IsEmpty());
        EXPECT_THAT(events(), IsEmpty());
    }
    refused.clear();
    result = 3;
    EXPECT_FALSE(refresh());
    EXPECT_THAT(log(), ElementsAre("DCACHE: Cache update failed: DataCache.cc:_getZoningInfo:2512"));
    EXPECT_EQ(zonesets().size(), 4U);
    result = 0;
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(activeChange("live", "live"), databaseChange()));
}

TEST_F(ZoningRefresh, AnActiveZoneSetThatCannotBeReadIsTriedAgain) {
    load();
    tree[kActiveName] = scripted::zoning.activeName = "night";
    tree[kInactiveSum] = "B3";
    for (const int32_t outcome : {7, 0}) { // refused, and told as read but not there
        fail("fzsGetActiveZoneset", 1, outcome);
        EXPECT_FALSE(refresh());
        EXPECT_EQ(log().back(), "DCACHE: no active zoneset");
        EXPECT_THAT(fetches(), ElementsAre("fzsGetActiveZoneset()")) << "the database has to wait";
        EXPECT_THAT(events(), IsEmpty());
        EXPECT_EQ(cache().getActiveZoneset(), nullptr);
        EXPECT_THAT(zonesets(), ElementsAre("Alpha", kUber, "beta"));
        scripted::zoning.faults.clear();
    }
    EXPECT_TRUE(refresh());
    EXPECT_THAT(events(), ElementsAre(activeChange("live", "night"), databaseChange()));
}

TEST_F(ZoningRefresh, ADatabaseThatCannotBeReadIsTriedAgain) {
    const struct {
        const char *call;
        int nth;
        const char *line;
        Lines left;
    } rows[] = {
        {"fzsGetZonesetList", 1, "DCACHE: zov_fzsGetZonesetList failed", {"live"}},
        {"fzsGetZoneset", 1, "DCACHE: zov_fzsGetZoneset failed", {"live"}},
        {"fzsGetZoneset", 2, "DCACHE: zov_fzsGetZoneset failed", {"Alpha", "live"}},
        {"fzsGetAllZonesAndAliases", 1, "DCACHE: zov_fzsGetAllZonesAndAliases failed", {"Alpha", "live", "beta"}},
    };
    load();
    unsigned sum = 0xB3;
    for (const auto &row : rows) {
        for (const int32_t outcome : {7, 0}) {
            SCOPED_TRACE(fmt::format("{} {} {}", row.call, row.nth, outcome));
            tree[kInactiveSum] = fmt::format("{:X}", sum++);
            fail(row.call, row.nth, outcome);
            EXPECT_FALSE(refresh());
            EXPECT_EQ(log().back(), row.line);
            EXPECT_THAT(events(), IsEmpty());
            EXPECT_EQ(zonesets(), row.left);
            EXPECT_EQ(cache().getUberZoneset(), nullptr);
            scripted::zoning.faults.clear();
            EXPECT_TRUE(refresh());
            EXPECT_EQ(fetches(), _everything);
            EXPECT_THAT(events(), ElementsAre(databaseChange()));
            EXPECT_THAT(zonesets(), ElementsAre("Alpha", "live", kUber, "beta"));
        }
    }
}

TEST_F(ZoningRefresh, AnEmptyListNeedNotBeThere) {
    scripted::zoning.listed = {};
    fail("fzsGetZonesetList", 1, 0);
    EXPECT_TRUE(refresh());
    EXPECT_THAT(zonesets(), ElementsAre("live", kUber));
}

TEST_F(ZoningRefresh, AFailedDatabaseDoesNotReloadTheActiveZoneSetAgain) {
    fail("fzsGetZonesetList");
    EXPECT_FALSE(refresh());
    EXPECT_THAT(events(), ElementsAre(activeChange("", "live")));
    EXPECT_TRUE(refresh());
    EXPECT_THAT(fetches(), testing::ElementsAreArray(_everything));
    EXPECT_THAT(events(), ElementsAre(databaseChange()));
}

TEST_F(ZoningRefresh, WhatFailedToLoadIsNotTriedAgainWhenItsChecksumGoesBack) {
    load();
    tree[kActiveSum] = "A2";
    fail("fzsGetActiveZoneset");
    EXPECT_FALSE(refresh());
    tree[kActiveSum] = "A1";
    tree[kInactiveSum] = "B3";
    fail("fzsGetZonesetList");
    EXPECT_FALSE(refresh());
    tree[kInactiveSum] = "B2";
    EXPECT_TRUE(refresh());
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(zonesets(), IsEmpty());
}

TEST_F(ZoningRefresh, WhatAClientThrowsMakesItHearOfTheChangeAgain) {
    for (const int32_t type : {27, 28}) {
        tree[kActiveSum] = fmt::format("A{}", type);
        tree[kInactiveSum] = fmt::format("B{}", type);
        support::onEvent([type](DataCacheEvent &event) {
            if (event.type == type)
                throw std::runtime_error("mine");
        });
        EXPECT_THROW(refresh(), std::runtime_error);
        EXPECT_TRUE(support::isLockFree());
        support::onEvent(nullptr);
        EXPECT_TRUE(refresh());
        EXPECT_EQ(events().size(), type == 27 ? 2U : 1U);
        EXPECT_THAT(zonesets(), ElementsAre("Alpha", "live", kUber, "beta"));
        EXPECT_EQ(scripted::zoning.alive(), 4);
    }
}

// ---- switches without zoning, and many refreshes -----------------------------------------------------

TEST_F(ZoningRefresh, ATransparentSwitchHasNone) {
    tree["Config.Switch.TransparentMode"] = "True";
    ASSERT_TRUE(cache()._getSwitchInfo());
    EXPECT_TRUE(refresh());
    EXPECT_THAT(questions(), IsEmpty());
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ZoningRefresh, NoHandleIsLostInAThousandRefreshes) {
    load();
    const long before = scripted::zoning.alive();
    for (int i = 0; i < 1000; ++i) {
        tree[kActiveSum] = tree[kInactiveSum] = fmt::format("{:X}", 0x1000 + i);
        if (i % 3 == 0)
            fail(i % 2 == 0 ? "fzsGetZoneset" : "ZonesetGetName", 2);
        cache()._getZoningInfo();
        scripted::zoning.faults.clear();
        calls();
    }
    tree[kActiveSum] = tree[kInactiveSum] = "A";
    EXPECT_TRUE(refresh());
    EXPECT_EQ(scripted::zoning.alive(), before);
}

} // namespace
