/*
 * The host's `uptime`, as the test wants it. Thread-safe.
 */
#ifndef TESTS_SUPPORT_UPTIME_H
#define TESTS_SUPPORT_UPTIME_H

#include <functional>

namespace support {

/// What uptime() tells from now on, in seconds; 1000 at first.
void setUptime(long seconds);

/// Where uptime() asks from now on. When this returns, the source before is no longer in use.
void setUptimeSource(std::function<long()> source);

} // namespace support

#endif // TESTS_SUPPORT_UPTIME_H
