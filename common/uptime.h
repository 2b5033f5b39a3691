/*
 * The system's uptime in whole seconds, as the host tells it; 0 when it tells nothing.
 */
#ifndef COMMON_UPTIME_H
#define COMMON_UPTIME_H

#include "platform/host.h"

inline long uptimeNow() {
    long seconds = 0;
    uptime(&seconds);
    return seconds;
}

#endif // COMMON_UPTIME_H
