#include "sim/core/Event.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace sim {

zov_event_s makeEvent(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) {
    zov_event_s event = {};
    event.code = code;
    std::copy(source.begin(), source.end(), std::begin(event.source.number));
    std::memcpy(event.text, text.data(), std::min(text.size(), sizeof event.text - 1));
    return event;
}

std::string textOf(const zov_event_s &event) {
    return {event.text, strnlen(event.text, sizeof event.text)};
}

} // namespace sim
