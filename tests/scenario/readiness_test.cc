// Readiness with the refreshes of all seven areas as they are, on a switch that does not tell what one area or another needs:
// the cache is ready, and says so, when all areas are good and not before.
#include <algorithm>
#include <array>
#include <set>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char *kComplete = "33: DataCacheUpdateComplete";
constexpr int32_t kRefused = 5;

/// An area, and a key or a call that it alone cannot do without. The switch has blades.
struct Row {
    DataCacheArea area;
    const char *name;
    const char *call;
    const char *key; ///< empty: the call as a whole
};

constexpr std::array<Row, 7> kRows{{
    {DataCacheArea::switchInfo, "switch", "zov_smlGetBatch", "Oper.Switch.FCOEFeature"},
    {DataCacheArea::chassis, "chassis", "zov_smlGetBatch", "Oper.Chassis.0.PowerSupplies"},
    {DataCacheArea::blades, "blades", "zov_smlGetBatch", "Oper.Blade.1.Type"},
    {DataCacheArea::ports, "ports", "zov_smlGetBatch", "Oper.UserPort.0.20.OperState"},
    {DataCacheArea::accounts, "accounts", "zov_smlGetBatch", "Oper.Switch.FirstPotentialUser"},
    {DataCacheArea::fabric, "fabric", "zov_smlGetBatch", "Oper.Eport.LsdbRecordList.255"},
    {DataCacheArea::zoning, "zoning", "zov_smlGetBatch", "Oper.Zoning.InactiveChecksum"},
}};

/// Other things that zoning cannot do without.
constexpr std::array<const char *, 4> kZoningCalls = {"zov_fzsGetActiveZoneset", "zov_fzsGetZonesetList",
                                                      "zov_fzsGetZoneset", "zov_fzsGetAllZonesAndAliases"};

using Areas = std::set<std::size_t>;

constexpr std::size_t kPorts = 3;         // among the rows
const Areas kOfAFeature = {0, 1, kPorts}; // what is read again when the switch tells that its features have changed

std::string nameOf(const Areas &areas) {
    std::string name;
    for (const std::size_t index : areas)
        name += (name.empty() ? "" : "And") + std::string(kRows.at(index).name);
    return name;
}

std::vector<Areas> eachAndEachPair() {
    std::vector<Areas> sets;
    for (std::size_t one = 0; one < kRows.size(); ++one)
        for (std::size_t other = one; other < kRows.size(); ++other)
            sets.push_back({one, other});
    return sets;
}

class Readiness : public support::CacheTest {
protected:
    Readiness() {
        theSwitch = sim::create("director-8");
        sim::ZoningDatabase database;
        database.zones = {{"oak", ZOV_ZT_SOFT, {}}};
        database.zonesets = {{"north", {"oak"}}};
        theSwitch->setZoning(database, sim::Notify::no);
        theSwitch->activateZoneset("north", sim::Notify::no);
    }

    /// What these areas need is refused, until the faults are cleared.
    void refuse(const Areas &areas, bool wholeCall) {
        for (const std::size_t index : areas) {
            sim::Fault fault;
            fault.call = kRows.at(index).call;
            fault.key = kRows.at(index).key;
            fault.times = -1;
            (wholeCall ? fault.result : fault.status) = kRefused;
            theSwitch->addFault(fault);
        }
    }

    /// Everything is asked for again.
    static void askForAll() {
        cache().updateAll();
        cache().localPortRefreshSet();
    }

    /// The areas that the last pass began to refresh.
    Areas refreshed() const {
        Areas areas;
        for (const std::string &line : log())
            for (std::size_t index = 0; index < kRows.size(); ++index)
                if (line == fmt::format("DCACHE: Updating {} cache", kRows.at(index).name))
                    areas.insert(index);
        return areas;
    }

    static Areas notGood() {
        Areas areas;
        for (std::size_t index = 0; index < kRows.size(); ++index)
            if (!cache().isAreaGood(kRows.at(index).area))
                areas.insert(index);
        return areas;
    }

