#include "datacache/DataCache.h"

#include <array>
#include <pthread.h>
#include <stdexcept>
#include <unistd.h>

#include "common/AccessLock.h"
#include "datacache/notify/codes.h"
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"

namespace {

constexpr unsigned kRetrySeconds = 10;
constexpr std::size_t kEvalStackSize = 131072;

// The wake-up of the EVAL thread. None of it has a destructor: that thread outlives the destruction of static objects.
// eval_mutex is taken with or without the cache's lock, but the cache's lock is never taken with eval_mutex held.
pthread_mutex_t eval_mutex = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t eval_cv = PTHREAD_COND_INITIALIZER;
unsigned eval_ready = 0; // non-zero: a pass is due; however many wake-ups were counted, one pass serves them

class EvalLock {
public:
    EvalLock() { pthread_mutex_lock(&eval_mutex); }
    ~EvalLock() { pthread_mutex_unlock(&eval_mutex); }
    EvalLock(const EvalLock &) = delete;
    EvalLock &operator=(const EvalLock &) = delete;
};

void sleepBeforeRetry() {
    unsigned left = kRetrySeconds;
    while (left != 0)       // a signal ends a sleep early
        left = sleep(left); // NOLINT(concurrency-mt-unsafe): no SIGALRM is in use here
}

void waitForWakeUp() {
    const EvalLock lock;
    while (eval_ready == 0)
        pthread_cond_wait(&eval_cv, &eval_mutex);
    eval_ready = 0;
}

} // namespace

DataCache *DataCache::instance = nullptr;

// ---- birth and death ----------------------------------------------------------------------------------

DataCache::DataCache() {
    _localPortRefresh.set();
}

DataCache::~DataCache() {
    const AccessLock lock;
    cim_log(CIM_LOG_INFO, "DCACHE: ~DataCache()\n");
    for (zov_event_s *record : _eventQueue)
        delete record;
    if (instance == this)
        instance = nullptr; // notifications that still arrive find no cache
}

DataCache *DataCache::getInstance() {
    AccessLock::acquire();
    return instance;
}

void DataCache::releaseInstance() {
    AccessLock::release();
}

bool DataCache::init() {
    const AccessLock lock; // nobody gets at a cache that is not connected yet
    if (instance == nullptr) {
        cim_log(CIM_LOG_INFO, "DCACHE: Creating a new datacache()\n");
        instance = new DataCache();
    }
    instance->startZovlib();
    if (instance->initZoningLimits())
        cim_log(CIM_LOG_INFO, "DCACHE: Zoning limits loaded\n");
    else
        cim_log(CIM_LOG_INFO, "DCACHE: Zoning limits failed to load\n");
    return true;
}

bool DataCache::start(EventCallback callback) {
    instance->startEventMonitor(callback);
    instance->startEvalThread(); // without the thread the cache is stale, not broken: the provider goes on
    return true;
}

// ---- connection and registration ----------------------------------------------------------------------

bool DataCache::startZovlib() {
    const AccessLock lock;
    cim_log(CIM_LOG_INFO, "DCACHE: attempting zovlib connection\n");
    while (_hSwitch == 0) {
        int32_t result = 0;
        while ((result = zov_IPConnect("localhost", "cim", "", &_hSwitch)) != 0) {
            cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] zovlib connection failed: %d : retrying in 10 seconds...\n",
                    "DataCache.cc", "startZovlib", __LINE__, static_cast<int>(result));
            sleepBeforeRetry();
            _hSwitch = 0;
        }
    }
    hSwitch = _hSwitch;
    cim_log(CIM_LOG_INFO, "DCACHE: zovlib connection established\n");
    return true;
}

bool DataCache::startEventMonitor(EventCallback callback) {
    const AccessLock lock;
    _eventCallback = callback;
    codes::RegistrationList list = codes::registrationList();
    const int32_t result = zov_enRegisterForEventList(_hSwitch, zovlibNotificationCB, nullptr, list.data(),
                                                      static_cast<int32_t>(list.size()));
    if (result != 0)
        cim_log(CIM_LOG_INFO, "DCACHE: Unable to register for events via zov_enRegisterForEvents\n");
    for (zov_eventreg_s &entry : list) {
        if (entry.result != 0)
            cim_log(CIM_LOG_INFO, "DCACHE: Unable to register for event %d\n", static_cast<int>(entry.code));
        else
            entry.result = result;
    }
    _registrations.assign(list.begin(), list.end());
    return true;
}

std::vector<zov_eventreg_s> DataCache::getRegistrations() const {
    const AccessLock lock;
    return _registrations;
}

// ---- the EVAL thread ----------------------------------------------------------------------------------

bool DataCache::startEvalThread() {
    const AccessLock lock;
    cim_log(CIM_LOG_INFO, "DCACHE: (DataCache) creating EVAL thread\n");
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    const bool sized = pthread_attr_setstacksize(&attributes, kEvalStackSize) == 0;
    if (!sized)
        cim_log(CIM_LOG_INFO, "DCACHE: pthread_attr_setstacksize failed\n");
    pthread_t thread{};
    const bool created = sized && pthread_create(&thread, &attributes, evalThread, nullptr) == 0;
    if (sized && !created)
        cim_log(CIM_LOG_INFO, "DCACHE: Thread creation failed\n");
    pthread_attr_destroy(&attributes);
    return created;
}

void *DataCache::evalThread(void * /*unused*/) {
    cim_log(CIM_LOG_INFO, "DCACHE: (EVAL) starting\n");
    {
        const EvalLock lock;
        eval_ready = 1; // the first pass does not wait for a notification
    }
    try {
        for (;;) {
            waitForWakeUp();
            cim_log(CIM_LOG_INFO, "DCACHE: (EVAL) awake\n");
            const AccessLock lock;
            try {
                if (instance != nullptr && !instance->evaluateCaches())
                    cim_log(CIM_LOG_INFO, "DCACHE: (EVAL) Cache update failed or incomplete\n");
            } catch (const char *message) {
                // The client threw at the event that ends a pass: the pass itself is whole.
                cim_log(CIM_LOG_CRIT, "DCACHE: Exception: %s\n", message != nullptr ? message : "");
            }
        }
    } catch (...) {
        // What a pass lets out ends the process. Catching it here first unwinds the pass and gives the lock back;
        // an exception without a handler would leave both as they are.
        throw;
    }
}

void DataCache::_wakeEvalThread() {
    const EvalLock lock;
    ++eval_ready;
    pthread_cond_signal(&eval_cv);
}

// ---- events -------------------------------------------------------------------------------------------

void DataCache::_deliver(DataCacheEvent &&event) {
    if (_eventCallback != nullptr)
        _eventCallback(&event);
}
