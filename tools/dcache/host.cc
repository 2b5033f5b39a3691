// What the cache asks of the process that hosts it.
#include "platform/host.h"

#include <ctime>

#include "tools/dcache/simulator.h"

int uptime(long *seconds) {
    timespec now = {};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return -1;
    // A simulated switch may take its time without anybody having to wait for it.
    *seconds = static_cast<long>(now.tv_sec) + dcache::simulatedSeconds();
    return 0;
}
