/*
 * What a switch can read of the transceiver in a port. Pure functions and plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_MEDIA_H
#define SIM_MODEL_MEDIA_H

#include <string>

#include "sim/Simulator.h"

namespace sim {

/// Texts as clients read them. As it is by default, there is no transceiver.
struct Media {
    std::string diagnostics;  ///< True, False
    std::string bytes0To31;   ///< of its identification, in hexadecimal
    std::string bytes32To63;  ///< likewise
    std::string serialNumber; ///< filled up with blanks to 16 characters
};

/// Reads a transceiver. Throws std::invalid_argument for one there cannot be.
Media mediaOf(const Transceiver &transceiver);

/// The number that tells the form of a transceiver: 0 for an SFP, 2 when it does not say, 1 for all others.
int formatOf(const Transceiver &transceiver);

} // namespace sim

#endif // SIM_MODEL_MEDIA_H
