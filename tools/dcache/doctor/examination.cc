#include "tools/dcache/doctor/examination.h"

#include <condition_variable>
#include <mutex>
#include <thread>

#include "tools/dcache/cache.h"

namespace dcache {
namespace {

constexpr std::chrono::milliseconds kGlance{2}; // between two looks at the cache

/// What the threads share. Who holds its lock takes no other one.
class Chart {
public:
    void enter(const Findings &findings) {
        const std::lock_guard<std::mutex> lock(_mutex);
        _findings = findings;
    }

    void close() {
        {
            const std::lock_guard<std::mutex> lock(_mutex);
            _isClosed = true;
        }
        _changed.notify_one();
    }

    /// The findings when the chart is closed, or when the patience is over.
    Findings read(std::chrono::duration<double> patience) {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, patience, [this] { return _isClosed; });
        return _findings;
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isClosed = false;
    Findings _findings;
};

/// Never destroyed: the thread may still be at work while the process ends.
Chart &chart() {
    static Chart &theOne = *new Chart;
    return theOne;
}

/// Waits for a running pass to end.
Findings look() {
    const CacheLock cache;
    Findings findings;
    findings.isConnected = findings.isStarted = true;
    findings.registrations = cache->getRegistrations();
    for (size_t i = 0; i < kAreaCount; ++i)
        findings.isAreaGood[i] = cache->isAreaGood(static_cast<DataCacheArea>(i));
    findings.isReady = cache->isCacheReady();
    findings.secondsSinceReadyPass = cache->getSecondsSinceReadyPass();
    findings.passes = cache->getPassCount();
    findings.queued = cache->getQueuedNotificationCount();
    findings.lockHolder = cache->getZoningLockHolder();
    chart().enter(findings);
    return findings;
}

void waitUntil(bool (*isGood)(const Findings &findings)) {
    while (!isGood(look()))
        std::this_thread::sleep_for(kGlance);
}

void runCache() {
    DataCache::init();
    Findings connected;
    connected.isConnected = true;
    chart().enter(connected);
    {
        const CacheLock cache;
        cache->start(nullptr);
        look(); // the first pass waits for the lock, and may never end
    }
    waitUntil([](const Findings &findings) { return findings.passes != 0; });
    {
        const CacheLock cache;
        if (!cache->isCacheReady())
            cache->evaluateCaches(); // nothing else would try again soon
    }
    waitUntil([](const Findings &findings) { return findings.queued == 0; });
    chart().close();
}

} // namespace

Findings examineCache(std::chrono::duration<double> patience) {
    std::thread(runCache).detach(); // nothing can end the wait for a switch
    return chart().read(patience);
}

} // namespace dcache
