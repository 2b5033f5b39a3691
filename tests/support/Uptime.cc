#include "tests/support/Uptime.h"

#include <mutex>
#include <utility>

#include "platform/host.h"

namespace {

/// Never destroyed: the EVAL thread may still ask while the process exits.
struct Clock {
    std::mutex mutex;
    std::function<long()> source = [] { return 1000L; };
};

Clock &clockOfTheHost() {
    static auto *theOne = new Clock;
    return *theOne;
}

} // namespace

void support::setUptime(long seconds) {
    setUptimeSource([seconds] { return seconds; });
}

void support::setUptimeSource(std::function<long()> source) {
    const std::lock_guard<std::mutex> lock(clockOfTheHost().mutex);
    clockOfTheHost().source = std::move(source);
}

extern "C" int uptime(long *seconds) {
    const std::lock_guard<std::mutex> lock(clockOfTheHost().mutex);
    *seconds = clockOfTheHost().source();
    return 0;
}
