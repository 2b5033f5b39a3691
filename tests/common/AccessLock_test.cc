#include "common/AccessLock.h"

#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

namespace {

// The mutex is the lock's own secret. It is seen when the lock takes it, so that tests can try it without waiting.
thread_local bool watching = false;
pthread_mutex_t *seen = nullptr;

} // namespace

extern "C" __attribute__((no_sanitize_thread)) int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept {
    using Function = int (*)(pthread_mutex_t *);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    if (watching)
        seen = mutex;
    return real(mutex);
}

namespace {

pthread_mutex_t *theMutex() {
    watching = true;
    AccessLock::acquire();
    watching = false;
    AccessLock::release();
    return seen;
}

/// Whether another thread could have the lock now.
bool isFree() {
    pthread_mutex_t *mutex = theMutex();
    return std::async(std::launch::async,
                      [mutex] {
                          if (pthread_mutex_trylock(mutex) != 0)
                              return false;
                          pthread_mutex_unlock(mutex);
                          return true;
                      })
        .get();
}

/// A static object of a client that takes the lock, and takes it again, before main() has begun.
struct EarlyClient {
    EarlyClient() {
        const AccessLock outer;
        const AccessLock inner;
        heldBothInside = !isFree();
    }
    bool heldBothInside = false;
};
const EarlyClient early_client;

TEST(AccessLock, IsRecursiveBeforeMainBegins) {
    EXPECT_TRUE(early_client.heldBothInside);
    EXPECT_TRUE(isFree());
}

TEST(AccessLock, KeepsOtherThreadsOutForAScope) {
    EXPECT_TRUE(isFree());
    {
        const AccessLock lock;
        EXPECT_FALSE(isFree());
    }
    EXPECT_TRUE(isFree());
}

TEST(AccessLock, AnExceptionReleasesIt) {
    try {
        const AccessLock lock;
        EXPECT_FALSE(isFree());
        throw std::runtime_error("on the way");
    } catch (const std::runtime_error &) {
        EXPECT_TRUE(isFree());
    }
}

TEST(AccessLock, IsFreeOnlyAfterItsLastRelease) {
    AccessLock::acquire();
    {
        const AccessLock scoped;
        AccessLock::acquire();
        EXPECT_FALSE(isFree());
        AccessLock::release();
        EXPECT_FALSE(isFree());
    }
    EXPECT_FALSE(isFree());
    AccessLock::release();
    EXPECT_TRUE(isFree());
}

TEST(AccessLock, AThreadThatWaitsGetsItAfterTheRelease) {
    AccessLock::acquire();
    bool done = false;
    std::thread waiter([&done] {
        const AccessLock lock;
        done = true;
    });
    EXPECT_FALSE(done); // read under the lock
    AccessLock::release();
    waiter.join();
    EXPECT_TRUE(done);
}

TEST(AccessLock, IsHeldByOneThreadAtATime) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    int sum = 0; // unguarded but for the lock
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&sum] {
            for (int round = 0; round < kRounds; ++round) {
                const AccessLock lock;
                const int before = sum;
                std::this_thread::yield();
                sum = before + 1;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(sum, kThreads * kRounds);
}

} // namespace
