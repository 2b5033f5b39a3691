// Edits of zone sets, zones and aliases: every result, with the calls of the switch library that come before it.
#include "tests/zoning/EditTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kCopied = "ZoneCreateCopy(elm@uber, ^_-_-_-_TMPZONE_-_-_-_^)";
constexpr const char *kRenamed = "ZoneSetName(^_-_-_-_TMPZONE_-_-_-_^, elm)";

class ZoningEdits : public EditTest {};

// ---- zone sets ---------------------------------------------------------------------------------------

auto createZoneset(const char *name) {
    return [name](ZoningCache &cache) { return cache.createZoneset(name); };
}

TEST_F(ZoningEdits, CreateZoneset) {
    const Lines made = {"ZonesetTestName(gamma)", "ZonesetCreate(gamma)", "ZonesetGetName(gamma)"};
    expect({
        {"a new one", createZoneset("gamma"), 0, made, Recount::yes},
        {"the name of the active one",
         createZoneset("live"),
         0,
         {"ZonesetTestName(live)", "ZonesetCreate(live)", "ZonesetGetName(live)"},
         Recount::yes},
        {"there already", createZoneset("Alpha"), 3, {}},
        {"the key of the active one", createZoneset(kActiveKey), 3, {}},
        {"not valid", createZoneset("gam!"), 1, {"ZonesetTestName(gam!)"}},
        {"no name", createZoneset(nullptr), 1, {}},
        {"not made", createZoneset("gamma"), 4, {made[0], made[1]}, Recount::no, {{"ZonesetCreate"}}},
        {"not entered",
         createZoneset("gamma"),
         4,
         {made[0], made[1], made[2], "ZonesetDestroy(gamma)"},
         Recount::no,
         {{"ZonesetGetName"}}},
    });
    for (const char *name : {"gamma", "Alpha", "gam!"})
        expectLimit({2, 10, 100, 10, 10, 10, 10}, createZoneset(name), "DCACHE: Zoneset maximum of 2 reached", {});
    expectToSurviveEveryFailure(createZoneset("gamma"), {0, 1, 4});
}

TEST_F(ZoningEdits, ACreatedZonesetIsADefinedOneAndEmpty) {
    cache->createZoneset("gamma");
    _ZoneSetTypes kind = ZONESET_UBER;
    const auto *made = static_cast<scripted::Object *>(cache->getZoneset("gamma", kind));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(kind, ZONESET_INACTIVE);
    EXPECT_THAT(made->zones, IsEmpty());
    EXPECT_EQ(cache->getZoningCounts().zonesets, 3);
}

auto removeZoneset(const char *name) {
    return [name](ZoningCache &cache) { return cache.removeZoneset(name); };
}

TEST_F(ZoningEdits, RemoveZoneset) {
    expect({
        {"a defined one", removeZoneset("beta"), 0, {"ZonesetGetName(beta)", "ZonesetDestroy(beta)"}, Recount::yes},
        {"the active one by its key", removeZoneset(kActiveKey), 0, {"ZonesetDestroy(live)"}, Recount::yes},
        {"the uber one by its key", removeZoneset(kUberKey), 0, {"ZonesetDestroy(uber)"}, Recount::yes},
        {"unknown", removeZoneset("gamma"), 2, {}},
        {"the active one by its name", removeZoneset("live"), 2, {}},
        {"the uber one by its name", removeZoneset("uber"), 2, {}},
        {"no name", removeZoneset(nullptr), 2, {}},
        {"its name cannot be read",
         removeZoneset("beta"),
         4,
         {"ZonesetGetName(beta)"},
         Recount::no,
         {{"ZonesetGetName"}}},
    });
    expectToSurviveEveryFailure(removeZoneset("beta"), {0, 4});
}

