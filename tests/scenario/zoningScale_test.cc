// What a large zoning database costs: calls of the switch library and exchanges with the switch. Loading grows linearly with
// the members and with the zone sets.
#include <algorithm>
#include <array>
#include <chrono>
#include <functional>

#include <fmt/format.h>

#include "tests/scenario/zoningScript.h"
#include "tests/scenario/zoningSetting.h"

using namespace scenario;

namespace {

struct Size {
    int zonesets;
    int zones;
    int members;
};

constexpr Size kLargest = {300, 3000, 12000};
constexpr int kZonesPerZoneset = 10;

/// Zones share the members evenly; zone sets have ten zones each, so that zones stand in several.
sim::ZoningDatabase databaseOf(const Size &size) {
    sim::ZoningDatabase database;
    for (int zone = 0; zone < size.zones; ++zone)
        database.zones.push_back({fmt::format("zone{}", zone), ZOV_ZT_SOFT, {}});
    for (int member = 0; member < size.members; ++member)
        database.zones[static_cast<std::size_t>(member % size.zones)].members.push_back(
            {ZOV_ZMT_PORTWWN, fmt::format("2100000000{:06X}", member)});
    for (int set = 0; set < size.zonesets; ++set) {
        database.zonesets.push_back({fmt::format("set{}", set), {}});
        for (int zone = 0; zone < kZonesPerZoneset; ++zone)
            database.zonesets.back().zones.push_back(
                fmt::format("zone{}", (set * kZonesPerZoneset + zone) % size.zones));
    }
    return database;
}

/// What something costs.
struct Cost {
    long calls = 0;     ///< of the switch library, whatever they are
    long fetches = 0;   ///< of zone sets and their list: each goes to the switch
    long exchanges = 0; ///< of keys
    long milliseconds = 0;
};

class ZoningScale : public ZoningScenario {
protected:
    Cost costOf(const std::function<void()> &work) {
        EXPECT_TRUE(theSwitch->waitUntilQuiet());
        theSwitch->clearRecords();
        const auto begin = std::chrono::steady_clock::now();
        work();
        const auto time = std::chrono::steady_clock::now() - begin;
        Cost cost;
        cost.milliseconds = static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
        for (const sim::Record &record : theSwitch->records()) {
            cost.calls += record.call != "notification" ? 1 : 0;
            cost.fetches += record.call.rfind("zov_fzs", 0) == 0 ? 1 : 0;
            cost.exchanges += record.call.rfind("zov_sml", 0) == 0 ? 1 : 0;
        }
        theSwitch->clearRecords();
        return cost;
    }

    void note(const std::string &what, const Cost &cost) {
        RecordProperty(what + "_calls", static_cast<int>(cost.calls));
        RecordProperty(what + "_fetches", static_cast<int>(cost.fetches));
        RecordProperty(what + "_exchanges", static_cast<int>(cost.exchanges));
        RecordProperty(what + "_milliseconds", static_cast<int>(cost.milliseconds));
    }

