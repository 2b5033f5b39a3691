#include <stdexcept>

#include "common/AccessLock.h"
#include "datacache/DataCache.h"
#include "foundation/cim_log.h"

namespace {

constexpr unsigned short kNoSlot = 65535;

/// A slot's value; 0 for a slot beyond the table.
unsigned short at(const std::array<unsigned short, kBladeSlots> &table, unsigned short slot) {
    return slot < table.size() ? table[slot] : static_cast<unsigned short>(0);
}

} // namespace

unsigned short DataCache::getRootSlotCount() const {
    const AccessLock lock;
    return _blades.slotCount;
}

unsigned short DataCache::getFirstRootIOBladeIndex() const {
    const AccessLock lock;
    for (unsigned short slot = 0; slot < kBladeSlots; ++slot) {
        if (_blades.ioBlades.test(slot))
            return slot;
    }
    return kNoSlot;
}

unsigned short DataCache::getNextRootIOBladeIndex(const unsigned short &index) const {
    const AccessLock lock;
    for (unsigned slot = index + 1U; slot < _chassis.maxSlots; ++slot) {
        if (slot >= kBladeSlots)
            throw std::out_of_range("bitset::test");
        if (_blades.ioBlades.test(slot)) {
            cim_log(CIM_LOG_INFO, "DCACHE: getNextRootIOBladeIndex( %d ) returns %d\n", static_cast<int>(index),
                    static_cast<int>(slot));
            return static_cast<unsigned short>(slot);
        }
    }
    return kNoSlot;
}

unsigned short DataCache::getRootBladeKind(unsigned short slot) const {
    const AccessLock lock;
    return at(_blades.kind, slot);
}

unsigned short DataCache::getRootBladeStatus(unsigned short slot) const {
    const AccessLock lock;
    return at(_blades.status, slot);
}

unsigned short DataCache::getRootTemperatureSensorCount(const unsigned short &slot) const {
    const AccessLock lock;
    return at(_blades.tempSensors, slot);
}

unsigned short DataCache::getRootVoltageSensorCount(const unsigned short &slot) const {
    const AccessLock lock;
    return at(_blades.voltageSensors, slot);
}

std::vector<std::string> DataCache::getUserAccounts() const {
    const AccessLock lock;
    return _users;
}
