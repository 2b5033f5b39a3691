/*
 * What stands behind the nouns of the command line: one file per noun.
 *
 * Each loads the cache and returns what is to be shown, or throws Failure. One call per process.
 */
#ifndef TOOLS_DCACHE_COMMANDS_COMMANDS_H
#define TOOLS_DCACHE_COMMANDS_COMMANDS_H

#include <optional>
#include <string>

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

/// The slots and their blades. The cache keeps the slot that it read last, the others are not known.
/// Keys: slots (number); knownSlot (number, null when no slot is); temperatureSensors and voltageSensors (numbers, of a
/// switch that is one box; null for others); blades (array of objects with slot, kind, operationalStatus (array of
/// numbers), state, temperatureSensors and voltageSensors; null is what is not known, and all of a slot whose kind is
/// "none").
Report showBlades();

/// Which ports to show: those that are there, or all, or those in one state, which then decides alone.
struct PortFilter {
    bool all = false;
    std::optional<std::string> state = {}; ///< one of portStateWords()
};

/// The ports of the switch.
/// Keys: ports (array of objects with index (number), wwn, operationalStatus (array of a number), state, type (text, null
/// for an absent port), cimType (number), hardwareType (likewise), cimHardwareType (number), transceiverFormat,
/// vendorOui and vendorSerial (texts, null without diagnostics), diagnostics (boolean)).
Report showPorts(const PortFilter &filter);

/// One port. Keys: those of an element of showPorts(). Throws Failure when the digits name no port of the switch.
Report showPort(const std::string &digits);

/// The user accounts, in the switch's order. Keys: accounts (array of objects with name).
Report showAccounts();

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDS_COMMANDS_H
