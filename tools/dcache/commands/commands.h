/*
 * What stands behind the nouns of the command line: one file per noun.
 *
 * Each loads the cache and returns what is to be shown, or throws Failure. One call per process.
 */
#ifndef TOOLS_DCACHE_COMMANDS_COMMANDS_H
#define TOOLS_DCACHE_COMMANDS_COMMANDS_H

#include "tools/dcache/render.h"

namespace dcache {

/// Identity, status and modes of the switch.
/// Keys: wwn (text), operationalStatus (array of numbers, as the CIM property has them), state (text), faults (array
/// of texts), transparent, fcoe, ethernetPassthrough (booleans).
Report showSwitch();

/// The chassis with its power supplies and fans.
/// Keys: slots (number), faults (array of texts), powerSupplies and fans (arrays of objects with number, from 1,
/// and state: "good", "bad", "not installed" or "unknown").
Report showChassis();

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDS_COMMANDS_H
