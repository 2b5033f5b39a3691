/*
 * The client's side of the cache: a callback that writes down what it is handed.
 */
#ifndef TESTS_SUPPORT_EVENTS_H
#define TESTS_SUPPORT_EVENTS_H

#include <functional>
#include <string>
#include <vector>

#include "datacache/DataCacheEvent.h"

namespace support {

/// An event in words, all fields included: "SwitchStatusChange(6) switch=... principal=... [2]->[10]".
std::string describe(const DataCacheEvent &event);

/// The callback to start the cache with. It notes each event, then does what onEvent() asked for.
void recordEvent(DataCacheEvent *event);

/// The events noted since the last call, in order.
std::vector<std::string> takeEvents();

/// What the callback does besides, for tests of clients that call back, throw, or keep the EVAL thread waiting.
void onEvent(std::function<void(DataCacheEvent &)> action);

/// Waits until so many events are there that takeEvents() has not yet given away; false when that takes longer than 20 s.
bool waitForEvents(std::size_t count);

} // namespace support

#endif // TESTS_SUPPORT_EVENTS_H
