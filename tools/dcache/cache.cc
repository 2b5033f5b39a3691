#include "tools/dcache/cache.h"

#include <chrono>
#include <condition_variable>
#include <fmt/format.h>
#include <mutex>
#include <thread>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

/// Tells a person who waits longer than a moment what for.
class PatienceNote {
public:
    PatienceNote() : _thread([this] { waitAndTell(); }) {}
    ~PatienceNote() {
        {
            const std::lock_guard<std::mutex> lock(_mutex);
            _over = true;
        }
        _changed.notify_one();
        _thread.join();
    }
    PatienceNote(const PatienceNote &) = delete;
    PatienceNote &operator=(const PatienceNote &) = delete;

private:
    void waitAndTell() {
        std::unique_lock<std::mutex> lock(_mutex);
        if (!_changed.wait_for(lock, std::chrono::seconds(2), [this] { return _over; })) {
            fmt::print(stderr,
                       "dcache: waiting for the switch to answer, trying every 10 seconds (Ctrl-C to give up)\n");
        }
    }

    std::mutex _mutex;
    std::condition_variable _changed;
    bool _over = false;
    std::thread _thread; // last: it uses the others
};

} // namespace

void connect() {
    const PatienceNote note;
    DataCache::init();
}

void loadOnce(DataCacheArea area) {
    connect();
    const CacheLock cache;
    cache->startEventMonitor(nullptr);
    cache->evaluateCaches();
    // A pass reads the switch before the chassis, whose faults are part of the switch's status: read it once more.
    cache->updateSwitch();
    cache->evaluateCaches();
    if (!cache->isAreaGood(area)) {
        throw Failure(
            fmt::format("the {} data could not be read from the switch; details are in /tmp/cim.out", areaWord(area)));
    }
}

} // namespace dcache
