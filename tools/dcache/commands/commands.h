/*
 * What stands behind the nouns of the command line: one file per noun.
 *
 * Each loads the cache and returns what is to be shown, or throws Failure. One call per process.
 */
#ifndef TOOLS_DCACHE_COMMANDS_COMMANDS_H
#define TOOLS_DCACHE_COMMANDS_COMMANDS_H

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/dcache/config/edit.h"
#include "tools/dcache/render.h"
#include "tools/dcache/topology/text.h"

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

/// The fabric and its switches.
/// Keys: fabricWwn (text, null when the switch is in no fabric), switchCount (number), switches (array of objects with
/// domain (number), wwn, local and principal (booleans), portCount (number), managementServer (text: "answers",
/// "failing" or "timed out"; null for the local switch, about which it is not asked), managementServerErrors (number)).
Report showFabric();

/// One switch of the fabric with its ports and the devices that the fabric's name server has at them.
/// Keys: those of an element of showFabric()'s switches, devices (array of texts, the Fibre Channel addresses), ports
/// (array of objects with index (number), wwn, devices (array of texts)). Throws Failure when the digits are the domain
/// ID of no switch.
Report showFabricSwitch(const std::string &digits);

enum class Picture { text, dot, svg };

/// The switches of the fabric and the links between them, drawn; of the other formats only the table has pictures.
/// Keys: fabricWwn (text, null for none), outOfReach (array of numbers: domains that the link-state database names, and
/// that are not in the fabric), switches (array of objects with domain, wwn, portCount, local, principal), links (array
/// of objects with domain, port, neighbourDomain, neighbourPort (numbers; a port that is none a text, null when it is not
/// told), toldByBoth (boolean)), strayLinks (array of objects with domain, port, neighbour (text)): links whose other end
/// is told in another way. Throws Failure when there is no Graphviz for an SVG picture.
std::string showTopology(Picture picture, Lines lines, Format format, bool colour);

/// What the terminal can show, going by the environment's locale.
Lines linesOfLocale();

/// The zoning database, or the active zone set alone.
/// Keys: activeZoneset (text, null when none is active); zonesets (array of objects with name, active (boolean), zones
/// (array of names)); zones (array of objects with name, type ("acl", "soft" or "vpf"), members (array of texts as scripts
/// have them)); aliases (array of objects with name, members); limits (array of objects with what, used and limit
/// (numbers; null when the switch has not told it)). Of the active zone set alone: activeZoneset, zones, aliases.
Report showZoning(bool activeOnly);

/// The database as a script that builds it in an empty one.
std::string dumpZoning();

/// What a script would make of the database, without the switch hearing of it; without a script, what is defined under
/// the name of the active zone set and is not active. Keys: changes (array of objects with change ("added", "removed" or
/// "changed"), object ("alias", "zone" or "zone set"), name, part ("member", "type" or "zone"; empty for the whole
/// object), value).
/// Throws Misuse for a script with errors; Stopped or Failure when an edit is refused.
Report diffZoning(const std::optional<std::string> &script);

struct ZoningRun {
    std::string script;
    std::string holder = "dcache"; ///< of the lock
    bool dryRun = false;
};

/// Carries a script out, and tells of each step on stderr. Keys: edits (number), committed (boolean); after a commit
/// activeZoneset, deviations (as the changes above: from what was committed to what the switch has) and limits; of a dry
/// run changes. Throws as above.
///
/// SIGINT and SIGTERM end it with a Failure when the lock has been given back, and with the whole process, exit code 1,
/// when the switch does not answer within two seconds.
Report runZoning(const ZoningRun &run);

/// What the help says beneath the options of the verbs above: the language of the scripts, the exit codes, examples.
const char *zoningHelp();

/// The switch's settings and its product description, read now; the cache is not loaded for it.
/// Keys: those of the settings (settings.h), each a boolean, number or text as the switch has it, null for one that it
/// does not have or does not tell; productDescription (likewise); snmpReadCommunitySet (boolean, or null) and, only
/// with `secrets`, snmpReadCommunity. Throws Failure when the switch tells none of them.
Report showSettings(bool secrets);

/// The configuration kept on the switch, brought back from there, and edited. Passwords and communities are masked unless
/// `secrets` are to be shown.
/// Keys of a backup: kept (true). Of a restoration: restored (true), changes (array of objects with setting, before and
/// now, of the settings as showSettings() has them). Of an edit: saved (true), changes (array of objects with key, before
/// and now, texts; null is what the switch does not tell; of a secret whether it is set), one for each edit.
///
/// Throws Stopped when another client holds admin mode, or the switch refuses; Failure when nothing of it could be
/// tried. SIGINT and SIGTERM end them as they end runZoning().
Report backUpConfiguration();
Report restoreConfiguration(bool secrets);
Report editConfiguration(const std::vector<ConfigEdit> &edits, bool secrets);

/// Whether the cache can do its work, and why not.
struct Diagnosis {
    bool isHealthy = false;
    Report report;
};

/// Starts the cache and looks at it, for `patience` at most: for the answer of the switch and the first load together.
/// Keys: healthy (boolean), checks (array of objects with check, state ("good", "bad", "unknown" for one that could not
/// be made, "info" for what is not judged) and detail), registrations (array of objects with code, name and result, 0 for
/// a notification that the switch sends).
Diagnosis examine(std::chrono::duration<double> patience);

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDS_COMMANDS_H
