/*
 * What another management client has done to the zoning of a simulated switch.
 *
 * Thread-safety: none of its own. Errors: Misuse, in words.
 */
#ifndef TOOLS_DCACHE_ZONING_OTHERCLIENT_H
#define TOOLS_DCACHE_ZONING_OTHERCLIENT_H

#include <string>

#include "sim/Simulator.h"
#include "tools/dcache/zoning/script.h"

namespace dcache {

/// The database that a description makes. Throws Misuse for a zone or alias that is not created before it is used.
sim::ZoningDatabase databaseFrom(const Script &description);

/// Gives the switch this zoning, its active zone set and the holder of its lock included, as if another client had done
/// it. Throws Misuse when the text is no description, or describes what the switch refuses.
void giveZoning(sim::Simulator &device, const std::string &text);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_OTHERCLIENT_H
