#include "sim/zoning/Fetch.h"

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;

namespace {

class FetchedZoneset : public testing::Test {
protected:
    void SetUp() override { device->setZoning(simtest::orchard()); }

    void *fetch(const char *name) {
        void *zoneset = nullptr;
        EXPECT_EQ(zov_fzsGetZoneset(client.handle, name, &zoneset), 0) << name;
        return zoneset;
    }

    void *fetchAll() {
        void *zoneset = nullptr;
        EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "__UberZoneset__", &zoneset), 0);
        return zoneset;
    }

    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    const sim::ZoningObjectCounts before = device->zoningObjects();
};

} // namespace

TEST_F(FetchedZoneset, HasItsZonesAndTheAliasesTheseReferTo) {
    const sim::ZoningDatabase all = simtest::orchard();
    sim::ZoningDatabase expected;
    expected.zonesets = {all.zonesets[0]};
    expected.zones = {all.zones[0], all.zones[1]};
    expected.aliases = {all.aliases[0]};
    EXPECT_EQ(simtest::takeApart(fetch("north")), expected);
    expected.zonesets = {all.zonesets[1]};
    expected.zones = {all.zones[0]};
    EXPECT_EQ(simtest::takeApart(fetch("south")), expected);
    EXPECT_EQ(device->zoningObjects(), before);
}

TEST_F(FetchedZoneset, HasAnAliasOnceHoweverOftenItIsReferredTo) {
    sim::ZoningDatabase database = simtest::orchard();
    database.zones[1].members.push_back({ZOV_ZMT_ALIAS, "fir"});
    database.zones[1].members.push_back({ZOV_ZMT_ALIAS, "ash"});
    device->setZoning(database);
    EXPECT_EQ(simtest::takeApart(fetch("north")).aliases, database.aliases);
    EXPECT_EQ(device->zoningObjects(), before);
}

TEST_F(FetchedZoneset, OfEverythingHasAllZonesAndAliasesWhetherInASetOrNot) {
    sim::ZoningDatabase expected = simtest::orchard();
    expected.zonesets = {{"__UberZoneset__", {"oak", "elm", "yew"}}};
    EXPECT_EQ(simtest::takeApart(fetchAll()), expected);
    EXPECT_EQ(device->zoningObjects(), before);
}

TEST_F(FetchedZoneset, IsAFreshOneEachTimeThatItsOwnerMayChange) {
    void *first = fetch("south");
    void *second = fetch("south");
    EXPECT_NE(first, second);
    EXPECT_EQ(zov_ZonesetRemoveZone(first, zov_ZonesetFindZone(first, "oak")), 0);
    EXPECT_EQ(zov_ZonesetGetZoneCount(second), 1);
    EXPECT_EQ(zov_ZonesetDestroy(first), 0);
    EXPECT_EQ(zov_ZonesetDestroy(second), 0);
    EXPECT_EQ(device->zoning(), simtest::orchard());
    EXPECT_EQ(zov_ZonesetGetZoneCount(fetch("south")), 1);
}

TEST_F(FetchedZoneset, StaysAsItWasWhenTheDatabaseChanges) {
    void *zoneset = fetch("north");
    device->setZoning({});
    EXPECT_EQ(simtest::takeApart(zoneset).zones.size(), 2U);
}

TEST_F(FetchedZoneset, IsFoundByItsExactNameOnly) {
    char mark = 0;
    void *zoneset = &mark;
    for (const std::string &name : {std::string("North"), std::string(), std::string("oak"), std::string(65, 'n')})
        EXPECT_EQ(zov_fzsGetZoneset(client.handle, name.c_str(), &zoneset), simtest::kNotFound) << name;
    EXPECT_EQ(zoneset, &mark);
}
