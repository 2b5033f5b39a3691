/*
 * The setting of the scenarios of zoning: a switch with a small database, a cache that has loaded it, and a check that the
 * cache tells what the switch has.
 */
#ifndef TESTS_SCENARIO_ZONINGSETTING_H
#define TESTS_SCENARIO_ZONINGSETTING_H

#include <string>
#include <vector>

#include "tests/scenario/zoningReading.h"
#include "tests/support/CacheTest.h"

namespace scenario {

class ZoningScenario : public support::CacheTest {
protected:
    using Lines = std::vector<std::string>;

    static constexpr const char *kDatabaseChange = "28: ZoningDBChange switch=100000C0DD00A1B2";
    static constexpr const char *kComplete = "33: DataCacheUpdateComplete";

    /// Two zone sets that share a zone, and every kind of member; the first one is active.
    static sim::ZoningDatabase orchard() {
        sim::ZoningDatabase database;
        database.aliases = {{"disk", {{ZOV_ZMT_PORTWWN, "2100000000000001"}, {ZOV_ZMT_DOMAINPORT, "1:10"}}},
                            {"tape", {{ZOV_ZMT_FCADDRESS, "0A0B0C"}}}};
        database.zones = {{"oak", ZOV_ZT_HARDACL, {{ZOV_ZMT_PORTWWN, "21000000000000AB"}, {ZOV_ZMT_ALIAS, "disk"}}},
                          {"elm", ZOV_ZT_SOFT, {{ZOV_ZMT_DOMAINPORT, "239:255"}, {ZOV_ZMT_FCADDRESS, "FFFFFE"}}},
                          {"yew", ZOV_ZT_HARDVPF, {}}};
        database.zonesets = {{"north", {"oak", "elm"}}, {"south", {"oak"}}};
        return database;
    }

    void loadOrchard() {
        theSwitch->setZoning(orchard(), sim::Notify::no);
        theSwitch->activateZoneset("north", sim::Notify::no);
        load();
        ASSERT_EQ(differencesFromSwitch(), "");
    }

    /// Where the cache does not tell what it would if it had loaded the switch's zoning just now.
    std::string contentDifferences() const { return differencesOf(cache(), freshModel()); }

    /// The same, and that it holds more or fewer zoning objects.
    std::string differencesFromSwitch() const {
        const bool same = theSwitch->zoningObjects() == freshModel().objects();
        return contentDifferences() + (same ? "" : "the number of zoning objects alive\n");
    }

    ZoningModel freshModel() const {
        ZoningModel fresh;
        fresh.limits = cache().getZoningLimits();
        fresh.refresh(ZoningOnSwitch(*theSwitch));
        return fresh;
    }

    /// The cache loads the defined half anew.
    void loadAnew() {
        cache().reloadZoning();
        EXPECT_TRUE(passAfterNotifications());
    }

    /// No zoning object is left but what the cache holds, and none was misused.
    void TearDown() override {
        if (!theSwitch)
            return;
        EXPECT_THAT(theSwitch->misuses(), testing::IsEmpty());
        cache().clearZoningCache();
        EXPECT_TRUE(theSwitch->zoningObjects() == sim::ZoningObjectCounts());
    }
};

} // namespace scenario

#endif // TESTS_SCENARIO_ZONINGSETTING_H
