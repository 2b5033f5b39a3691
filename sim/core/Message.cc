#include "sim/core/Message.h"

#include <algorithm>
#include <cstring>

namespace sim {

bool hasTerminatedKey(const SmlMessage &message) {
    return strnlen(message.key, sizeof message.key) < sizeof message.key;
}

std::string keyOf(const SmlMessage &message) {
    return {message.key, strnlen(message.key, sizeof message.key)};
}

std::string valueOf(const SmlMessage &message) {
    return {message.value, strnlen(message.value, sizeof message.value)};
}

std::string valueToSet(const SmlMessage &message) {
    return isCommandKey(keyOf(message)) ? "" : valueOf(message);
}

void putValue(SmlMessage &message, std::string_view value) {
    const size_t length = std::min(value.size(), sizeof message.value);
    std::memcpy(message.value, value.data(), length);
    if (length < sizeof message.value)
        message.value[length] = '\0';
}

bool isCommandKey(std::string_view key) {
    return key.substr(0, 4) == "Cmd.";
}

} // namespace sim
