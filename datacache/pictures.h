/*
 * What the cache knows of the switch, one plain struct per area of the cache.
 *
 * An area's refresh keeps the picture as it was in a second copy of the same struct, so that it can tell
 * what changed.
 */
#ifndef DATACACHE_PICTURES_H
#define DATACACHE_PICTURES_H

#include <array>
#include <bitset>
#include <string>

#include "datacache/DataCacheEvent.h"
#include "foundation/Wwn.h"

/// Identity, state and modes of the local switch.
struct SwitchPicture {
    bool loaded = false; ///< a refresh has succeeded; never cleared again
    Wwn wwn;
    StatusList status;
    bool transparent = false;
    bool fcoe = false;
    bool ethernetPassthrough = false;
};

/// Supplies and fans a chassis can report on.
constexpr unsigned short kChassisUnits = 16;

/// Power supplies, fans, slots and faults of the chassis. States are the hardware states that
/// DataCache::_smlConvToHardwareStatus gives.
struct ChassisPicture {
    unsigned short maxSlots = 0; ///< 0 also for a chassis with a single slot
    bool loaded = false;         ///< a refresh has succeeded; never cleared again
    unsigned short fanCount = 0;
    std::array<unsigned short, kChassisUnits> fanStatus{};
    unsigned short powerSupplyCount = 0;
    std::array<unsigned short, kChassisUnits> powerSupplyStatus{};
    StatusList faults; ///< empty, or two elements: self-test fault, management-processor fault; 0 for none
};

/// Slots the cache keeps blades of.
constexpr unsigned short kBladeSlots = 32;

/// What sits in the slots of the chassis. Each slot's read clears all tables: what the last slot holds is what stays.
struct BladesPicture {
    bool loaded = false; ///< a refresh of several slots has succeeded; never cleared again
    unsigned short slotCount = 0;
    std::bitset<kBladeSlots> ioBlades;
    std::bitset<kBladeSlots> cpuBlades;
    std::array<unsigned short, kBladeSlots> status{};
    std::array<unsigned short, kBladeSlots> kind{}; ///< BladeKind
    std::array<unsigned short, kBladeSlots> tempSensors{};
    std::array<unsigned short, kBladeSlots> voltageSensors{};
};

/// Local ports the cache keeps, by the index the switch library gives them.
constexpr unsigned kPortSlots = 256;

/// The local switch's user ports.
struct PortsPicture {
    bool loaded = false; ///< a refresh has succeeded; never cleared again
    unsigned short maxPorts = 0;
    std::bitset<kPortSlots> present;
    std::array<unsigned short, kPortSlots> type{};   ///< CIM port type; an absent port keeps its last one
    std::array<unsigned short, kPortSlots> hwType{}; ///< CIM hardware type; likewise
    std::array<unsigned short, kPortSlots> status{}; ///< CIM operational status, the primary value
    Wwn port0Wwn;                                    ///< of the first usable port; the other names are made from it
};

/// What sits in a port's transceiver cage. The defaults stand for "no transceiver data".
struct Transceiver {
    bool ddm = false; ///< offers digital diagnostics; only then is the rest read
    unsigned char format = 2;
    std::string vendorOUI = "000000";
    std::string vendorSN = "0000000000000000";
};

#endif // DATACACHE_PICTURES_H
