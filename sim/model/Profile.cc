#include "sim/model/Profile.h"

#include <stdexcept>

namespace sim {

namespace {

/// One box: 24 ports, two power supplies, three fans, and a single slot, the box itself.
Switch fixed24() {
    Switch device;
    device.identity.wwn = "100000C0DD00A1B2";
    device.identity.principal = device.identity.wwn; // alone in its fabric
    device.identity.maxPorts = 24;
    device.identity.transparentModeFeature = true;
    device.chassis.powerSupplies = {"Good", "Good"};
    device.chassis.fans = {"Good", "Good", "Good"};
    device.chassis.slots.resize(1);
    device.manufacturing.brandName = "FC Switch";
    device.manufacturing.chassisPartNum = "31-24000-01";
    device.manufacturing.chassisSerialNum = "0331A00042";
    device.manufacturing.planarPartNum = "31-24100-03";
    device.manufacturing.productFeatureType = "Standard";
    return device;
}

struct Profile {
    const char *name;
    Switch (*make)();
};

constexpr Profile kProfiles[] = {{kDefaultProfile, fixed24}};

} // namespace

Switch makeSwitch(const std::string &profile) {
    std::string known;
    for (const Profile &candidate : kProfiles) {
        if (profile == candidate.name)
            return candidate.make();
        known += std::string(" ") + candidate.name;
    }
    throw std::invalid_argument("no switch profile '" + profile + "'; there are:" + known);
}

} // namespace sim
