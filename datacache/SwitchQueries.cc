#include "common/AccessLock.h"
#include "datacache/DataCache.h"
#include "datacache/translate.h"

Wwn DataCache::getRootSwitchWorldWideName() const {
    const AccessLock lock;
    return _switch.wwn;
}

std::string DataCache::getRootSwitchWwn() const {
    const AccessLock lock;
    return _switch.wwn.tostring();
}

StatusList DataCache::getRootSwitchStatus() const {
    const AccessLock lock;
    return _switch.status;
}

bool DataCache::isTransparentSwitch() const {
    const AccessLock lock;
    return _switch.transparent;
}

bool DataCache::isFCOESwitch() const {
    const AccessLock lock;
    return _switch.fcoe;
}

bool DataCache::isEthernetPassthroughSwitch() const {
    const AccessLock lock;
    return _switch.ethernetPassthrough;
}

StatusList DataCache::getSwitchFaults() const {
    const AccessLock lock;
    return _chassis.faults;
}

unsigned short DataCache::getRootMaxSlots() const {
    const AccessLock lock;
    return _chassis.maxSlots;
}

unsigned short DataCache::getRootPowerSupplyCount() const {
    const AccessLock lock;
    return _chassis.powerSupplyCount;
}

unsigned short DataCache::getRootFanCount() const {
    const AccessLock lock;
    return _chassis.fanCount;
}

unsigned short DataCache::getRootPowerSupplyStatus(unsigned short index) const {
    const AccessLock lock;
    return index < _chassis.powerSupplyCount ? _chassis.powerSupplyStatus[index] : cim::kUnknownHardware;
}

unsigned short DataCache::getRootFanStatus(unsigned short index) const {
    const AccessLock lock;
    return index < _chassis.fanCount ? _chassis.fanStatus[index] : cim::kUnknownHardware;
}
