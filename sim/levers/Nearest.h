/*
 * Words compared, for those who mistype them. Pure functions.
 */
#ifndef SIM_LEVERS_NEAREST_H
#define SIM_LEVERS_NEAREST_H

#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Whether two words are the same but for capital letters.
bool isSameWord(std::string_view left, std::string_view right);

/// The candidate that comes closest to what was typed: it begins with it, or differs by few letters, swapped ones
/// counting as one. Empty when none is near.
std::string nearest(std::string_view typed, const std::vector<std::string> &candidates);

/// The question whether that was meant: "; did you mean 'port'?"; nothing when none is near.
std::string didYouMean(std::string_view typed, const std::vector<std::string> &candidates);

} // namespace sim

#endif // SIM_LEVERS_NEAREST_H
