#include "sim/zoning/Database.h"

#include <algorithm>
#include <chrono>

#include <gtest/gtest.h>

#include "tests/sim/Zoning.h"

using simtest::Client;
using simtest::send;
using Statuses = std::vector<int32_t>;

namespace {

class ZoningLimits : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(send(client, simtest::kOpenEdit), Statuses(4, 0)); }

    int32_t edit(const std::string &command) { return send(client, {"Cmd.Zoning." + command})[0]; }

    /// Commands that succeed.
    void done(std::initializer_list<const char *> commands) {
        for (const char *command : commands)
            ASSERT_EQ(edit(command), 0) << command;
    }

    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
    zov_fzs_zoninglimits_s limits = {9, 9, 9, 9, 9, 9, 9};
};

} // namespace

TEST_F(ZoningLimits, HoldForZoneSetsZonesAndAliasesEachForThemselves) {
    limits.zonesets = limits.aliases = 2;
    limits.zones = 1;
    device->setZoningLimits(limits);
    done({"ZoneSet.a.Create", "ZoneSet.b.Create", "Zone.a.Create", "Alias.a.Create", "Alias.b.Create"});
    EXPECT_EQ(edit("ZoneSet.c.Create"), simtest::kLimitReached);
    EXPECT_EQ(edit("Zone.b.Create"), simtest::kLimitReached);
    EXPECT_EQ(edit("Alias.c.Create"), simtest::kLimitReached);
    done({"ZoneSet.b.Create", "Zone.a.Create", "Alias.b.Create"}); // what is there is no more
    EXPECT_EQ(edit("SaveConfig"), simtest::kEditSpoilt);
}

TEST_F(ZoningLimits, HoldForTheZonesOfASet) {
    limits.zonesPerZoneset = 2;
    device->setZoningLimits(limits);
    done({"Zone.a.Create", "Zone.b.Create", "Zone.c.Create", "ZoneSet.a.Create", "ZoneSet.b.Create",
          "ZoneSet.a.AddZone.a", "ZoneSet.a.AddZone.b", "ZoneSet.b.AddZone.c"});
    EXPECT_EQ(edit("ZoneSet.a.AddZone.c"), simtest::kLimitReached);
    done({"ZoneSet.a.AddZone.b", "ZoneSet.b.AddZone.a"});
}

TEST_F(ZoningLimits, HoldForTheMembersOfAZoneAndOfAnAlias) {
    limits.membersPerZone = 2;
    limits.membersPerAlias = 1;
    device->setZoningLimits(limits);
    done({"Alias.a.Create", "Zone.a.Create", "Alias.a.AddZoneMember.0101", "Zone.a.AddZoneMember.a",
          "Zone.a.AddZoneMember.0102"});
    EXPECT_EQ(edit("Alias.a.AddZoneMember.0103"), simtest::kLimitReached);
    EXPECT_EQ(edit("Zone.a.AddZoneMember.0103"), simtest::kLimitReached);
    done({"Alias.a.AddZoneMember.0101", "Zone.a.AddZoneMember.0102", "Zone.a.AddZoneMember.a"});
}

TEST_F(ZoningLimits, OfMembersCountsAnAliassOnceMoreForEveryReference) {
    limits.members = 8;
    device->setZoningLimits(limits);
    done({"Alias.a.Create", "Zone.a.Create", "Zone.b.Create", "Alias.a.AddZoneMember.0101", // 1
          "Zone.a.AddZoneMember.a",                                                         // 1 and 1 of the alias: 3
          "Alias.a.AddZoneMember.0102",                                                     // 1 and 1 in the zone: 5
          "Zone.a.AddZoneMember.a",                                                         // there already
          "Zone.b.AddZoneMember.a"});                                                       // 1 and 2 of the alias: 8
    EXPECT_EQ(edit("Zone.a.AddZoneMember.0103"), simtest::kLimitReached);
    EXPECT_EQ(edit("Alias.a.AddZoneMember.0103"), simtest::kLimitReached);
}

