/*
 * Values as a disturbed line or a confused program hands them out. Pure functions.
 */
#ifndef SIM_LEVERS_GARBLING_H
#define SIM_LEVERS_GARBLING_H

#include <cstdint>
#include <string>

namespace sim {

/// Another text than this one, which the seed decides: cut, longer by a few bytes or with changed ones, none of them
/// null. It has at most `limit` bytes, which are not less than the value's and not 0.
std::string garbled(const std::string &value, uint64_t seed, size_t limit);

} // namespace sim

#endif // SIM_LEVERS_GARBLING_H
