/*
 * A switch library that does what a test tells it, call by call.
 *
 * This header DEFINES the switch library's SML calls, so include it in the one source file of a test program that needs
 * it. A call without a script fails the test.
 */
#ifndef TESTS_SWLIB_SCRIPTEDSWITCH_H
#define TESTS_SWLIB_SCRIPTEDSWITCH_H

#include <cstdint>
#include <cstdlib>
#include <functional>

#include <gtest/gtest.h>

#include "platform/zovlib.h"

namespace scripted {

inline std::function<int32_t(zov_handle_t, SmlMessage *, int32_t)> getBatch;
inline std::function<int32_t(zov_handle_t, SmlMessage *, int32_t)> setBatch;
inline std::function<int32_t(zov_handle_t, const char *, char **, uint32_t *)> get;
inline std::function<int32_t(zov_handle_t, const char *, char *)> set;
inline std::function<int32_t(void *)> release; ///< what comes of a text that has been released; without it 0

template <class Script, class... Arguments>
int32_t play(const char *call, const Script &script, Arguments... arguments) {
    if (script)
        return script(arguments...);
    ADD_FAILURE() << "the test did not expect " << call;
    return -1;
}

} // namespace scripted

// NOLINTBEGIN(misc-definitions-in-headers): see above
extern "C" {

int32_t zov_smlGetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return scripted::play("zov_smlGetBatch", scripted::getBatch, handle, messages, count);
}

int32_t zov_smlSetBatch(zov_handle_t handle, SmlMessage *messages, int32_t count) {
    return scripted::play("zov_smlSetBatch", scripted::setBatch, handle, messages, count);
}

int32_t zov_smlGet(zov_handle_t handle, const char *key, char **value, uint32_t *size) {
    return scripted::play("zov_smlGet", scripted::get, handle, key, value, size);
}

int32_t zov_smlSet(zov_handle_t handle, const char *key, char *value) {
    return scripted::play("zov_smlSet", scripted::set, handle, key, value);
}

int32_t zov_libFreeMemory(void *memory) {
    const int32_t result = scripted::release ? scripted::release(memory) : 0;
    free(memory);
    return result;
}

} // extern "C"
// NOLINTEND(misc-definitions-in-headers)

#endif // TESTS_SWLIB_SCRIPTEDSWITCH_H
