/*
 * Making and reading notifications. Pure functions.
 */
#ifndef SIM_CORE_EVENT_H
#define SIM_CORE_EVENT_H

#include <array>
#include <string>

#include "platform/zovlib.h"

namespace sim {

/// A text that does not fit is cut so that its terminator does.
zov_event_s makeEvent(int32_t code, const std::array<int32_t, 3> &source, const std::string &text);

/// The text of an event, which may lack its terminator.
std::string textOf(const zov_event_s &event);

} // namespace sim

#endif // SIM_CORE_EVENT_H
