// Every scenario that is shipped, played to its end for a cache, with everything driven by one thread: no step is refused,
// the cache hears what the scenario is about, and is ready in the end.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <map>
#include <ostream>

#include "datacache/DataCache.h"
#include "sim/Play.h"
#include "sim/scenario/Shipped.h"
#include "tests/support/Events.h"
#include "tests/support/Uptime.h"

namespace {

using Counts = std::map<std::string, int>; ///< how often each event came, by its name

constexpr const char *kUpToDate = "DataCacheUpdateComplete";

/// A scenario, and the cache that follows its switch.
class Performance {
public:
    explicit Performance(const std::string &scenario) : _play(sim::playShipped(scenario.c_str())) {
        _play->device().setPace(sim::Pace::driven);
        support::setUptimeSource([this] { return _play->device().uptime(); });
        DataCache::init();
        _cache = DataCache::getInstance();
        DataCache::releaseInstance();
        _cache->startEventMonitor(support::recordEvent);
        pass();
        support::takeEvents();
    }
    ~Performance() {
        support::setUptime(_play->device().uptime());
        _play.reset();
    }
    Performance(const Performance &) = delete;
    Performance &operator=(const Performance &) = delete;

    /// What was heard until the end.
    Counts play() {
        while (const auto due = _play->next()) {
            EXPECT_TRUE(_play->device().waitForUptime(*due, std::chrono::seconds(10)));
            for (const sim::Played &played : _play->play())
                EXPECT_FALSE(played.isRefused()) << played.line();
            pass();
        }
        Counts counts;
        for (const std::string &event : support::takeEvents()) {
            const size_t name = event.find(' ') + 1;
            counts[event.substr(name, event.find(' ', name) - name)] += 1;
        }
        counts.erase(kUpToDate);
        return counts;
    }

    bool isReady() const { return _cache->isCacheReady(); }

private:
    /// Passes until the cache has worked through everything; one may wake the next.
    void pass() {
        do {
            _play->device().waitUntilQuiet();
            _cache->evaluateCaches();
        } while (_cache->getQueuedNotificationCount() > 0);
        _cache->evaluateCaches();
    }

    std::unique_ptr<sim::Play> _play;
    DataCache *_cache = nullptr;
};

struct Expected {
    const char *scenario;
    Counts events;
};

void PrintTo(const Expected &expected, std::ostream *out) {
    *out << expected.scenario;
}

// clang-format off
const std::vector<Expected> kExpected = {
    {"demo", {{"EnvEvent", 1}, {"FabricAdd", 2}, {"FabricChange", 5}, {"FabricRemove", 3}, {"PortAdd", 4}, {"PortRemove", 1}, {"PortStatusChange", 1}, {"SwitchAdd", 10}, {"SwitchRemove", 1}}},
    {"director", {{"BladeRemove", 1}, {"EnvEvent", 1}, {"FanAdd", 1}, {"PortAdd", 1}, {"PortStatusChange", 2}, {"PowerSupplyAdd", 1}, {"PowerSupplyFail", 1}, {"PowerSupplyRemove", 1}, {"SwitchStatusChange", 3}, {"UserAcctAdd", 1}, {"UserAcctRemove", 1}, {"UserLoginFailure", 1}}},
    {"director-8-blades", {{"BladeAdd", 2}, {"BladeRemove", 2}, {"CPUAdd", 1}, {"CPURemove", 1}, {"PortAdd", 48}, {"PortStatusChange", 2}, {"SwitchStatusChange", 1}}},
    {"flapping-port", {{"PortAdd", 29}, {"PortRemove", 30}, {"PortStatusChange", 59}}},
    {"lock-contention", {{"ActiveZonesetChange", 2}, {"ZoningDBChange", 1}}},
    {"merge-and-segment", {{"FabricAdd", 1}, {"FabricChange", 3}, {"FabricRemove", 1}, {"PortAdd", 2}, {"PortRemove", 2}, {"PortStatusChange", 2}, {"SwitchAdd", 2}, {"SwitchRemove", 1}}},
    {"power-loss", {{"PowerSupplyAdd", 1}, {"PowerSupplyFail", 2}, {"PowerSupplyRemove", 1}, {"SwitchStatusChange", 3}}},
    {"scale-239-domains", {{"FabricAdd", 1}, {"FabricChange", 1}, {"PortRemove", 16}, {"PortStatusChange", 1}, {"SwitchAdd", 87}}},
    {"slow-name-server", {{"FabricChange", 3}, {"PortAdd", 4}, {"PortRemove", 4}, {"SwitchAdd", 2}, {"SwitchRemove", 1}}},
    {"storm", {{"PortAdd", 60}, {"PortRemove", 60}, {"PortStatusChange", 240}, {"UserAcctAdd", 60}, {"UserAcctRemove", 60}}},
    {"two-switch", {{"FabricChange", 2}, {"PortAdd", 16}, {"PortRemove", 16}, {"PortStatusChange", 4}, {"SwitchAdd", 1}, {"SwitchRemove", 1}}},
    {"zoning", {{"ActiveZonesetChange", 4}, {"ZoningDBChange", 3}}},
};
// clang-format on

class EveryScenario : public testing::TestWithParam<Expected> {};

INSTANTIATE_TEST_SUITE_P(Shipped, EveryScenario, testing::ValuesIn(kExpected));

} // namespace

TEST_P(EveryScenario, IsPlayedToItsEndAndFollowed) {
    Performance performance(GetParam().scenario);
    EXPECT_EQ(performance.play(), GetParam().events);
    EXPECT_TRUE(performance.isReady());
}

TEST(EveryScenarioThatIsShipped, HasItsRow) {
    std::vector<std::string> names;
    for (const Expected &expected : kExpected)
        names.emplace_back(expected.scenario);
    EXPECT_EQ(names, sim::shippedScenarios());
}