TEST_F(ZoningEdits, RemovingTheActiveZonesetClearsItsHandle) {
    EXPECT_EQ(cache->removeZoneset(kActiveKey), 0);
    EXPECT_EQ(cache->getActiveZoneset(), nullptr);
    EXPECT_EQ(cache->removeZoneset(kActiveKey), 2);
    EXPECT_EQ(cache->removeZoneset(kUberKey), 0);
    EXPECT_EQ(cache->getUberZoneset(), nullptr);
}

auto addZoneToZoneset(const char *zoneset, const char *zone) {
    return [=](ZoningCache &cache) { return cache.addZoneToZoneset(zoneset, zone); };
}

TEST_F(ZoningEdits, AddZoneToZoneset) {
    const Lines checked = {"ZonesetGetZoneCount(beta)", "ZonesetFindZone(beta, elm)", "ZonesetFindZone(uber, elm)"};
    expect({
        {"done",
         addZoneToZoneset("beta", "elm"),
         0,
         {checked[0], checked[1], checked[2], kCopied, kRenamed, "ZonesetAddZone(beta, elm)"}},
        {"to the active one",
         addZoneToZoneset(kActiveKey, "elm"),
         0,
         {"ZonesetGetZoneCount(live)", "ZonesetFindZone(live, elm)", checked[2], kCopied, kRenamed,
          "ZonesetAddZone(live, elm)"}},
        {"no such zone set", addZoneToZoneset("gamma", "elm"), 2, {}},
        {"the name of the active zone set", addZoneToZoneset("live", "elm"), 2, {}},
        {"no zone set named", addZoneToZoneset(nullptr, "elm"), 2, {}},
        {"there already", addZoneToZoneset("beta", "oak"), 3, {checked[0], "ZonesetFindZone(beta, oak)"}},
        {"there already in the database",
         addZoneToZoneset(kUberKey, "elm"),
         3,
         {"ZonesetGetZoneCount(uber)", checked[2]}},
        {"no such zone",
         addZoneToZoneset("beta", "fir"),
         2,
         {checked[0], "ZonesetFindZone(beta, fir)", "ZonesetFindZone(uber, fir)"}},
        {"no zone named", addZoneToZoneset("beta", nullptr), 2, {checked[0]}},
        {"not copied",
         addZoneToZoneset("beta", "elm"),
         4,
         {checked[0], checked[1], checked[2], kCopied},
         Recount::no,
         {{"ZoneCreateCopy"}}},
        {"not renamed",
         addZoneToZoneset("beta", "elm"),
         4,
         {checked[0], checked[1], checked[2], kCopied, kRenamed, "ZoneDestroy(^_-_-_-_TMPZONE_-_-_-_^)"},
         Recount::no,
         {{"ZoneSetName"}}},
        {"not added, which leaves the copy",
         addZoneToZoneset("beta", "elm"),
         4,
         {checked[0], checked[1], checked[2], kCopied, kRenamed, "ZonesetAddZone(beta, elm)"},
         Recount::no,
         {{"ZonesetAddZone"}},
         1},
    });
    for (const char *zone : {"elm", "oak", "fir"})
        expectLimit({10, 10, 100, 1, 10, 10, 10}, addZoneToZoneset("beta", zone),
                    "DCACHE: Zones per zoneset maximum of 1 reached", {checked[0]});
    expectToSurviveEveryFailure(addZoneToZoneset("beta", "elm"), {0, 2, 4});
}

TEST_F(ZoningEdits, AZoneSetGetsACopyOfItsOwn) {
    cache->addZoneToZoneset("beta", "elm");
    ASSERT_THAT(names(beta->zones), ElementsAre("oak", "elm"));
    EXPECT_EQ(beta->zones[1]->zoneType, ZOV_ZT_HARDACL);
    EXPECT_THAT(membersOf(beta, "elm"), ElementsAre("1:10"));
    EXPECT_THAT(names(uber->zones), ElementsAre("oak", "elm"));
    EXPECT_EQ(cache->addZoneToZoneset("beta", "elm"), 3);
}