    /// A load of such a database in place of another one, which is empty.
    Cost loadOf(const Size &size) {
        theSwitch->setZoning({});
        passAfterNotifications();
        theSwitch->setZoning(databaseOf(size));
        const Cost cost = costOf([] { EXPECT_TRUE(cache().evaluateCaches()); });
        const ZoningLimits counts = cache().getZoningCounts();
        EXPECT_EQ(counts.zonesets, size.zonesets);
        EXPECT_EQ(counts.zones, size.zones);
        EXPECT_EQ(counts.members, size.members);
        return cost;
    }
};

// ---- growth -------------------------------------------------------------------------------------------

TEST_F(ZoningScale, ALoadGrowsLinearlyWithTheMembers) {
    load();
    std::array<Cost, 4> costs;
    for (std::size_t i = 0; i < costs.size(); ++i) {
        const int members = 3000 * static_cast<int>(i + 1);
        costs.at(i) = loadOf({30, 500, members});
        note(fmt::format("load_of_{}_members", members), costs.at(i));
    }
    const long step = costs[1].calls - costs[0].calls;
    EXPECT_GT(step, 0);
    for (std::size_t i = 1; i < costs.size(); ++i) {
        EXPECT_EQ(costs.at(i).calls - costs.at(i - 1).calls, step);
        EXPECT_EQ(costs.at(i).fetches, costs[0].fetches);
        EXPECT_EQ(costs.at(i).exchanges, 1);
    }
}

TEST_F(ZoningScale, ALoadGrowsLinearlyWithTheZoneSets) {
    load();
    std::array<Cost, 4> costs;
    for (std::size_t i = 0; i < costs.size(); ++i) {
        const int zonesets = 75 * static_cast<int>(i + 1);
        costs.at(i) = loadOf({zonesets, 500, 3000});
        note(fmt::format("load_of_{}_zonesets", zonesets), costs.at(i));
        EXPECT_EQ(costs.at(i).fetches, zonesets + 2) << "the list, each zone set, and the whole database";
        EXPECT_EQ(costs.at(i).exchanges, 1);
    }
    const long step = costs[1].calls - costs[0].calls;
    EXPECT_GT(step, 0);
    EXPECT_EQ(costs[2].calls - costs[1].calls, step);
    EXPECT_EQ(costs[3].calls - costs[2].calls, step);
}

// ---- the largest database -----------------------------------------------------------------------------

TEST_F(ZoningScale, TheLargestDatabaseIsLoadedEditedAndCommitted) {
    load();
    note("load", loadOf(kLargest));
    EXPECT_EQ(contentDifferences(), "");
    EXPECT_TRUE(cache().zonesetLimitAtMax());
    EXPECT_TRUE(cache().zoneLimitAtMax());
    EXPECT_TRUE(cache().memberLimitAtMax());

    EXPECT_TRUE(cache().ZoningLock("provider"));
    EXPECT_EQ(cache().removeMemberFromZone("zone0", ZOV_ZMT_PORTWWN, "2100000000000000"), 0);
    const Cost edit = costOf([] { EXPECT_EQ(cache().addMemberToZone("zone0", ZOV_ZMT_FCADDRESS, "010203"), 0); });
    note("edit", edit);
    EXPECT_EQ(edit.exchanges, 0) << "nothing reaches the switch before the commit";
    EXPECT_EQ(edit.fetches, 0);

    const Cost commit = costOf([] { EXPECT_TRUE(cache().replaceZoningDB()); });
    note("commit", commit);
    EXPECT_EQ(commit.exchanges, 1) << "all commands in one batch";
    bool expired = false;
    EXPECT_TRUE(cache().LockIdOK("provider", expired)) << "the switch has accepted it";
    sim::ZoningDatabase expected = databaseOf(kLargest);
    expected.zones[0].members.erase(expected.zones[0].members.begin());
    expected.zones[0].members.push_back({ZOV_ZMT_FCADDRESS, "010203"});
    std::sort(expected.zonesets.begin(), expected.zonesets.end(),
              [](const auto &one, const auto &other) { return one.name < other.name; });
    EXPECT_EQ(firstDifference("switch", describe(theSwitch->zoning()), describe(expected)), "");
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_EQ(contentDifferences(), "");
}

TEST_F(ZoningScale, TheLargestDatabaseWithAliasesAndActiveZonesIsLoadedInPlaceOfAnother) {
    load();
    theSwitch->setZoning(fullDatabase());
    theSwitch->activateZoneset("s0");
    note("first", costOf([] { EXPECT_TRUE(cache().evaluateCaches()); }));
    EXPECT_EQ(contentDifferences(), "");
    EXPECT_TRUE(cache().aliasLimitAtMax());
    EXPECT_TRUE(cache().memberLimitAtMax());
    sim::ZoningDatabase other = fullDatabase();
    other.zones[0].type = ZOV_ZT_HARDACL;
    theSwitch->setZoning(other);
    const Cost again = costOf([] { EXPECT_TRUE(cache().evaluateCaches()); });
    note("again", again);
    EXPECT_EQ(again.fetches, 300 + 3) << "both halves have changed";
    EXPECT_EQ(contentDifferences(), "");
}

} // namespace
