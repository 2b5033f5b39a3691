/*
 * The rules that the values of attributes follow. Thread-safe: constants and pure functions.
 */
#ifndef SIM_TREE_RULES_H
#define SIM_TREE_RULES_H

#include <optional>
#include <string>
#include <string_view>

#include "sim/tree/Row.h"

namespace sim {

/// A value and its terminator fill 256 bytes at most.
constexpr size_t kLongestValue = 255;

extern const Rule kBooleanRule;     ///< True, False
extern const Rule kSwitchStateRule; ///< Online, Offline, Diagnostics, Downed
extern const Rule kHardwareRule;    ///< Good, Bad, NotInstalled
extern const Rule kPortStateRule;   ///< Online, Offline, Diagnostics, Isolated, Down, ...
extern const Rule kPortAdminRule;   ///< Online, Offline, Diagnostics, Down, Downed
extern const Rule kPortTypeRule;    ///< G, GL, E, F, ...
extern const Rule kBladeStateRule;  ///< Online, Offline, Diagnostics, Pending, Down, ...
extern const Rule kBladeAdminRule;  ///< Online, Offline, ..., PoweredOff, or nothing
extern const Rule kBladeTypeRule;   ///< IO, CPU, PS, FAN, or nothing
extern const Rule kDiagnosisRule;   ///< Good, Compromised, Failed, or nothing
extern const Rule kDdmRule;         ///< True, False, or nothing
extern const Rule kSfpDataRule;     ///< 32 bytes of a transceiver's identification in hexadecimal, or nothing
extern const Rule kSfpSerialRule;   ///< 16 printing characters, or nothing
extern const Rule kWwnRule;         ///< 16 hexadecimal digits
extern const Rule kDomainRule;      ///< 1 to 239
extern const Rule kCountRule;       ///< 0 to 255
extern const Rule kSensorsRule;     ///< 0 to 255, or nothing
extern const Rule kChecksumRule;    ///< up to 8 hexadecimal digits
extern const Rule kIpv4Rule;        ///< an IPv4 address, or nothing
extern const Rule kIpv6Rule;        ///< an IPv6 address, or nothing
extern const Rule kCommunityRule;   ///< 1 to 64 printing characters without blanks
extern const Rule kTextRule;        ///< any text that fits
extern const Rule kDerivedRule;     ///< no value at all: the attribute follows from others

/// The number that a text of decimal digits stands for: no sign, no blank, no leading zero, 9 digits at most.
std::optional<unsigned> toNumber(std::string_view text);

/// Whether a text is made of printing characters only, the blank being one.
bool isPrinting(std::string_view text);

} // namespace sim

#endif // SIM_TREE_RULES_H