TEST_F(ZoningLimits, OfMembersRefusesAnAliasWhoseMembersDoNotFit) {
    limits.members = 4;
    device->setZoningLimits(limits);
    done({"Alias.a.Create", "Alias.b.Create", "Zone.a.Create", "Alias.a.AddZoneMember.0101",
          "Alias.a.AddZoneMember.0102"});
    EXPECT_EQ(edit("Zone.a.AddZoneMember.a"), simtest::kLimitReached);
    done({"Zone.a.AddZoneMember.b", "Zone.a.AddZoneMember.0101"});
    EXPECT_EQ(edit("Alias.b.AddZoneMember.0101"), simtest::kLimitReached);
}

TEST_F(ZoningLimits, BeginAnewWithAClearedEdit) {
    limits.members = limits.zones = 1;
    device->setZoningLimits(limits);
    done({"Zone.a.Create", "Zone.a.AddZoneMember.0101", "ClearConfig", "Zone.b.Create", "Zone.b.AddZoneMember.0101",
          "SaveConfig"});
    EXPECT_EQ(device->zoning().zones.size(), 1U);
}

TEST_F(ZoningLimits, LoweredTheyLeaveWhatIsThere) {
    ASSERT_EQ(edit("FabricUnlock.77"), 0);
    device->setZoning(simtest::orchard());
    device->setZoningLimits({0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(device->zoning(), simtest::orchard());
    ASSERT_EQ(send(client, {"Cmd.Zoning.FabricLock.77", "Cmd.Zoning.EditConfig"}), Statuses(2, 0));
    EXPECT_EQ(send(client, simtest::kPlantOrchard), Statuses(simtest::kPlantOrchard.size(), 0));
    EXPECT_EQ(edit("Zone.elm.AddZoneMember.0102"), simtest::kLimitReached);
    EXPECT_EQ(edit("Zone.fig.Create"), simtest::kLimitReached);
}

TEST(ZoneDatabase, AsFullAsCanBeIsCommittedAndReadInGoodTime) {
    const auto device = sim::create();
    const Client client;
    std::vector<std::string> edit;
    for (int i = 0; i < 3000; ++i) {
        const std::string zone = "Cmd.Zoning.Zone.zone" + std::to_string(i);
        edit.push_back(zone + ".Create");
        for (int member = 0; member < 4; ++member) {
            char text[17];
            std::snprintf(text, sizeof text, "%016X", static_cast<unsigned>(4 * i + member));
            edit.push_back(zone + ".AddZoneMember." + text);
        }
    }
    for (int i = 0; i < 300; ++i) {
        const std::string zoneset = "Cmd.Zoning.ZoneSet.set" + std::to_string(i);
        edit.push_back(zoneset + ".Create");
        for (int zone = 0; zone < 10; ++zone)
            edit.push_back(zoneset + ".AddZone.zone" + std::to_string(10 * i + zone));
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(simtest::commit(client, edit), simtest::allDone(edit.size()));
    for (const std::string &name : simtest::listedZonesets(client)) {
        void *zoneset = nullptr;
        ASSERT_EQ(zov_fzsGetZoneset(client.handle, name.c_str(), &zoneset), 0);
        ASSERT_EQ(zov_ZonesetDestroy(zoneset), 0);
    }
    void *all = nullptr;
    ASSERT_EQ(zov_fzsGetAllZonesAndAliases(client.handle, "all", &all), 0);
    EXPECT_EQ(zov_ZonesetGetZoneCount(all), 3000);
    EXPECT_EQ(device->zoningObjects(), (sim::ZoningObjectCounts{1, 3000, 0, 12000}));
    EXPECT_EQ(zov_ZonesetDestroy(all), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, simtest::kPatience);
    EXPECT_EQ(send(client, {"Cmd.Switch.ReqAdmin", "Cmd.Zoning.FabricLock.77", "Cmd.Zoning.EditConfig",
                            "Cmd.Zoning.Zone.more.Create", "Cmd.Zoning.ZoneSet.more.Create",
                            "Cmd.Zoning.Zone.zone0.AddZoneMember.0101"}),
              (Statuses{0, 0, 0, simtest::kLimitReached, simtest::kLimitReached, simtest::kLimitReached}));
}
