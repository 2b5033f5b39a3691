/*
 * What the process that hosts the cache supplies.
 *
 * The cache leaves these symbols undefined; the management provider's process (or the tool, or a test)
 * defines them. Serves C and C++.
 */
#ifndef PLATFORM_HOST_H
#define PLATFORM_HOST_H

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Stores the whole seconds since boot. May be called from any thread; the result is not looked at. */
int uptime(long *seconds);

#pragma GCC visibility pop

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* PLATFORM_HOST_H */
