/*
 * Names and numbers of the cache in the words of a SAN operator.
 *
 * Pure functions, callable from any thread. None fails: a number without a word is shown as the number.
 */
#ifndef TOOLS_DCACHE_WORDS_H
#define TOOLS_DCACHE_WORDS_H

#include <string>
#include <string_view>
#include <vector>

#include "datacache/DataCache.h"

namespace dcache {

/// "10:00:08:00:88:A0:12:34".
std::string colonForm(const Wwn &name);

/// Text that came from the switch, made safe for a terminal and for one line: every byte that is not printable ASCII
/// becomes "\x1B" or the like.
std::string printable(std::string_view text);

/// The same between double quotes.
std::string inQuotes(std::string_view text);

/// "good", "bad", "not installed", "unknown": the state of a power supply or fan.
const char *hardwareStateWord(unsigned short state);

/// "OK", "Stopped", "self-test failed": one value of an operational status list.
std::string statusWord(unsigned short status);

/// What a port that is there is doing: "online", "offline", "diagnostics", "error", "unknown". These are the port states
/// of the switch, not CIM's words for the numbers.
std::string portStateWord(unsigned short status);
/// The index that the cache gives when there is no such port.
constexpr unsigned short kNoPort = 65535;
/// The state of a port that is not there.
constexpr const char *kAbsent = "absent";
/// Every state a port can be in, kAbsent last.
std::vector<std::string> portStateWords();

/// "F", "GL", "Donor": the type of a port, "unknown" when the switch has told none. Likewise its hardware type, and the
/// format of its transceiver: "SFP", "other", "unknown".
std::string portTypeWord(unsigned short type);
std::string hardwareTypeWord(unsigned short type);
std::string transceiverFormatWord(unsigned short format);

/// "I/O", "CPU", "power supply", "fan", "none": what a slot holds.
std::string bladeKindWord(unsigned short kind);

/// An operational status list of a switch, taken apart. The faults follow the state in the list; a zero among them
/// means "no such fault", and a list with the state alone was made before the faults had been read.
struct StatusWords {
    std::string state;  ///< "OK", "OK, Predictive Failure"; "not read yet" for an empty list
    std::string faults; ///< "no faults", "self-test failed", "faults not read"
};
StatusWords statusWords(const StatusList &list);

/// What changed from one list to another: "OK -> Stopped", "OK, no faults -> Error, self-test failed". Faults are left
/// out when they stayed the same.
std::string statusChange(const StatusList &before, const StatusList &now);

/// "switch", "chassis", ... : what an area of the cache is called.
const char *areaWord(DataCacheArea area);

} // namespace dcache

#endif // TOOLS_DCACHE_WORDS_H
