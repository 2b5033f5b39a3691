// kill -9 around the cache itself, at every call of its load and of a commit: it, or the server of its switch.

#include <algorithm>
#include <unistd.h>

#include <gtest/gtest.h>

#include "datacache/DataCache.h"
#include "tests/sim/Ambush.h"
#include "tests/support/Events.h"
#include "tests/support/Lock.h"

using simtest::Client;
using simtest::Moment;
using simtest::Process;
using simtest::wrong;

namespace {

/// What is done when the cache finds no switch, and waits.
std::function<void()> &whenTheCacheWaits() {
    static std::function<void()> action;
    return action;
}

DataCache &cache() {
    DataCache *theCache = DataCache::getInstance();
    DataCache::releaseInstance();
    return *theCache;
}

/// The cache comes up, looks at everything, and commits an edit; whether the switch took it.
bool liveAsCache() {
    DataCache::init();
    cache().startEventMonitor(support::recordEvent);
    cache().evaluateCaches();
    if (!cache().ZoningLock("provider"))
        return false;
    const bool edited =
        cache().createZone("larch", ZOV_ZT_SOFT) == 0 && cache().addZoneToZoneset("north", "larch") == 0;
    bool expired = false;
    return edited && cache().replaceZoningDB() && cache().LockIdOK("provider", expired);
}

/// The calls that liveAsCache() takes, as exit status.
int countCalls() {
    const auto device = simtest::plantedSwitch();
    const auto server = sim::serve(*device, simtest::options());
    simtest::goOverTheSocket();
    if (!liveAsCache() || !(device->zoning() == simtest::sprouted()))
        return 0;
    const auto records = device->records();
    return static_cast<int>(std::count_if(records.begin(), records.end(), simtest::isCall));
}

int clientIsCache(size_t calls, Moment moment) {
    const auto life = [calls] {
        liveAsCache();
        return wrong(calls, "the client lives");
    };
    return simtest::watchClientDie(life, calls, moment);
}

/// What the cache makes of a server that dies in a call, and comes back when the cache waits, or is through.
int serverOfCache(size_t calls, Moment moment) {
    simtest::Servers servers(moment, calls);
    whenTheCacheWaits() = [&] { servers.comeBack(); };
    const bool committed = liveAsCache();
    if (!servers.isFirstKilled())
        return wrong(calls, "the server lives");
    if (!support::isLockFree())
        return wrong(calls, "the cache is locked");
    servers.comeBack();
    Client client;
    std::vector<sim::Zone> zones;
    cache().updateAll();
    cache().evaluateCaches();
    if (!cache().isAreaGood(DataCacheArea::zoning) || !cache().isAreaGood(DataCacheArea::fabric))
        return wrong(calls, "the cache does not load again");
    if (const int bad = simtest::lookAround(client, calls, zones))
        return bad;
    return !committed || zones == simtest::sprouted().zones ? 0 : wrong(calls, "a commit is lost");
}

void expectAtEveryCall(int (*scene)(size_t calls, Moment moment)) {
    const int calls = Process(countCalls).wait();
    ASSERT_GT(calls, 40);
    for (const Moment moment : {Moment::before, Moment::after})
        for (int i = 0; i < calls; ++i) {
            Process process([&] { return scene(static_cast<size_t>(i), moment); });
            EXPECT_EQ(process.wait(), 0) << "in call " << i << ", moment " << static_cast<int>(moment);
        }
}

} // namespace

/// The cache waits 10 s before it tries to connect again.
extern "C" unsigned sleep(unsigned) {
    if (whenTheCacheWaits())
        whenTheCacheWaits()();
    return 0;
}

TEST(KilledCache, LeavesNothingHeldInItsLoadAndItsCommit) {
    expectAtEveryCall(clientIsCache);
}

TEST(KilledCache, GoesOnWithTheNextServerWhenItsOwnDiesInALoadOrACommit) {
    expectAtEveryCall(serverOfCache);
}