TEST_F(ZoningEdits, AZoneOfAnotherZoneSetAloneIsNoZoneOfTheDatabase) {
    scripted::zone(alpha, "yew");
    EXPECT_EQ(cache->addZoneToZoneset("beta", "yew"), 2);
    EXPECT_THAT(names(beta->zones), ElementsAre("oak"));
}

auto removeZoneFromZoneset(const char *zoneset, const char *zone) {
    return [=](ZoningCache &cache) { return cache.removeZoneFromZoneset(zoneset, zone); };
}

TEST_F(ZoningEdits, RemoveZoneFromZoneset) {
    const Lines removed = {"ZonesetFindZone(Alpha, oak)", "ZonesetRemoveZone(Alpha, oak@Alpha)"};
    expect({
        {"done", removeZoneFromZoneset("Alpha", "oak"), 0, removed},
        {"of the database",
         removeZoneFromZoneset(kUberKey, "elm"),
         0,
         {"ZonesetFindZone(uber, elm)", "ZonesetRemoveZone(uber, elm@uber)"}},
        {"no such zone set", removeZoneFromZoneset("gamma", "oak"), 2, {}},
        {"no zone set named", removeZoneFromZoneset(nullptr, "oak"), 2, {}},
        {"not in it", removeZoneFromZoneset("Alpha", "elm"), 2, {"ZonesetFindZone(Alpha, elm)"}},
        {"no zone named", removeZoneFromZoneset("Alpha", nullptr), 2, {}},
        {"not removed", removeZoneFromZoneset("Alpha", "oak"), 4, removed, Recount::no, {{"ZonesetRemoveZone"}}},
    });
    expectToSurviveEveryFailure(removeZoneFromZoneset("Alpha", "oak"), {2, 4});
}

// ---- zones -------------------------------------------------------------------------------------------

auto createZone(const char *name) {
    return [name](ZoningCache &cache) { return cache.createZone(name, ZOV_ZT_HARDACL); };
}

TEST_F(ZoningEdits, CreateZone) {
    const Lines made = {"ZonesetFindZone(uber, fir)", "ZoneCreate(fir)", "ZoneSetType(fir, 3)",
                        "ZonesetAddZone(uber, fir)", "ZoneDestroy(fir)"};
    expect({
        {"done", createZone("fir"), 0, {made[0], made[1], made[2], made[3]}, Recount::yes},
        {"there already", createZone("elm"), 3, {"ZonesetFindZone(uber, elm)"}},
        {"not valid", createZone("fi!"), 1, {"ZonesetFindZone(uber, fi!)", "ZoneCreate(fi!)"}},
        {"no name", createZone(nullptr), 1, {}},
        {"not made", createZone("fir"), 1, {made[0], made[1]}, Recount::no, {{"ZoneCreate"}}},
        {"no type", createZone("fir"), 4, {made[0], made[1], made[2], made[4]}, Recount::no, {{"ZoneSetType"}}},
        {"not added", createZone("fir"), 4, made, Recount::no, {{"ZonesetAddZone"}}},
    });
    for (const char *name : {"fir", "elm", "fi!"})
        expectLimit({10, 2, 100, 10, 10, 10, 10}, createZone(name), "DCACHE: Zone maximum of 2 reached", {});
    expectToSurviveEveryFailure(createZone("fir"), {0, 1, 4});
}

TEST_F(ZoningEdits, ACreatedZoneBelongsToTheDatabaseOnly) {
    cache->createZone("fir", ZOV_ZT_HARDVPF);
    ASSERT_THAT(names(uber->zones), ElementsAre("oak", "elm", "fir"));
    EXPECT_EQ(uber->zones[2]->zoneType, ZOV_ZT_HARDVPF);
    EXPECT_THAT(names(alpha->zones), ElementsAre("oak"));
    EXPECT_EQ(cache->getZoningCounts().zones, 3);
    EXPECT_EQ(cache->createZone("fir", ZOV_ZT_SOFT), 3);
    EXPECT_EQ(uber->zones[2]->zoneType, ZOV_ZT_HARDVPF);
}

