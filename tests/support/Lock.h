/*
 * The cache's lock, seen from another thread.
 */
#ifndef TESTS_SUPPORT_LOCK_H
#define TESTS_SUPPORT_LOCK_H

#include <atomic>
#include <memory>
#include <thread>

#include "datacache/DataCache.h"
#include "tests/support/Wait.h"

namespace support {

/// Another thread can take the cache's lock; false when it has to wait for longer than 20 s.
inline bool isLockFree() {
    const auto taken = std::make_shared<std::atomic<bool>>(false);
    std::thread other([taken] {
        DataCache::getInstance();
        DataCache::releaseInstance();
        *taken = true;
    });
    const bool free = waitUntil([&taken] { return taken->load(); });
    if (free)
        other.join();
    else
        other.detach();
    return free;
}

} // namespace support

#endif // TESTS_SUPPORT_LOCK_H
