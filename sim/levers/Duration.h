/*
 * Spans of time as people write them, in rules, commands and scenario files: "90 s", "2min". Pure functions.
 */
#ifndef SIM_LEVERS_DURATION_H
#define SIM_LEVERS_DURATION_H

#include <chrono>
#include <optional>
#include <string>

namespace sim {

/// Nothing takes longer, so that times can be added up without a thought.
constexpr std::chrono::hours kLongestDuration{24 * 3660};

/// A whole number and its unit, with blanks between them or not: ms, s, min, h or d; a number alone means seconds. None
/// for anything else, and for more than kLongestDuration.
std::optional<std::chrono::milliseconds> parseDuration(const std::string &text);

/// The same time in the longest unit that it is a whole number of: "90s".
std::string shownDuration(std::chrono::milliseconds time);

} // namespace sim

#endif // SIM_LEVERS_DURATION_H
