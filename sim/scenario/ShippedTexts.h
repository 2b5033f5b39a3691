/*
 * The texts of the files in scenarios/, which the build puts into the library.
 *
 * A constant, readable from any thread.
 */
#ifndef SIM_SCENARIO_SHIPPEDTEXTS_H
#define SIM_SCENARIO_SHIPPEDTEXTS_H

#include <vector>

namespace sim {

struct ShippedText {
    const char *name; ///< of the file, without its ending
    const char *text;
};

/// In the order of their names.
const std::vector<ShippedText> &shippedTexts();

} // namespace sim

#endif // SIM_SCENARIO_SHIPPEDTEXTS_H
