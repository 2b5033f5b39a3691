/*
 * The events of the cache in words and as named fields: one row per event class.
 *
 * Pure functions, callable from any thread, also inside the cache's callback. An event whose type nothing here knows
 * is described as such.
 */
#ifndef TOOLS_DCACHE_EVENTS_H
#define TOOLS_DCACHE_EVENTS_H

#include <functional>
#include <string>
#include <vector>

#include "datacache/DataCacheEvent.h"
#include "tools/dcache/value.h"

namespace dcache {

/// What an event does not carry itself and its words need.
struct Surroundings {
    Wwn ownSwitch;                    ///< the switch that is watched; events about it need not name it
    unsigned short powerSupplies = 0; ///< supplies of the chassis; 0 when the supplies are blades
    /// The index of a port of that switch, 65535 for no such port. Without it ports are told by their names.
    std::function<unsigned short(const Wwn &port)> portIndex = {};
    Wwn ownFabric = {}; ///< the fabric of that switch; events about it need not name it either
};

/// One field of an event: its name as declared and its value; world-wide names in colon form, status lists as
/// arrays of numbers.
struct Field {
    const char *name = nullptr;
    Value value;
};

struct EventDescription {
    int32_t type;
    const char *name;          ///< the class's name without "DCEvent"
    std::string words;         ///< one line, printable ASCII
    std::vector<Field> fields; ///< in order of declaration
    bool tellsChange = true;   ///< not of the event that only says that a pass has left every area up to date
};

EventDescription describe(const DataCacheEvent &event, const Surroundings &surroundings);

} // namespace dcache

#endif // TOOLS_DCACHE_EVENTS_H
