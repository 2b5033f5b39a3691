#include "sim/model/Profile.h"

#include <stdexcept>

#include "sim/Record.h"
#include "sim/model/FabricProfile.h"

namespace sim {

namespace {

constexpr unsigned kPortsPerBlade = 16;

/// They were bought together: their serial numbers differ in the last digits only.
Transceiver transceiverOf(unsigned port, bool longWave) {
    Transceiver transceiver;
    transceiver.longWave = longWave;
    if (longWave)
        transceiver.partNumber = "FTLF1428P3BNV";
    const std::string number = std::to_string(port + 1);
    transceiver.serialNumber.replace(transceiver.serialNumber.size() - number.size(), number.size(), number);
    return transceiver;
}

/// A switch in use: two thirds of the ports have a device on them, the next is for a link to another switch that is
/// not there yet, then come ports without a device and, at the end, empty cages.
std::vector<UserPort> portsInUse(unsigned count) {
    const unsigned online = count * 2 / 3;
    const unsigned plugged = count * 5 / 6;
    std::vector<UserPort> ports(count);
    for (unsigned port = 0; port < plugged; ++port) {
        const bool isLink = port == online;
        ports[port].media = mediaOf(transceiverOf(port, isLink));
        if (port < online) {
            ports[port].operState = "Online";
            ports[port].type = "F";
        } else if (isLink)
            ports[port].type = "E";
    }
    return ports;
}

/// A switch alone in its fabric, with two power supplies and three fans.
Switch standalone(const char *type, const char *wwn, unsigned ports) {
    Switch device;
    device.identity.wwn = wwn;
    device.identity.principal = device.identity.wwn;
    device.identity.transparentModeFeature = true;
    device.ports = portsInUse(ports);
    device.chassis.powerSupplies = {"Good", "Good"};
    device.chassis.fans = {"Good", "Good", "Good"};
    device.accounts = {"admin", "operator", "monitor"};
    device.manufacturing.brandName = "FC Switch";
    device.manufacturing.chassisSerialNum = "0331A00042";
    device.manufacturing.productFeatureType = "Standard";
    device.settings.type = type;
    device.settings.description =
        device.manufacturing.brandName + ", " + std::to_string(ports) + " Fibre Channel ports";
    return device;
}

/// One box: a single slot, the box itself.
Switch box(const char *wwn, unsigned ports) {
    Switch device = standalone("Fixed-Port Switch", wwn, ports);
    device.manufacturing.chassisPartNum = "31-24000-01";
    device.manufacturing.planarPartNum = "31-24100-03";
    device.slots = {slotWith({"IO", device.manufacturing.planarPartNum, device.manufacturing.chassisSerialNum, 3, 5})};
    return device;
}

Switch fixed24() {
    return box("100000C0DD00A1B2", 24);
}

Switch fixed128() {
    return box("100000C0DD00A128", 128);
}

Switch claims200() {
    return box("100000C0DD00A200", 200);
}

Switch secondNaming() {
    Switch device = box("2000000DEC00A1B2", 24);
    device.settings.ipv6.feature = false;
    return device;
}

constexpr const char *kDirectorBlades[] = {"CPU", "IO", "IO", "IO", "PS", "PS", "FAN", "IO"};

/// The ports are spread over the I/O blades, in the order of the slots.
Switch director8() {
    Switch device = standalone("Director", "100000C0DD00A800", 4 * kPortsPerBlade);
    device.manufacturing.chassisPartNum = "31-80000-01";
    device.manufacturing.planarPartNum = "31-80100-01";
    device.settings.ipv6.isEnabled = true;
    device.settings.oemActiveVersion = "3.1.0";
    size_t nextPort = 0;
    for (const char *type : kDirectorBlades) {
        const auto slot = static_cast<unsigned>(device.slots.size());
        Blade blade;
        blade.type = type;
        blade.partNumber = std::string("31-80016-") + type;
        blade.serialNumber = "0331B0000" + std::to_string(slot);
        device.slots.push_back(slotWith(blade));
        if (blade.type == "IO")
            for (unsigned i = 0; i < kPortsPerBlade; ++i)
                device.ports[nextPort++].slot = slot;
    }
    return device;
}

Switch fabric2() {
    Switch device = box("100000C0DD02A001", 24);
    joinTwin(device);
    return device;
}

template <unsigned switches, unsigned cores> Switch edgeOf() {
    Switch device = box("", 24);
    joinCoreAndEdge(device, switches, cores);
    return device;
}

struct Profile {
    const char *name;
    Switch (*make)();
};

constexpr Profile kProfiles[] = {
    {kDefaultProfile, fixed24},   {"director-8", director8},       {"fixed-128", fixed128},
    {"claims-200", claims200},    {"second-naming", secondNaming}, {"fabric-2", fabric2},
    {"fabric-12", edgeOf<12, 2>}, {"fabric-60", edgeOf<60, 4>},    {"fabric-239", edgeOf<239, 9>},
};

} // namespace

Switch makeSwitch(const std::string &profile) {
    std::string known;
    for (const Profile &candidate : kProfiles) {
        if (profile == candidate.name) {
            Switch device = candidate.make();
            updateLinkState(device);
            logInDevices(device);
            return device;
        }
        known += std::string(" ") + candidate.name;
    }
    throw std::invalid_argument("no switch profile '" + escaped(profile) + "'; there are:" + known);
}

} // namespace sim
