/*
 * What a switch still knows after it was switched off, as a text: JSON, for people to look at.
 *
 * Pure functions. Thread-safe.
 */
#ifndef SIM_SERVE_MEMORYTEXT_H
#define SIM_SERVE_MEMORYTEXT_H

#include <string>

#include "sim/core/Device.h"

namespace sim {

std::string textOf(const Memory &memory);
/// Throws std::runtime_error saying what is wrong.
Memory memoryFrom(const std::string &text);

} // namespace sim

#endif // SIM_SERVE_MEMORYTEXT_H
