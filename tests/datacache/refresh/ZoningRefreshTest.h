/*
 * The setting of the zoning refresh's tests: a cache over a switch library that is a script as a whole. Its tree of
 * keys is a map, and it makes an empty zone set for whatever name it is asked. The test calls the refresh itself.
 */
#ifndef TESTS_DATACACHE_REFRESH_ZONINGREFRESHTEST_H
#define TESTS_DATACACHE_REFRESH_ZONINGREFRESHTEST_H

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "datacache/DataCache.h"
#include "tests/support/Events.h"
#include "tests/support/Lock.h"
#include "tests/support/Log.h"
#include "tests/support/Uptime.h"
#include "tests/swlib/ScriptedSwitch.h"
#include "tests/zoning/ScriptedZoning.h"

// NOLINTBEGIN(misc-definitions-in-headers): for the one source file that includes this
extern "C" int32_t zov_IPConnect(const char *, const char *, const char *, zov_handle_t *handle) {
    *handle = scripted::zoning.connection;
    return 0;
}

extern "C" int32_t zov_enRegisterForEventList(zov_handle_t, zov_eventcallback_t, void *, zov_eventreg_s *list,
                                              int32_t count) {
    for (int32_t i = 0; i < count; ++i)
        list[i].result = 0;
    return 0;
}
// NOLINTEND(misc-definitions-in-headers)

class ZoningRefreshTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    static constexpr const char *kSwitch = "100000C0DD00A1B2";
    static constexpr const char *kPrincipal = "100000C0DD00A100";
    static constexpr const char *kActiveSum = "Oper.Zoning.ActiveChecksum";
    static constexpr const char *kInactiveSum = "Oper.Zoning.InactiveChecksum";
    static constexpr const char *kActiveName = "Oper.Zoning.ActiveZoneSet";
    static constexpr const char *kUber = "__UberZoneset__";

    /// The one exchange of a refresh.
    static constexpr const char *kQuestion = "Oper.Switch.WhoIsPrincipal Oper.Zoning.ActiveChecksum "
                                             "Oper.Zoning.InactiveChecksum Oper.Zoning.ActiveZoneSet";

    /// The calls of a refresh that loads the database.
    const Lines _everything = {"fzsGetZonesetList()", "fzsGetZoneset(Alpha)", "fzsGetZoneset(beta)",
                               "fzsGetAllZonesAndAliases(__UberZoneset__)"};

    void SetUp() override {
        scripted::zoning = {};
        scripted::zoning.connection = 0x80000007;
        scripted::zoning.listed = {"Alpha", "beta"};
        scripted::zoning.activeName = "live";
        support::setUptime(1000);
        scripted::getBatch = [this](zov_handle_t handle, SmlMessage *messages, int32_t count) {
            EXPECT_EQ(handle, scripted::zoning.connection);
            std::string keys;
            for (int32_t i = 0; i < count; ++i) {
                keys += (i == 0 ? "" : " ") + std::string(messages[i].key);
                const auto entry = tree.find(messages[i].key);
                messages[i].status = entry == tree.end() || refused.count(messages[i].key) != 0 ? 5 : 0;
                std::strcpy(messages[i].value, entry == tree.end() ? "" : entry->second.c_str());
            }
            _questions.push_back(keys);
            return result;
        };
        ASSERT_TRUE(DataCache::init());
        cache().startEventMonitor(support::recordEvent);
        ASSERT_TRUE(cache()._getSwitchInfo());
        forget();
    }
    void TearDown() override {
        support::onEvent(nullptr);
        cache().clearZoningCache();
        EXPECT_THAT(support::messagesIn(support::kCriticalLog), testing::IsEmpty());
        EXPECT_EQ(scripted::zoning.alive(), 0);
    }

    static DataCache &cache() {
        DataCache *theCache = DataCache::getInstance();
        DataCache::releaseInstance();
        return *theCache;
    }

    void forget() {
        support::takeEvents();
        calls();
        _questions.clear();
        _mark = support::logMark();
    }
    /// A refresh; what was told and asked before it is forgotten.
    bool refresh() {
        forget();
        const bool done = cache()._getZoningInfo();
        EXPECT_TRUE(support::isLockFree());
        return done;
    }
    /// A refresh of everything there is, forgotten.
    void load() {
        EXPECT_TRUE(refresh());
        forget();
    }

    Lines log() const { return support::messagesSince(_mark); }
    static Lines events() { return support::takeEvents(); }
    static Lines calls() { return scripted::zoning.takeCalls(); }
    /// The calls that bring zone sets.
    static Lines fetches() {
        Lines all;
        for (const std::string &call : calls()) {
            if (call.rfind("fzs", 0) == 0)
                all.push_back(call);
        }
        return all;
    }
    Lines questions() { return std::exchange(_questions, {}); }

    static void fail(const char *call, int nth = 1, int32_t outcome = 7) {
        scripted::zoning.faults.push_back({call, nth, outcome, false});
    }

    static std::string activeChange(const std::string &before, const std::string &now) {
        return std::string("27: ActiveZonesetChange switch=") + kPrincipal + " " + before + "->" + now;
    }
    static std::string databaseChange() { return std::string("28: ZoningDBChange switch=") + kSwitch; }

    /// The names of all zone sets in the cache.
    static Lines zonesets() {
        Lines all;
        _ZoneSetTypes kind = ZONESET_ACTIVE;
        for (void *each = cache().getFirstZoneset(kind); each != nullptr; each = cache().getNextZoneset(each, kind))
            all.push_back(static_cast<scripted::Object *>(each)->name);
        return all;
    }

    std::map<std::string, std::string> tree = {
        {"Oper.Switch.WWN", kSwitch},
        {"Oper.Switch.WhoIsPrincipal", kPrincipal},
        {"Oper.Switch.OperState", "Online"},
        {"Oper.Switch.TransparentModeFeature", "True"},
        {"Config.Switch.TransparentMode", "False"},
        {"Config.Mfg.ProductFeatureType", "Standard"},
        {"Oper.Switch.FCOEFeature", "False"},
        {"Oper.Switch.EthernetPassthroughFeature", "False"},
        {kActiveSum, "A1"},
        {kInactiveSum, "B2"},
        {kActiveName, "live"},
    };
    std::set<std::string> refused; ///< keys that the switch does not tell
    int32_t result = 0;            ///< of an exchange

private:
    Lines _questions;
    std::size_t _mark = 0;
};

#endif // TESTS_DATACACHE_REFRESH_ZONINGREFRESHTEST_H
