/*
 * What the cache knows of the switch, one plain struct per area of the cache.
 *
 * An area's refresh keeps the picture as it was in a second copy of the same struct, so that it can tell
 * what changed.
 */
#ifndef DATACACHE_PICTURES_H
#define DATACACHE_PICTURES_H

#include <array>

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

#endif // DATACACHE_PICTURES_H
