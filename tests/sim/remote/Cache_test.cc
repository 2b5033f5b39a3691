// The cache with its switch in another process's hands: it comes up when the server does, and follows the switch again
// after the server was gone.

#include <dlfcn.h>
#include <unistd.h>

#include "tests/sim/Served.h"
#include "tests/support/CacheTest.h"
#include "tests/support/Wait.h"

namespace {

std::function<void()> &whenTheCacheWaits() {
    static std::function<void()> action;
    return action;
}

/// Before there is a switch.
struct OverTheSocket {
    OverTheSocket() { simtest::goOverTheSocket(); }
};

class CacheOverTheSocket : public OverTheSocket, public support::CacheTest {
protected:
    void serve() { server = sim::serve(*theSwitch, simtest::options()); }

    ~CacheOverTheSocket() override { server.reset(); }

    std::unique_ptr<sim::Server> server;
};

} // namespace

/// The cache waits 10 s before it tries to connect again.
extern "C" unsigned sleep(unsigned) {
    if (whenTheCacheWaits())
        whenTheCacheWaits()();
    return 0;
}

TEST_F(CacheOverTheSocket, ComesUpWhenTheServerDoes) {
    unsigned waits = 0;
    whenTheCacheWaits() = [&] {
        if (++waits == 3)
            serve();
    };
    DataCache::init();
    EXPECT_EQ(waits, 3U);
    cache().startEventMonitor(support::recordEvent);
    EXPECT_TRUE(pass());
    EXPECT_TRUE(cache().isCacheReady());
}

TEST_F(CacheOverTheSocket, HearsOfChangesAgainWhenTheServerIsBack) {
    serve();
    load();
    ASSERT_TRUE(cache().isCacheReady());
    const unsigned connections = theSwitch->connectionCount();
    server.reset();
    theSwitch->set("Oper.Chassis.0.Fan.0", "Bad"); // nobody is told
    serve();
    // One connection is the cache's, the other that of another client.
    ASSERT_TRUE(support::waitUntil([&] { return theSwitch->connectionCount() == connections + 2; }));
    ASSERT_TRUE(support::waitUntil([&] {
        theSwitch->deliver(ZOV_EVENT_FAN_BAD_ALARM, {0, 0, 0}, "fan");
        return theSwitch->waitUntilQuiet() && pass() && !events().empty();
    }));
}

/// Without its switch the cache loses every area. When the switch is back it asks again for all but the ports: their
/// request is withdrawn when it is served, and after a failure it takes a notification to raise it again.
TEST_F(CacheOverTheSocket, IsReadyAgainOnceAPortSpeaksUpAfterAPassWithoutAServer) {
    serve();
    load();
    ASSERT_TRUE(cache().isCacheReady());
    server.reset();
    cache().updateAll();
    EXPECT_FALSE(pass());
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::zoning));
    serve();
    EXPECT_FALSE(pass());
    for (const DataCacheArea area : {DataCacheArea::switchInfo, DataCacheArea::chassis, DataCacheArea::blades,
                                     DataCacheArea::accounts, DataCacheArea::fabric, DataCacheArea::zoning})
        EXPECT_TRUE(cache().isAreaGood(area)) << static_cast<int>(area);
    EXPECT_FALSE(cache().isAreaGood(DataCacheArea::ports));
    theSwitch->set("Oper.UserPort.0.1.OperState", "Offline");
    EXPECT_TRUE(passAfterNotifications());
    EXPECT_TRUE(cache().isCacheReady());
}

/// The thread of the passes has a small stack, and the road to the server is longer than to a switch in the process.
TEST_F(CacheOverTheSocket, LoadsOnAThreadOfItsOwn) {
    serve();
    DataCache::init();
    ASSERT_TRUE(cache().start(support::recordEvent));
    EXPECT_TRUE(support::waitUntil([] { return cache().isCacheReady(); }));
}
