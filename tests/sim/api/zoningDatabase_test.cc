#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

class ZoningDatabase : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    char before = 0;
    void *zoneset = &before; ///< what a failing call must leave alone
};

} // namespace

TEST_F(ZoningDatabase, HasItsSevenLimits) {
    zov_fzs_zoninglimits_s limits;
    ASSERT_EQ(zov_fzsGetZoningLimitations(client.handle, &limits), 0);
    EXPECT_EQ(limits.zonesets, 300);
    EXPECT_EQ(limits.zones, 3000);
    EXPECT_EQ(limits.members, 12000);
    EXPECT_EQ(limits.zonesPerZoneset, 1000);
    EXPECT_EQ(limits.membersPerZone, 500);
    EXPECT_EQ(limits.aliases, 3000);
    EXPECT_EQ(limits.membersPerAlias, 500);
}

TEST_F(ZoningDatabase, HasNoActiveZoneset) {
    char name[65];
    std::memset(name, 'n', sizeof name);
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, name), 0);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), simtest::kNotFound);
    EXPECT_EQ(zoneset, &before);
}

TEST_F(ZoningDatabase, HasNoZonesets) {
    int32_t count = -1;
    char *names = nullptr;
    EXPECT_EQ(zov_fzsGetZonesetList(client.handle, &count, &names), 0);
    EXPECT_EQ(count, 0);
    EXPECT_NE(names, nullptr);
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, "oak", &zoneset), simtest::kNotFound);
    EXPECT_EQ(zoneset, &before);
}

TEST_F(ZoningDatabase, HandsOutTheWholeDatabaseUnderAnyNameThatFits) {
    for (const std::string &name : {std::string("[uber]"), std::string(), std::string(64, 'n')}) {
        void *all = nullptr;
        ASSERT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, name.c_str(), &all), 0);
        char text[65] = "?";
        EXPECT_EQ(zov_ZonesetGetName(all, text), 0);
        EXPECT_EQ(text, name);
        EXPECT_EQ(zov_ZonesetGetZoneCount(all), 0);
        EXPECT_EQ(zov_ZonesetGetAliasCount(all), 0);
        EXPECT_EQ(zov_ZonesetDestroy(all), 0);
    }
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, std::string(65, 'n').c_str(), &zoneset), simtest::kBadName);
    EXPECT_EQ(zoneset, &before);
}

TEST_F(ZoningDatabase, NullArgumentsAreRefused) {
    int32_t count = 0;
    char *names = nullptr;
    EXPECT_EQ(zov_fzsGetZoningLimitations(client.handle, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetZonesetList(client.handle, nullptr, &names), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetZonesetList(client.handle, &count, nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, nullptr, &zoneset), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, "oak", nullptr), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, nullptr, &zoneset), simtest::kBadArgument);
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "oak", nullptr), simtest::kBadArgument);
    EXPECT_EQ(zoneset, &before);
}

TEST_F(ZoningDatabase, DeadConnectionsAreRefused) {
    zov_fzs_zoninglimits_s limits;
    char name[65];
    int32_t count = 0;
    char *names = nullptr;
    device.reset();
    EXPECT_EQ(zov_fzsGetZoningLimitations(client.handle, &limits), simtest::kBadHandle);
    EXPECT_EQ(zov_fzsGetActiveZonesetName(client.handle, name), simtest::kBadHandle);
    EXPECT_EQ(zov_fzsGetActiveZoneset(client.handle, &zoneset), simtest::kBadHandle);
    EXPECT_EQ(zov_fzsGetZonesetList(client.handle, &count, &names), simtest::kBadHandle);
    EXPECT_EQ(zov_fzsGetZoneset(client.handle, "oak", &zoneset), simtest::kBadHandle);
    EXPECT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "oak", &zoneset), simtest::kBadHandle);
    EXPECT_EQ(zoneset, &before);
}

TEST_F(ZoningDatabase, IsRecorded) {
    device->clearRecords();
    zov_fzs_zoninglimits_s limits;
    zov_fzsGetZoningLimitations(client.handle, &limits);
    zov_fzsGetActiveZoneset(client.handle, &zoneset);
    zov_fzsGetZoneset(client.handle, "oak", &zoneset);
    void *all = nullptr;
    zov_fzsGetAllZonesAndAliases(client.handle, "all", &all);
    const std::string n = std::to_string(client.handle);
    const std::string object = std::to_string(reinterpret_cast<uintptr_t>(all));
    const std::vector<std::string> expected = {
        "zov_fzsGetZoningLimitations(" + n +
            ") = 0 -> zonesets 300, zones 3000, members 12000, zones per zoneset 1000, members per zone 500, "
            "aliases 3000, members per alias 500",
        "zov_fzsGetActiveZoneset(" + n + ") = 16",
        "zov_fzsGetZoneset(" + n + ", \"oak\") = 16",
        "zov_fzsGetAllZonesAndAliases(" + n + ", \"all\", #" + object + ") = 0 -> \"all\"",
    };
    EXPECT_EQ(simtest::linesOf(*device), expected);
    EXPECT_EQ(zov_ZonesetDestroy(all), 0);
}
