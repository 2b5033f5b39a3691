// From nothing to a cache that answers.
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

// [host]
#include <platform/host.h>

// The cache asks its host how long the system has been up.
int uptime(long *seconds) {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    *seconds = static_cast<long>(now.tv_sec);
    return 0;
}
// [/host]

namespace {

// [ready]
// Tells the provider's threads that the cache can answer.
class Readiness {
public:
    void tell() {
        const std::lock_guard<std::mutex> lock(_mutex);
        _ready = true;
        _changed.notify_all();
    }

    bool wait(std::chrono::seconds limit) {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, limit, [this] { return _ready; });
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _ready = false;
};

// Never destroyed: the EVAL thread is still there when the process exits.
Readiness &readiness() {
    static auto *theOne = new Readiness;
    return *theOne;
}
// [/ready]

// [callback]
void onEvent(DataCacheEvent *event) {
    if (dynamic_cast<DCEventDataCacheUpdateComplete *>(event) != nullptr)
        readiness().tell();
}
// [/callback]

// [start]
void startCache() {
    DataCache::init(); // connects; returns when the switch has answered, however long that takes

    const CacheHold cache;
    cache->start(onEvent); // registers for notifications, starts the EVAL thread; its first pass waits for the lock
}
// [/start]

void startAndAsk() {
    startCache();

    // [ask]
    if (!readiness().wait(std::chrono::seconds(60))) {
        std::printf("the switch is slow, or an area cannot be read\n");
        return;
    }
    const CacheHold cache;
    std::printf("switch %s, %u ports\n", cache->getRootSwitchWwn().c_str(), unsigned{cache->getMaxRootPorts()});
    // [/ask]
}

constexpr const char *kOutput = R"(
switch 100000C0DD00A1B2, 24 ports
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, startAndAsk);
}
