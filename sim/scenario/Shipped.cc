#include "sim/scenario/Shipped.h"

#include "sim/scenario/ShippedTexts.h"

namespace sim {

std::vector<std::string> shippedScenarios() {
    std::vector<std::string> names;
    for (const ShippedText &shipped : shippedTexts())
        names.emplace_back(shipped.name);
    return names;
}

std::optional<std::string> shippedScenario(const std::string &name) {
    for (const ShippedText &shipped : shippedTexts())
        if (name == shipped.name)
            return shipped.text;
    return std::nullopt;
}

} // namespace sim
