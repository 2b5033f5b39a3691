#include "sim/model/Manufacturing.h"

#include <iterator>

#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Text = std::string Manufacturing::*;

template <Text field> std::string readText(const Switch &device, Index) {
    return device.manufacturing.*field;
}

template <Text field> void writeText(Switch &device, Index, const std::string &value) {
    device.manufacturing.*field = value;
}

/// Stands among the configuration keys, but only the factory writes it, and nobody is told.
template <Text field> constexpr Row factoryText(const char *key) {
    return {key, Access::readOnly, &kTextRule, 0, readText<field>, writeText<field>};
}

constexpr Row kRows[] = {
    factoryText<&Manufacturing::brandName>("Config.Mfg.BrandName"),
    factoryText<&Manufacturing::chassisPartNum>("Config.Mfg.ChassisPartNum"),
    factoryText<&Manufacturing::chassisSerialNum>("Config.Mfg.ChassisSerialNum"),
    factoryText<&Manufacturing::planarPartNum>("Config.Mfg.PlanarPartNum"),
    factoryText<&Manufacturing::productFeatureType>("Config.Mfg.ProductFeatureType"),
};

} // namespace

Rows manufacturingRows() {
    return {kRows, std::size(kRows)};
}

} // namespace sim
