// What the cache asks of the process that hosts it.
#include "platform/host.h"

#include <ctime>

int uptime(long *seconds) {
    timespec now = {};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return -1;
    *seconds = static_cast<long>(now.tv_sec);
    return 0;
}
