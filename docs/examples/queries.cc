// What a provider asks for, area by area.
#include <cstdio>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

namespace {

// [switch]
void showSwitch() {
    const CacheHold cache;
    const StatusList status = cache->getRootSwitchStatus(); // the primary status first; empty until it has been read
    std::printf("switch %s, status %u, domain %u\n", cache->getRootSwitchWwn().c_str(),
                status.empty() ? 0U : unsigned{status.front()}, unsigned{cache->getRootSwitchDomainID()});
    for (const std::string &name : cache->getUserAccounts())
        std::printf("account %s\n", name.c_str());
}
// [/switch]

// [chassis]
void showChassis() {
    const CacheHold cache;
    for (unsigned short i = 0; i < cache->getRootPowerSupplyCount(); ++i)
        std::printf("power supply %d: hardware state %u\n", i + 1, unsigned{cache->getRootPowerSupplyStatus(i)});
    for (const unsigned short fault : cache->getSwitchFaults()) {
        if (fault != 0)
            std::printf("fault %u\n", unsigned{fault});
    }
}
// [/chassis]

// [ports]
void showPorts() {
    const CacheHold cache;
    const Wwn theSwitch = cache->getRootSwitchWorldWideName();
    int shown = 0;
    // Indexes are decimal text; the empty text ends the walk. Absent ports are left out.
    for (std::string index = cache->getFirstRootPortIndex(); !index.empty() && shown < 2;
         index = cache->getNextRootPortIndex(index), ++shown) {
        const auto number = static_cast<unsigned short>(std::stoi(index));
        std::printf("port %s %s: status %u, type %u, transceiver %s\n", index.c_str(),
                    cache->calcPortWorldWideName(theSwitch, number).tostring().c_str(),
                    unsigned{cache->getPortStatus(index)}, unsigned{cache->getPortType(index)},
                    cache->getTransceiverVendorSN(index).c_str());
    }
}
// [/ports]

// [fabric]
void showFabric() {
    const CacheHold cache; // the pointers below are good while it is held
    const FabricCache *fabric = cache->getFabric(1);
    std::printf("fabric %s, %u switches\n", fabric->getFabricWwn().c_str(), unsigned{fabric->getSwitchCount()});
    for (const SwitchCache *item = fabric->getFirstSwitch(); item != nullptr; item = fabric->getNextSwitch(item)) {
        unsigned ports = 0;
        for (PortCache port = item->getFirstPort(); !port.isNull(); port = item->getNextPort(port))
            ++ports;
        std::printf("switch %s, domain %u, %u ports%s\n", item->getWwn().c_str(), unsigned{item->getDomainID()}, ports,
                    item->isLocal() ? ", local" : "");
    }
}
// [/fabric]

void onEvent(DataCacheEvent * /*event*/) {}

void askForEverything() {
    DataCache::init();
    CacheHold()->start(onEvent);
    example::waitUntilSettled();
    showSwitch();
    showChassis();
    showPorts();
    showFabric();
}

constexpr const char *kOutput = R"(
switch 100000C0DD02A001, status 2, domain 1
account admin
account operator
account monitor
power supply 1: hardware state 1
power supply 2: hardware state 1
port 0 200000C0DD02A001: status 2, type 5, transceiver FNS0331A00000001
port 1 200100C0DD02A001: status 2, type 5, transceiver FNS0331A00000002
fabric 100000C0DD02A001, 2 switches
switch 100000C0DD02A001, domain 1, 24 ports, local
switch 100000C0DD02A002, domain 2, 24 ports
)";

} // namespace

int main() {
    return example::run("fabric-2", kOutput, askForEverything);
}
