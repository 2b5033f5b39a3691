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
extern const Rule kWwnRule;         ///< 16 hexadecimal digits
extern const Rule kDomainRule;      ///< 1 to 239
extern const Rule kCountRule;       ///< 0 to 255
extern const Rule kTextRule;        ///< any text that fits

/// The number that a text of decimal digits stands for: no sign, no blank, no leading zero, 9 digits at most.
std::optional<unsigned> toNumber(std::string_view text);

} // namespace sim

#endif // SIM_TREE_RULES_H