    /// A pass in which these areas fail, another one in which they still do, and one in which they do not. Failed ports are
    /// not tried again before the switch tells of something that concerns them. (As long as they have never been read, that
    /// is not a single port.)
    void expectNotReadyUntilRecovered(const Areas &areas) {
        Areas tried = areas;
        tried.erase(kPorts);
        expectNotReady(areas, tried);
        expectNotReady(areas, tried);
        EXPECT_EQ(refreshed(), tried) << "only what had failed is tried again";

        theSwitch->clearFaults();
        if (areas.count(kPorts) != 0) {
            EXPECT_FALSE(pass());
            EXPECT_EQ(notGood(), Areas({kPorts}));
            EXPECT_THAT(events(), Not(Contains(kComplete)));
            theSwitch->deliver(ZOV_EVENT_FEATURE_CHANGE, {0, 0, 0}, "a feature has been enabled");
            tried = kOfAFeature;
        }
        EXPECT_TRUE(passAfterNotifications());
        EXPECT_EQ(refreshed(), tried);
        EXPECT_EQ(notGood(), Areas());
        EXPECT_TRUE(cache().isCacheReady());
        EXPECT_FALSE(cache().workToDo());
        const std::vector<std::string> told = events();
        EXPECT_EQ(std::count(told.begin(), told.end(), kComplete), 1);
        EXPECT_EQ(told.empty() ? "" : told.back(), kComplete) << "after everything that is completed by it";
    }

private:
    /// A pass in which these areas fail; after it, those are asked for.
    void expectNotReady(const Areas &areas, const Areas &asked) {
        EXPECT_FALSE(pass());
        EXPECT_EQ(notGood(), areas);
        EXPECT_FALSE(cache().isCacheReady());
        EXPECT_EQ(cache().workToDo(), !asked.empty());
        EXPECT_THAT(events(), Not(Contains(kComplete)));
    }
};

class ReadinessWithout : public Readiness, public testing::WithParamInterface<Areas> {};

TEST_P(ReadinessWithout, ComesWithTheFirstPassInWhichTheyAreGood) {
    refuse(GetParam(), false);
    connect();
    EXPECT_FALSE(cache().isCacheReady());
    expectNotReadyUntilRecovered(GetParam());
}

TEST_P(ReadinessWithout, IsLostAndComesBack) {
    for (const bool wholeCall : {false, true}) {
        if (!wholeCall)
            connect();
        theSwitch->clearFaults();
        EXPECT_TRUE(pass());
        EXPECT_THAT(events(), Contains(kComplete));
        askForAll();
        refuse(GetParam(), wholeCall);
        expectNotReadyUntilRecovered(GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(EachAndEachPair, ReadinessWithout, testing::ValuesIn(eachAndEachPair()),
                         [](const auto &areas) { return nameOf(areas.param); });

class ReadinessWithoutZonesets : public Readiness, public testing::WithParamInterface<const char *> {};

TEST_P(ReadinessWithoutZonesets, WaitsForThem) {
    const Areas zoning = {kRows.size() - 1};
    sim::Fault fault;
    fault.call = GetParam();
    fault.times = -1;
    fault.result = kRefused;
    theSwitch->addFault(fault);
    connect();
    expectNotReadyUntilRecovered(zoning);
    EXPECT_NE(cache().getUberZoneset(), nullptr);
    EXPECT_NE(cache().getActiveZoneset(), nullptr);
    EXPECT_EQ(cache().getZoningCounts().zonesets, 1);
}

INSTANTIATE_TEST_SUITE_P(EachCall, ReadinessWithoutZonesets, testing::ValuesIn(kZoningCalls),
                         [](const auto &call) { return std::string(call.param); });

TEST_F(Readiness, ComesWithTheFirstPassOfAHealthySwitch) {
    connect();
    EXPECT_TRUE(pass());
    EXPECT_TRUE(cache().isCacheReady());
    EXPECT_EQ(refreshed(), Areas({0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(notGood(), Areas());
    EXPECT_THAT(events(), Contains(kComplete));
    EXPECT_TRUE(pass());
    EXPECT_EQ(refreshed(), Areas());
    EXPECT_THAT(events(), ElementsAre(kComplete)) << "a pass with nothing to do completes again";
}

TEST_F(Readiness, IsOutOfReachWhileNothingAnswers) {
    connect();
    sim::Fault fault;
    fault.times = -1;
    fault.result = kRefused;
    theSwitch->addFault(fault);
    EXPECT_FALSE(pass());
    EXPECT_EQ(notGood(), Areas({0, 1, 2, 3, 4, 5, 6}));
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_FALSE(cache().isCacheReady());
    theSwitch->clearFaults();
    cache().updatePorts();
    EXPECT_TRUE(pass());
    EXPECT_THAT(events(), Contains(kComplete));
}

} // namespace
