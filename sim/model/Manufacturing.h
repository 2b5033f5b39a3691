/*
 * What was written into the switch at the factory. Plain data; guarded by its owner.
 */
#ifndef SIM_MODEL_MANUFACTURING_H
#define SIM_MODEL_MANUFACTURING_H

#include <string>

#include "sim/tree/Row.h"

namespace sim {

struct Manufacturing {
    std::string brandName;
    std::string chassisPartNum;
    std::string chassisSerialNum;
    std::string planarPartNum;
    std::string productFeatureType;
};

Rows manufacturingRows();

} // namespace sim

#endif // SIM_MODEL_MANUFACTURING_H
