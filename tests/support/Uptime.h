/*
 * The host's `uptime`, as the test wants it.
 */
#ifndef TESTS_SUPPORT_UPTIME_H
#define TESTS_SUPPORT_UPTIME_H

namespace support {

/// What uptime() tells from now on, in seconds; 1000 at first.
void setUptime(long seconds);

} // namespace support

#endif // TESTS_SUPPORT_UPTIME_H
