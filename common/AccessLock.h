/*
 * The cache's one lock: a recursive mutex that guards the whole cache object.
 *
 * It has a header of its own because every layer that holds a part of the object takes it, and none of them needs to
 * know the object for that. It can be taken before the cache exists. Lock order: this one before the mutex of the EVAL
 * thread's wake-up counter; never the other way round.
 */
#ifndef COMMON_ACCESSLOCK_H
#define COMMON_ACCESSLOCK_H

/// Holds the lock for a scope, whichever way the scope is left. The same thread may hold it several times.
class AccessLock {
public:
    AccessLock() { acquire(); }
    ~AccessLock() { release(); }
    AccessLock(const AccessLock &) = delete;
    AccessLock &operator=(const AccessLock &) = delete;

    /// For getInstance() and releaseInstance(), whose callers pair them by hand.
    static void acquire();
    static void release();
};

#endif // COMMON_ACCESSLOCK_H
