/*
 * Wake-ups of the EVAL thread, counted where they are made. A test that uses this header has pthread_cond_signal
 * replaced by a version that counts.
 */
#ifndef TESTS_SUPPORT_WAKEUPS_H
#define TESTS_SUPPORT_WAKEUPS_H

namespace support {

/// How often this thread has signalled a condition since the last call.
unsigned takeWakeUps();

} // namespace support

#endif // TESTS_SUPPORT_WAKEUPS_H
