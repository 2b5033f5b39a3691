#include "tests/support/WakeUps.h"

#include <pthread.h>
#include <utility>

namespace {

thread_local unsigned wakeUps = 0;

} // namespace

// To wake all waiters is a correct way of waking one. It spares the look-up of the original, of which some C libraries
// have an older version beside the present one.
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's header names the parameter so
extern "C" __attribute__((visibility("default"))) int pthread_cond_signal(pthread_cond_t *__cond) noexcept {
    ++wakeUps;
    return pthread_cond_broadcast(__cond);
}
// NOLINTEND(bugprone-reserved-identifier)

unsigned support::takeWakeUps() {
    return std::exchange(wakeUps, 0);
}
