// A day of a busy switch that misbehaves, with a cache that follows it, everything driven by one thread: it takes a
// minute at most, and comes out the same to the byte when it is played again.
#include <algorithm>
#include <chrono>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "datacache/DataCache.h"
#include "tests/scenario/Changes.h"
#include "tests/scenario/Process.h"
#include "tests/scenario/Random.h"
#include "tests/support/Events.h"
#include "tests/support/Log.h"
#include "tests/support/Uptime.h"

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kDay = 24h;
constexpr std::chrono::milliseconds kLimit = 60s;

/// Rules of all kinds that last the whole day.
std::vector<sim::Fault> misbehaviour(uint64_t seed) {
    const auto rule = [&seed](const char *call, const char *key, unsigned chance) {
        sim::Fault fault;
        fault.call = call;
        fault.key = key;
        fault.times = -1;
        fault.chance = chance;
        fault.seed = seed++;
        return fault;
    };
    std::vector<sim::Fault> rules;
    rules.push_back(rule("zov_smlGetBatch", "Oper.UserPort.*", 2));
    rules.back().stale = true;
    rules.push_back(rule("zov_smlGetBatch", "Oper.Switch.*", 1));
    rules.back().garbled = true;
    rules.push_back(rule("zov_smlGetBatch", "Oper.Chassis.*", 5));
    rules.back().status = 23;
    rules.push_back(rule("zov_smlGetBatch", "", 2));
    rules.back().delay = 2s;
    for (const auto &[chance, copies] : {std::pair(5U, 0U), std::pair(5U, 2U), std::pair(1U, 40U)}) {
        rules.push_back(rule(sim::kNotificationCall, "", chance));
        rules.back().copies = copies;
    }
    rules.push_back(rule(sim::kNotificationCall, "", 10));
    rules.back().reordered = true;
    rules.push_back(rule(sim::kNotificationCall, "", 10));
    rules.back().delay = 90s;
    rules.push_back(rule(sim::kNotificationCall, "", 3));
    rules.back().garbled = true;
    return rules;
}

/// A switch, the cache that follows it, and all that is written about them.
class Day {
public:
    explicit Day(unsigned seed)
        : _random(seed), _changes(*_switch, seed, [this](const std::string &what) { say(what); }) {
        _switch->setPace(sim::Pace::driven);
        support::setUptimeSource([this] { return _switch->uptime(); });
        DataCache::init();
        _cache = DataCache::getInstance();
        DataCache::releaseInstance();
        _cache->startEventMonitor(support::recordEvent);
        for (const sim::Fault &fault : misbehaviour(seed))
            _switch->addFault(fault);
    }
    ~Day() {
        support::setUptime(_switch->uptime());
        _switch.reset();
    }
    Day(const Day &) = delete;
    Day &operator=(const Day &) = delete;

    std::string play() {
        const std::chrono::milliseconds evening = _switch->clock() + kDay;
        pass();
        while (_switch->clock() < evening) {
            _switch->passTime(std::chrono::seconds(1 + _random.below(20)));
            _changes.make();
            _switch->waitUntilQuiet();
            if (_cache->getQueuedNotificationCount() > 0)
                pass();
        }
        for (const std::string &line : support::messagesIn(support::kMainLog))
            say(line);
        return _told;
    }

private:
    void pass() {
        const bool good = _cache->evaluateCaches();
        for (const sim::Record &record : _switch->records())
            say(record.line());
        _switch->clearRecords();
        for (const std::string &event : support::takeEvents())
            say(event);
        say(fmt::format("{} after a pass at {}", good ? "good" : "not good", _switch->clock().count()));
    }
    void say(const std::string &line) { _told += line + '\n'; }

    std::unique_ptr<sim::Simulator> _switch = sim::create("fabric-2");
    scenario::Random _random;
    scenario::Changes _changes;
    DataCache *_cache = nullptr;
    std::string _told;
};

std::string playedInAProcess(unsigned seed) {
    return scenario::inProcess([seed] { return Day(seed).play(); });
}

/// The first line in which two days differ.
std::string firstDifference(const std::string &one, const std::string &other) {
    const size_t at =
        static_cast<size_t>(std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin());
    const size_t start = one.rfind('\n', at) + 1;
    return fmt::format("\"{}\" and \"{}\"", one.substr(start, one.find('\n', at) - start),
                       other.substr(start, other.find('\n', at) - start));
}

size_t occurrences(const std::string &text, const std::string &of) {
    size_t count = 0;
    for (size_t at = text.find(of); at != std::string::npos; at = text.find(of, at + 1))
        ++count;
    return count;
}

TEST(Repeatable, ABusyDayTakesAMinuteAndComesOutTheSameToTheByte) {
    const auto start = std::chrono::steady_clock::now();
    const std::string day = playedInAProcess(7);
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(time), kLimit);
    const std::string again = playedInAProcess(7);
    EXPECT_TRUE(day == again) << firstDifference(day, again);
    EXPECT_FALSE(playedInAProcess(8) == day);

    // It was a busy day.
    EXPECT_GT(occurrences(day, "\nzov_smlGetBatch("), 5000U);
    EXPECT_GT(occurrences(day, "\nnotification("), 2000U);
    EXPECT_GT(occurrences(day, "after a pass at"), 500U);
    EXPECT_GT(occurrences(day, "DataCacheUpdateComplete"), 100U);
    EXPECT_GT(occurrences(day, "status 23"), 50U);
    RecordProperty("Bytes", static_cast<int>(day.size()));
}

} // namespace
