/*
 * A simulated switch that is there until the process ends, for tests that leave a cache at work with it.
 */
#ifndef TESTS_TOOLS_LASTINGSWITCH_H
#define TESTS_TOOLS_LASTINGSWITCH_H

#include "sim/Simulator.h"

namespace support {

/// The same switch each time; never destroyed, and still no leak, for it stays known.
inline sim::Simulator &lastingSwitch() {
    static sim::Simulator *const theSwitch = sim::create().release();
    return *theSwitch;
}

} // namespace support

#endif // TESTS_TOOLS_LASTINGSWITCH_H
