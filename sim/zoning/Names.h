/*
 * Names of zone sets, zones and aliases. Pure functions.
 */
#ifndef SIM_ZONING_NAMES_H
#define SIM_ZONING_NAMES_H

#include <cstddef>
#include <optional>
#include <string>

namespace sim {

constexpr size_t kLongestName = 64;
constexpr size_t kNameField = kLongestName + 1; ///< what a client keeps for a name

/// What a client passed as a name; none for a null pointer and for a text that is too long.
std::optional<std::string> nameFrom(const char *text);

/// The rule for names that are given anew: a letter, then letters, digits, '$', '-', '^' and '_'.
bool isValidName(const std::string &name);

/// Writes a name where a client keeps 65 bytes for it.
void putName(char *destination, const std::string &name);

} // namespace sim

#endif // SIM_ZONING_NAMES_H
