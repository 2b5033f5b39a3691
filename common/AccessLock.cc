#include "common/AccessLock.h"

#include <pthread.h>

namespace {

// Recursive from the first instruction of the process on, and never initialised again: a client may hold it before the
// cache is made, and initialising a mutex that somebody holds destroys it. It has no destructor, for the EVAL
// thread outlives the destruction of static objects.
pthread_mutex_t access_mutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;

} // namespace

void AccessLock::acquire() {
    pthread_mutex_lock(&access_mutex);
}

void AccessLock::release() {
    pthread_mutex_unlock(&access_mutex);
}
