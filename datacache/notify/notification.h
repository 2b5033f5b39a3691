/*
 * What intake and dispatch share about a notification. Internal.
 */
#ifndef DATACACHE_NOTIFY_NOTIFICATION_H
#define DATACACHE_NOTIFY_NOTIFICATION_H

#include <string>

#include "platform/zovlib.h"

namespace notification {

/// The text, which the switch library may leave without its end.
std::string textOf(const zov_event_s &event);

/// Logs what happens to a notification: `action`, source numbers, code, `gap`, name and text.
void log(const char *action, const char *gap, const zov_event_s &event);

} // namespace notification

#endif // DATACACHE_NOTIFY_NOTIFICATION_H
