// Is the cache well? And what is done when it is not.
#include <array>
#include <cstdio>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

namespace {

// [health]
std::string whatIsWrong() {
    constexpr std::array<const char *, 7> names = {"switch",   "chassis", "blades", "ports",
                                                   "accounts", "fabric",  "zoning"};
    const CacheHold cache;
    std::string wrong;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!cache->isAreaGood(static_cast<DataCacheArea>(i)))
            wrong += std::string(" ") + names[i];
    }
    for (const zov_eventreg_s &entry : cache->getRegistrations()) {
        if (entry.result != 0)
            wrong += " code " + std::to_string(entry.code);
    }
    if (cache->getSecondsSinceReadyPass() == -1)
        wrong += " (and it never was well)";
    return wrong.empty() ? " nothing" : wrong;
}
// [/health]

// [again]
// Reads everything again that can fail. A request starts no pass, so this one is run here: on this thread, with the
// callback. True when the cache is ready.
bool readAgain() {
    const CacheHold cache;
    cache->updateAll();
    return cache->evaluateCaches();
}
// [/again]

void onEvent(DataCacheEvent * /*event*/) {}

void fallIllAndRecover() {
    sim::Fault silence;
    silence.key = "Oper.Switch.FirstPotentialUser";
    silence.status = 5;
    silence.times = -1;
    const int number = example::theSwitch().addFault(silence);
    DataCache::init();
    CacheHold()->start(onEvent);
    example::waitUntil("the first pass", [] { return CacheHold()->getPassCount() > 0; });
    std::printf("wrong:%s\n", whatIsWrong().c_str());

    example::theSwitch().removeFault(number);
    std::printf("read again: %s\n", readAgain() ? "ready" : "not ready");
    std::printf("wrong:%s\n", whatIsWrong().c_str());
}

constexpr const char *kOutput = R"(
wrong: accounts (and it never was well)
read again: ready
wrong: nothing
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, fallIllAndRecover);
}