auto removeZone(const char *name) {
    return [name](ZoningCache &cache) { return cache.removeZone(name); };
}

TEST_F(ZoningEdits, RemoveZone) {
    const Lines removed = {"ZonesetFindZone(uber, oak)",  "ZonesetRemoveZone(uber, oak@uber)",
                           "ZonesetFindZone(Alpha, oak)", "ZonesetRemoveZone(Alpha, oak@Alpha)",
                           "ZonesetFindZone(beta, oak)",  "ZonesetRemoveZone(beta, oak@beta)"};
    const auto first = [&removed](long count) { return Lines(removed.begin(), removed.begin() + count); };
    expect({
        {"done", removeZone("oak"), 0, removed, Recount::yes},
        {"in no zone set",
         removeZone("elm"),
         0,
         {"ZonesetFindZone(uber, elm)", "ZonesetRemoveZone(uber, elm@uber)", "ZonesetFindZone(Alpha, elm)",
          "ZonesetFindZone(beta, elm)"},
         Recount::yes},
        {"unknown", removeZone("fir"), 2, {"ZonesetFindZone(uber, fir)"}},
        {"no name", removeZone(nullptr), 2, {}},
        {"not removed", removeZone("oak"), 4, first(2), Recount::no, {{"ZonesetRemoveZone", 1}}},
        {"not from the first zone set", removeZone("oak"), 4, first(4), Recount::no, {{"ZonesetRemoveZone", 2}}},
        {"not from the second zone set", removeZone("oak"), 4, first(6), Recount::no, {{"ZonesetRemoveZone", 3}}},
    });
    expectToSurviveEveryFailure(removeZone("oak"), {0, 2, 4});
}

TEST_F(ZoningEdits, TheActiveZoneSetKeepsARemovedZone) {
    cache->removeZone("oak");
    EXPECT_THAT(names(uber->zones), ElementsAre("elm"));
    EXPECT_THAT(alpha->zones, IsEmpty());
    EXPECT_THAT(beta->zones, IsEmpty());
    EXPECT_THAT(names(live->zones), ElementsAre("oak"));
    EXPECT_EQ(cache->getZoningCounts().zones, 1);
}

TEST_F(ZoningEdits, ARemovalThatEndsEarlyLeavesWhatItHasDone) {
    fail("ZonesetRemoveZone", 3);
    EXPECT_EQ(cache->removeZone("oak"), 4);
    EXPECT_THAT(names(uber->zones), ElementsAre("elm"));
    EXPECT_THAT(alpha->zones, IsEmpty());
    EXPECT_THAT(names(beta->zones), ElementsAre("oak"));
    EXPECT_EQ(cache->getZoningCounts().zones, 2) << "not counted anew";
}

// ---- aliases -----------------------------------------------------------------------------------------

auto createZoneAlias(const char *name) {
    return [name](ZoningCache &cache) { return cache.createZoneAlias(name); };
}

TEST_F(ZoningEdits, CreateZoneAlias) {
    const Lines made = {"ZonesetFindAlias(uber, db)", "ZoneAliasCreate(db)", "ZonesetAddAlias(uber, db)",
                        "ZoneAliasDestroy(db)"};
    expect({
        {"done", createZoneAlias("db"), 0, {made[0], made[1], made[2]}, Recount::yes},
        {"there already", createZoneAlias("web"), 3, {"ZonesetFindAlias(uber, web)"}},
        {"not valid, which is a failure here",
         createZoneAlias("d!"),
         4,
         {"ZonesetFindAlias(uber, d!)", "ZoneAliasCreate(d!)"}},
        {"no name", createZoneAlias(nullptr), 4, {}},
        {"not made", createZoneAlias("db"), 4, {made[0], made[1]}, Recount::no, {{"ZoneAliasCreate"}}},
        {"not added", createZoneAlias("db"), 4, made, Recount::no, {{"ZonesetAddAlias"}}},
    });
    for (const char *name : {"db", "web", "d!"})
        expectLimit({10, 10, 100, 10, 10, 1, 10}, createZoneAlias(name), "DCACHE: Zone alias maximum of 1 reached", {});
    expectToSurviveEveryFailure(createZoneAlias("db"), {0, 4});
}

