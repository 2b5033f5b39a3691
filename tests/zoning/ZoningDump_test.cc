// The cached database in the log.
#include "tests/support/Lock.h"
#include "tests/zoning/ZoningTest.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class ZoningDump : public ZoningTest {
protected:
    void dump() {
        forget();
        EXPECT_TRUE(cache->dump());
        EXPECT_TRUE(support::isLockFree());
    }
};

TEST_F(ZoningDump, OfAnEmptyCacheIsEmpty) {
    dump();
    EXPECT_THAT(log(), IsEmpty());
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ZoningDump, ShowsEveryZoneSetAndBehindEachTheAliasesOfTheDatabase) {
    load();
    dump();
    EXPECT_THAT(log(), ElementsAreArray({
                           "INFO:ZoningCache.cc:dump:[1338] Zoneset: Alpha (inactive)",
                           "INFO:ZoningCache.cc:dump:[1360]   Zone: oak",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: 010100",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: web",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010200",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010300",
                           "INFO:ZoningCache.cc:dump:[1335] Zoneset: live (active)",
                           "INFO:ZoningCache.cc:dump:[1360]   Zone: oak",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: 010100",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010200",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010300",
                           "INFO:ZoningCache.cc:dump:[1341] Zoneset: uber (uber)",
                           "INFO:ZoningCache.cc:dump:[1360]   Zone: oak",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: 010100",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: web",
                           "INFO:ZoningCache.cc:dump:[1360]   Zone: elm",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: 010a",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010200",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010300",
                           "INFO:ZoningCache.cc:dump:[1338] Zoneset: beta (inactive)",
                           "INFO:ZoningCache.cc:dump:[1360]   Zone: oak",
                           "INFO:ZoningCache.cc:dump:[1368]     Member: 010100",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010200",
                           "INFO:ZoningCache.cc:dump:[1396]     Member: 010300",
                       }));
    EXPECT_THAT(support::messagesIn(support::kCriticalLog), IsEmpty());
}

TEST_F(ZoningDump, BeforeTheDatabaseIsLoadedThereAreNoAliases) {
    alpha = scripted::zoneset("Alpha");
    scripted::alias(alpha, "web");
    enter(alpha, ZONESET_INACTIVE);
    dump();
    EXPECT_THAT(log(), ElementsAre("INFO:ZoningCache.cc:dump:[1338] Zoneset: Alpha (inactive)"));
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetName(Alpha)", "ZonesetGetZoneCount(Alpha)"));
}

class ZoningDumpOfASmallDatabase : public ZoningDump {
protected:
    void SetUp() override {
        uber = scripted::zoneset("u");
        scripted::member(scripted::zone(uber, "oak"), ZOV_ZMT_FCADDRESS, "01AB00");
        scripted::member(scripted::alias(uber, "web"), ZOV_ZMT_FCADDRESS, kSecond);
        enter(uber, ZONESET_UBER);
    }
    static constexpr const char *kName = "INFO:ZoningCache.cc:dump:[1341] Zoneset: u (uber)";
    static constexpr const char *kZone = "INFO:ZoningCache.cc:dump:[1360]   Zone: oak";
    static constexpr const char *kZoneMember = "INFO:ZoningCache.cc:dump:[1368]     Member: 01AB00";
    static constexpr const char *kAliasMember = "INFO:ZoningCache.cc:dump:[1396]     Member: 010200";
};

TEST_F(ZoningDumpOfASmallDatabase, GoesOnAfterWhateverCannotBeRead) {
    const struct {
        const char *call;
        int nth;
        Lines lines;
    } rows[] = {
        {"ZonesetGetName", 1, {"INFO:ZoningCache.cc:dump:[1328] Zoneset: Bad entry"}},
        {"ZonesetListZones", 1, {kName, "INFO:ZoningCache.cc:dump:[1351] Zone : Bad entry", kAliasMember}},
        {"ZoneGetName", 1, {kName, "INFO:ZoningCache.cc:dump:[1357] Zone : Can't get name", kAliasMember}},
        {"ZoneListMembers", 1, {kName, kZone, "INFO:ZoningCache.cc:dump:[1368]     Member: Invalid", kAliasMember}},
        {"MemberGetAttr", 1, {kName, kZone, "INFO:ZoningCache.cc:dump:[1368]     Member: Invalid", kAliasMember}},
        {"ZonesetListAliases", 1, {kName, kZone, kZoneMember, "INFO:ZoningCache.cc:dump:[1378]    Alias : Bad entry"}},
        {"ZoneAliasGetName",
         1,
         {kName, kZone, kZoneMember, "INFO:ZoningCache.cc:dump:[1384]    Alias : Can't get name"}},
        {"ZoneAliasListMembers", 1, {kName, kZone, kZoneMember, "INFO:ZoningCache.cc:dump:[1396]     Member: Invalid"}},
        {"MemberGetAttr", 2, {kName, kZone, kZoneMember, "INFO:ZoningCache.cc:dump:[1396]     Member: Invalid"}},
    };
    for (const auto &row : rows) {
        fail(row.call, row.nth);
        dump();
        EXPECT_EQ(log(), row.lines) << row.call;
    }
    dump();
    EXPECT_THAT(log(), ElementsAre(kName, kZone, kZoneMember, kAliasMember));
}

} // namespace
