/*
 * What the calls about the zoning database hand out, as a text: records show it, and a recording that is replayed hands
 * it out again. Each text is read back to what it was made from; none for a text that is something else. Pure functions.
 *
 *     zonesets 300, zones 3000, members 12000, ...
 *     "north", "south"                       none, if there are no names
 *     "north": zone "oak" 3 ["port 2100000000000001", "alias ash"], alias "ash" ["domain:port 1:10"]
 */
#ifndef SIM_ZONING_HANDEDOUT_H
#define SIM_ZONING_HANDEDOUT_H

#include <optional>
#include <string>
#include <vector>

#include "sim/zoning/Database.h"

namespace sim {

std::string shownLimits(const Limits &limits);
std::optional<Limits> readLimits(const std::string &text);

std::string shownNames(const std::vector<std::string> &names);
std::optional<std::vector<std::string>> readNames(const std::string &text);

/// A zone set with its zones and aliases, out of the database that it is from.
struct FetchedZoneSet {
    std::string name;
    std::vector<StoredZone> zones;
    std::vector<StoredAlias> aliases;

    /// Good as long as this is.
    Contents contents() const;
};

std::string shownZoneSet(const std::string &name, const Contents &contents);
std::optional<FetchedZoneSet> readZoneSet(const std::string &text);

} // namespace sim

#endif // SIM_ZONING_HANDEDOUT_H
