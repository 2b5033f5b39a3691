// What start-up hands to the switch library and to the thread library, and an EVAL thread that has lost its cache.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <pthread.h>
#include <sched.h>

#include <dlfcn.h>

#include "swlib/MERO_Zov_Lib.h"
#include "tests/support/CacheTest.h"
#include "tests/support/Lock.h"
#include "tests/support/Wait.h"

namespace {

using testing::ElementsAre;

/// A way in which a connection attempt ends.
struct Attempt {
    zov_handle_t handle; ///< what it leaves behind
    int32_t result;
};

constexpr zov_handle_t kHandle = 0x80000007;

struct Introduction {
    std::string host;
    std::string client;
    std::string text;
};
std::vector<Introduction> introductions;

std::vector<Attempt> attempts;          // what the next ones do; afterwards the simulated switch answers
std::vector<zov_handle_t> foundHandles; // what stood there when they began
unsigned sleeps = 0;

struct Registration {
    zov_handle_t handle;
    zov_eventcallback_t callback;
    void *context;
    int32_t count;
};
std::vector<Registration> registrations;

std::vector<std::string> order; // of registration and thread
int threadResult = 0;
int detachState = -1;
void *threadArgument = &threadResult;

thread_local bool isEvalThread = false;
std::atomic<unsigned> evalWaits{0};

template <class Function> Function *original(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

void *runEvalThread(void *argument) {
    isEvalThread = true;
    return DataCache::evalThread(argument);
}

} // namespace

extern "C" unsigned sleep(unsigned /*seconds*/) {
    ++sleeps;
    return 0;
}

extern "C" int32_t zov_IPConnect(const char *host, const char *client, const char *text, zov_handle_t *handle) {
    foundHandles.push_back(*handle);
    introductions.push_back({host, client, text});
    if (foundHandles.size() > attempts.size())
        return original<int32_t(const char *, const char *, const char *, zov_handle_t *)>("zov_IPConnect")(
            host, client, text, handle);
    const Attempt &attempt = attempts[foundHandles.size() - 1];
    *handle = attempt.handle;
    return attempt.result;
}

extern "C" int32_t zov_enRegisterForEventList(zov_handle_t handle, zov_eventcallback_t callback, void *context,
                                              zov_eventreg_s *list, int32_t count) {
    order.emplace_back("registration");
    registrations.push_back({handle, callback, context, count});
    return original<int32_t(zov_handle_t, zov_eventcallback_t, void *, zov_eventreg_s *, int32_t)>(
        "zov_enRegisterForEventList")(handle, callback, context, list, count);
}

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*body)(void *),
                              void *argument) {
    const auto create = original<int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *)>("pthread_create");
    if (body != DataCache::evalThread)
        return create(thread, attributes, body, argument);
    order.emplace_back("thread");
    pthread_attr_getdetachstate(attributes, &detachState);
    threadArgument = argument;
    return threadResult != 0 ? threadResult : create(thread, attributes, runEvalThread, argument);
}

