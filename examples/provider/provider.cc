// A provider in small: it starts the cache, turns events into indications, and answers a query.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <datacache/DataCache.h>
#include <foundation/Wwn.h>

extern "C" int showKey(const char *key); // platform.c

namespace {

std::atomic<bool> complete{false}; // every area of the cache has been loaded

// Runs on the cache's thread while the cache is locked: copy what you need and return. The event dies with the call.
void indicate(DataCacheEvent *event) {
    if (const auto *joined = dynamic_cast<const DCEventSwitchAdd *>(event))
        std::printf("indication: switch %s joined the fabric\n", joined->switchWwn.tostring().c_str());
    else if (const auto *failed = dynamic_cast<const DCEventPowerSupplyFail *>(event))
        std::printf("indication: power supply %d failed, %d still good\n", failed->number, failed->count);
    else if (dynamic_cast<const DCEventDataCacheUpdateComplete *>(event) != nullptr)
        complete = true;
}

} // namespace

// provider [SECONDS]: how long to wait for the cache to be complete
int main(int argc, char **argv) {
    DataCache::init(); // connects; waits until the switch answers
    DataCache *cache = DataCache::getInstance();
    cache->start(indicate);
    DataCache::releaseInstance();

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 20);
    while (!complete && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));

    cache = DataCache::getInstance(); // locked: the three answers are of one moment
    std::printf("switch %s: %u ports, %u power supplies, %s\n", cache->getRootSwitchWwn().c_str(),
                unsigned{cache->getMaxRootPorts()}, unsigned{cache->getRootPowerSupplyCount()},
                cache->isCacheReady() ? "complete" : "not complete");
    DataCache::releaseInstance();
    return showKey("Oper.Switch.OperState");
}
