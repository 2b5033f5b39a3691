/*
 * Who the switch is, what state it is in and which modes it has. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_IDENTITY_H
#define SIM_MODEL_IDENTITY_H

#include <string>

#include "sim/tree/Row.h"

namespace sim {

struct Identity {
    std::string wwn;
    std::string principal; ///< WWN of the fabric's principal switch
    std::string operState = "Online";
    std::string hardwareType = "GL"; ///< what the no-operation key answers
    unsigned domainId = 1;
    bool transparentModeFeature = false;
    bool transparentMode = false; ///< configured; has an effect only with the feature
    bool fcoeFeature = false;
    bool ethernetPassthroughFeature = false;
    bool enhancedFaultMonitoring = true;
};

Rows identityRows();

/// What clients are answered about fault lists: a switch without enhanced fault monitoring has none to show.
Status faultListStatus(const Switch &device, Index at);

/// Whether the switch is in transparent mode, and so in no fabric.
bool isTransparent(const Switch &device);

} // namespace sim

#endif // SIM_MODEL_IDENTITY_H