// Every wait ends without a reason, as waits may. It spares the look-up of the original, of which some C libraries have
// an older version beside the present one.
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's header names the parameters so
extern "C" int pthread_cond_wait(pthread_cond_t * /*cond*/, pthread_mutex_t *__mutex) {
    pthread_mutex_unlock(__mutex);
    if (isEvalThread)
        ++evalWaits;
    sched_yield();
    return pthread_mutex_lock(__mutex);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

class StartUp : public support::CacheTest {
protected:
    static std::ptrdiff_t timesLogged(const std::string &message) {
        const std::vector<std::string> lines = support::messagesIn(support::kMainLog);
        return std::count(lines.begin(), lines.end(), message);
    }
};

// ---- connection and registration ------------------------------------------------------------------------

TEST_F(StartUp, EveryAttemptToConnectBeginsWithoutAHandle) {
    attempts = {{99, 7}, {98, -1}, {0, 0}, {97, 24}, {kHandle, 0}};
    EXPECT_TRUE(DataCache::init());
    EXPECT_THAT(foundHandles, ElementsAre(0U, 0U, 0U, 0U, 0U));
    EXPECT_EQ(sleeps, 3U) << "not after a success, even one without a handle";
}

TEST_F(StartUp, EveryAttemptToConnectIsToThisSwitchAndByTheSameName) {
    attempts = {{0, 7}, {0, 0}, {kHandle, 0}};
    DataCache::init();
    ASSERT_EQ(introductions.size(), 3U);
    for (const Introduction &introduction : introductions) {
        EXPECT_EQ(introduction.host, "localhost");
        EXPECT_EQ(introduction.client, "cim");
        EXPECT_EQ(introduction.text, "");
    }
}

TEST_F(StartUp, TheAccessLayerGetsTheCachesConnection) {
    attempts = {{99, 7}, {kHandle, 0}};
    EXPECT_EQ(hSwitch, 0U);
    DataCache::init();
    EXPECT_EQ(hSwitch, kHandle);
    hSwitch = 5;
    EXPECT_TRUE(cache().startZovlib());
    EXPECT_EQ(hSwitch, kHandle) << "once more from a connection that stands";
    EXPECT_EQ(foundHandles.size(), 2U) << "which is kept";
}

TEST_F(StartUp, RegistersTheCachesConnectionAndNoContext) {
    attempts = {{99, 7}, {kHandle, 0}};
    DataCache::init();
    cache().startEventMonitor(support::recordEvent);
    ASSERT_EQ(registrations.size(), 1U);
    EXPECT_EQ(registrations[0].handle, kHandle);
    EXPECT_EQ(registrations[0].callback, DataCache::zovlibNotificationCB);
    EXPECT_EQ(registrations[0].context, nullptr);
    EXPECT_EQ(registrations[0].count, 28);
}

// ---- the EVAL thread ------------------------------------------------------------------------------------

TEST_F(StartUp, StartRegistersOnceBeforeItMakesTheThread) {
    DataCache::init();
    threadResult = EAGAIN;
    EXPECT_TRUE(cache().start(support::recordEvent));
    EXPECT_THAT(order, ElementsAre("registration", "thread"));
}

TEST_F(StartUp, TheEvalThreadIsJoinableAndGetsNoArgument) {
    DataCache::init();
    EXPECT_TRUE(cache().startEvalThread());
    EXPECT_EQ(detachState, PTHREAD_CREATE_JOINABLE);
    EXPECT_EQ(threadArgument, nullptr);
}

TEST_F(StartUp, AWaitThatEndsWithoutAWakeUpStartsNoPass) {
    DataCache::init();
    cache().start(support::recordEvent);
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() == 1; }));
    evalWaits = 0;
    EXPECT_TRUE(support::waitUntil([] { return evalWaits >= 100; }));
    EXPECT_EQ(cache().getPassCount(), 1U);
}

TEST_F(StartUp, AnEvalThreadThatWakesWhenItsCacheIsGoneGoesBackToSleep) {
    DataCache::init();
    cache().start(support::recordEvent);
    ASSERT_TRUE(support::waitUntil([] { return cache().getPassCount() == 1; }));

    DataCache *theCache = DataCache::getInstance();
    zov_event_s event = {};
    event.code = ZOV_EVENT_USER_LOGIN_FAILURE;
    DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
    EXPECT_TRUE(support::waitUntil([] { return timesLogged("DCACHE: (EVAL) awake") == 2; }));
    evalWaits = 0; // it is on its way to the lock, which this thread holds
    delete theCache;
    DataCache::releaseInstance();
    EXPECT_TRUE(support::waitUntil([] { return evalWaits > 0; }));
    EXPECT_EQ(timesLogged("DCACHE: evaluateCaches"), 1);
    EXPECT_TRUE(support::isLockFree());

    DataCache::init();
    DataCache::zovlibNotificationCB(nullptr, &event, nullptr);
    EXPECT_TRUE(support::waitUntil([] { return cache().getPassCount() >= 1; })) << "it serves another cache";
}

} // namespace
