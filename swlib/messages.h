/*
 * What the files of the access layer share. Internal.
 */
#ifndef SWLIB_MESSAGES_H
#define SWLIB_MESSAGES_H

#include <array>
#include <cstdarg>
#include <cstdio>

#include "platform/zovlib.h"

namespace swlib {

/// Source file name of the access layer in log lines.
constexpr const char *kSourceName = "MERO_Zov_Lib";

using Key = std::array<char, sizeof(SmlMessage::key)>;

/// Formats a key; one that is too long is cut.
__attribute__((format(printf, 1, 0))) inline Key formatKey(const char *format, va_list args) {
    Key key{};
    vsnprintf(key.data(), key.size(), format, args);
    return key;
}

/// A switch library may leave a text without its end.
inline void terminate(SmlMessage *messages, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        messages[i].key[sizeof(messages[i].key) - 1] = '\0';
        messages[i].value[sizeof(messages[i].value) - 1] = '\0';
    }
}

} // namespace swlib

#endif // SWLIB_MESSAGES_H