auto removeZoneAlias(const char *name) {
    return [name](ZoningCache &cache) { return cache.removeZoneAlias(name); };
}

TEST_F(ZoningEdits, RemoveZoneAlias) {
    const Lines removed = {"ZonesetFindAlias(uber, web)",  "ZonesetRemoveAlias(uber, web@uber)",
                           "ZonesetFindAlias(Alpha, web)", "ZonesetRemoveAlias(Alpha, web@Alpha)",
                           "ZonesetFindAlias(uber, web)",  "ZonesetFindAlias(beta, web)"};
    const auto first = [&removed](long count) { return Lines(removed.begin(), removed.begin() + count); };
    expect({
        {"done", removeZoneAlias("web"), 0, removed, Recount::yes},
        {"unknown", removeZoneAlias("db"), 2, {"ZonesetFindAlias(uber, db)"}},
        {"no name", removeZoneAlias(nullptr), 2, {}},
        {"not removed", removeZoneAlias("web"), 4, first(2), Recount::no, {{"ZonesetRemoveAlias", 1}}},
        {"not from a zone set", removeZoneAlias("web"), 4, first(4), Recount::no, {{"ZonesetRemoveAlias", 2}}},
    });
    expectToSurviveEveryFailure(removeZoneAlias("web"), {0, 2, 4});
}

TEST_F(ZoningEdits, TheActiveZoneSetKeepsARemovedAliasAndZonesKeepTheirReference) {
    cache->removeZoneAlias("web");
    EXPECT_THAT(uber->aliases, IsEmpty());
    EXPECT_THAT(alpha->aliases, IsEmpty());
    EXPECT_THAT(names(live->aliases), ElementsAre("web"));
    EXPECT_THAT(membersOf(uber, "oak"), ElementsAre("010100", "web"));
    EXPECT_EQ(cache->getZoningCounts().aliases, 0);
    EXPECT_EQ(cache->getZoningCounts().members, 3);
}

// ---- before the first load ---------------------------------------------------------------------------

TEST_F(ZoningEdits, BeforeTheFirstLoadThereIsNoDatabaseToEdit) {
    cache->clearUber();
    forget();
    const long before = scripted::zoning.alive();
    EXPECT_EQ(cache->createZone("fir", ZOV_ZT_SOFT), 4);
    EXPECT_THAT(calls(), ElementsAre("ZoneCreate(fir)", "ZoneSetType(fir, 1)", "ZoneDestroy(fir)"));
    EXPECT_EQ(cache->createZone("fi!", ZOV_ZT_SOFT), 1) << "the name is looked at before it is added";
    EXPECT_EQ(cache->createZone(nullptr, ZOV_ZT_SOFT), 1);
    calls();
    EXPECT_EQ(cache->createZoneAlias("db"), 4);
    EXPECT_EQ(cache->removeZone("oak"), 2);
    EXPECT_EQ(cache->removeZoneAlias("web"), 2);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(scripted::zoning.alive(), before);
    EXPECT_EQ(cache->addZoneToZoneset("beta", "elm"), 2);
    EXPECT_THAT(calls(), ElementsAre("ZonesetGetZoneCount(beta)", "ZonesetFindZone(beta, elm)"));
    EXPECT_EQ(cache->addZoneToZoneset("beta", "oak"), 3) << "the earlier checks are made all the same";
    EXPECT_EQ(cache->createZoneset("gamma"), 0);
    EXPECT_EQ(cache->removeZoneFromZoneset("beta", "oak"), 0);
    EXPECT_THAT(alpha->aliases, testing::SizeIs(1));
    expectLimit({10, 2, 100, 10, 10, 10, 10}, createZone("fir"), "DCACHE: Zone maximum of 2 reached", {});
}

} // namespace
