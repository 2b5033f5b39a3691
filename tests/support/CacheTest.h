/*
 * The setting of most tests: a simulated switch and a cache connected to it, without an EVAL thread. The test runs the
 * passes itself. The host's uptime is the switch's.
 */
#ifndef TESTS_SUPPORT_CACHETEST_H
#define TESTS_SUPPORT_CACHETEST_H

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "datacache/DataCache.h"
#include "sim/Simulator.h"
#include "tests/support/Events.h"
#include "tests/support/Log.h"
#include "tests/support/Uptime.h"

namespace support {

/// Name of the switch of the default profile.
constexpr const char *kSwitchWwn = "100000C0DD00A1B2";

/// The event that ends every pass after which the cache is ready.
constexpr const char *kUpdateComplete = "33: DataCacheUpdateComplete";

class CacheTest : public testing::Test {
protected:
    CacheTest();
    ~CacheTest() override;

    /// Connects the cache, whose handle is then not the switch library's first, and registers it for notifications.
    void connect();
    /// Another client's connection. The handles of later ones differ from small numbers that stand for something else.
    static void connectAnotherClient();
    /// A pass on this thread; what evaluateCaches() returned. Clears events(), log() and traffic() before.
    bool pass();
    /// Waits until the cache has taken in all notifications sent, then runs a pass.
    bool passAfterNotifications();
    /// The first pass, with everything it says thrown away.
    void load();

    /// What happened in the last pass: events, log messages, and calls of the switch library, one line each.
    static std::vector<std::string> events() { return takeEvents(); }
    std::vector<std::string> log() const { return messagesSince(_logMark); }
    /// The keys of each exchange with the switch: "get A B C", "set A".
    std::vector<std::string> traffic() const;
    void forget();

    /// Rules of misbehaviour, each with the number that takes it away: reads of a key answer a status, the next exchange
    /// that reads it fails, or they are answered with this value from now on.
    int fail(const std::string &key, int32_t status = 5, int times = 1);
    int cut(const std::string &key);
    int lie(const std::string &key, const std::string &value);

    static DataCache &cache();

    std::unique_ptr<sim::Simulator> theSwitch = sim::create();

private:
    std::size_t _logMark = 0;
};

} // namespace support

#endif // TESTS_SUPPORT_CACHETEST_H
