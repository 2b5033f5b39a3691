/*
 * What follows from the links between switches: who can be reached and how far away, the link-state database, the
 * choice of the principal. Pure functions.
 */
#ifndef SIM_MODEL_ROUTING_H
#define SIM_MODEL_ROUTING_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/model/Fabric.h"
#include "sim/model/Identity.h"

namespace sim {

/// How many links away each switch is that can be reached from one of them, by name; that one is 0 away.
std::map<std::string, unsigned> hopsFrom(const std::string &name, const std::vector<Link> &links);

/// The records of the local switch, of every peer that can be reached, and of those that were recorded before.
Database databaseOf(const Identity &local, const Fabric &fabric);

/// The name by which the fabric knows the switch of a record.
std::string keyOf(const LinkStateRecord &record);
/// The record of a domain; null without one.
const LinkStateRecord *recordAt(const Database &database, unsigned domain);
/// The same for a switch of the fabric only.
const LinkStateRecord *memberAt(const Database &database, unsigned domain);
/// The switches of the fabric, as the fabric knows them.
std::set<std::string> membersOf(const Database &database);

bool operator==(const LinkEnd &one, const LinkEnd &other);
bool operator==(const LinkStateRecord &one, const LinkStateRecord &other);

/// The switches of the fabric in the order in which they would be chosen as the principal, by priority
/// and name.
using Electorate = std::map<std::pair<unsigned, uint64_t>, std::string>;
Electorate electorateOf(const Identity &local, const Fabric &fabric);

} // namespace sim

#endif // SIM_MODEL_ROUTING_H
