/*
 * What the tool reads of the fabric beside the cache: the link-state database and the name server's entries, walked
 * one key at a time.
 *
 * The walks use the cache's connection: connect() first. One thread at a time.
 * Errors: a walk that fails ends there, and what has been read until then counts. A walk that comes back to where it
 * was ends too.
 */
#ifndef TOOLS_DCACHE_TOPOLOGY_LINKSTATE_H
#define TOOLS_DCACHE_TOPOLOGY_LINKSTATE_H

#include <string>
#include <vector>

#include "tools/dcache/topology/graph.h"

namespace dcache {

/// All records, in the order of the switch. One whose identifier is no domain ID is left out, and so is a link of which
/// nothing can be read.
std::vector<LinkRecord> readLinkState();

/// The name server's entries for the devices at one switch: their identifiers, which are Fibre Channel addresses.
std::vector<std::string> readNameServer(unsigned domain);

} // namespace dcache

#endif // TOOLS_DCACHE_TOPOLOGY_LINKSTATE_H
