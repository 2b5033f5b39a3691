/*
 * Waiting for what another thread does.
 */
#ifndef TESTS_SUPPORT_WAIT_H
#define TESTS_SUPPORT_WAIT_H

#include <chrono>
#include <thread>

namespace support {

/// Looks at `condition` until it is true; false when that takes longer than 20 s.
template <class Condition> bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

} // namespace support

#endif // TESTS_SUPPORT_WAIT_H
