/*
 * How fast the clock of a served switch goes, as a person says it. Pure functions.
 */
#ifndef TOOLS_ZOVSIM_SPEED_H
#define TOOLS_ZOVSIM_SPEED_H

#include <optional>
#include <string>

#include "sim/Simulator.h"

namespace zovsim {

struct Speed {
    sim::Pace pace = sim::Pace::running;
    double factor = 1; ///< of a running clock
};

/// "max", or a number above 0 and up to 1000000; none for anything else.
std::optional<Speed> parseSpeed(const std::string &text);

/// "in real time", "10 times as fast as real time", "as fast as possible", "paused".
std::string speedWords(const Speed &speed);

} // namespace zovsim

#endif // TOOLS_ZOVSIM_SPEED_H
