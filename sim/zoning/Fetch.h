/*
 * Zone sets of the switch as objects of a client's. Thread-safe.
 */
#ifndef SIM_ZONING_FETCH_H
#define SIM_ZONING_FETCH_H

#include <string>

#include "sim/zoning/Database.h"
#include "sim/zoning/Objects.h"

namespace sim {

/// A zone set of any name with copies of these zones and aliases.
ObjectNumber makeZoneSet(const std::string &name, const Contents &contents);

} // namespace sim

#endif // SIM_ZONING_FETCH_H
