/*
 * The commands about zoning: the fabric's lock, and the edit under it. Constants and pure functions of what they are
 * given.
 */
#ifndef SIM_SESSION_ZONINGCOMMANDS_H
#define SIM_SESSION_ZONINGCOMMANDS_H

#include <cstddef>

#include "sim/session/Commands.h"

namespace sim {

struct CommandRows {
    const Command *first;
    size_t count;

    const Command *begin() const { return first; }
    const Command *end() const { return first + count; }
};

CommandRows zoningCommands();

} // namespace sim

#endif // SIM_SESSION_ZONINGCOMMANDS_H
