#include "tests/support/Uptime.h"

#include <atomic>

#include "platform/host.h"

namespace {

std::atomic<long> now{1000};

} // namespace

void support::setUptime(long seconds) {
    now = seconds;
}

extern "C" int uptime(long *seconds) {
    *seconds = now;
    return 0;
}
