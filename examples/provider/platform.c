/* The C side of the provider: what the cache asks of its host, and a key read from the switch past the cache. */
#define _POSIX_C_SOURCE 200809L
#include <stdio.h>
#include <time.h>

#include <platform/host.h>
#include <platform/zovlib.h>
#include <swlib/MERO_Zov_Lib.h>

/* Seconds since boot; the zoning lock takes its age from it. */
int uptime(long *seconds) {
    struct timespec now;
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0)
        return -1;
    *seconds = (long)now.tv_sec;
    return 0;
}

/* Prints the value of a key; 0 when the switch has it. */
int showKey(const char *key) {
    char *value = NULL;
    uint32_t size = 0;
    if (zov_smlGetV(hSwitch, &value, &size, "%s", key) != 0)
        return 1;
    printf("%s is %s\n", key, value);
    zov_libFreeMemory(value);
    return 0;
}
