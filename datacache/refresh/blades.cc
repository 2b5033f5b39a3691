#include <algorithm>
#include <array>
#include <stdexcept>

#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"

namespace {

enum BladeKind : unsigned short { kNoBlade = 0, kFanBlade = 1, kPowerSupplyBlade = 2, kCpuBlade = 3, kIoBlade = 4 };

/// A kind of blade: how the switch calls it, and the set of slots that it is entered in, if any.
struct BladeType {
    const char *text;
    BladeKind kind;
    std::bitset<kBladeSlots> BladesPicture::*slots;
};

constexpr std::array<BladeType, 4> kBladeTypes{{
    {"IO", kIoBlade, &BladesPicture::ioBlades},
    {"CPU", kCpuBlade, &BladesPicture::cpuBlades},
    {"PS", kPowerSupplyBlade, nullptr},
    {"FAN", kFanBlade, nullptr},
}};

const BladeType *findBladeType(const SmlEntry &text) {
    for (const BladeType &type : kBladeTypes) {
        if (text.is(type.text))
            return &type;
    }
    return nullptr;
}

bool isHere(const SmlEntry &state, const SmlEntry &partNumber, const SmlEntry &serialNumber) {
    return !state.is("NotInstalled") && !state.is("PoweredOff") && !state.is("") && !partNumber.is("") &&
           !serialNumber.is("");
}

void clearTables(BladesPicture &blades) {
    const BladesPicture empty;
    blades.ioBlades = empty.ioBlades;
    blades.cpuBlades = empty.cpuBlades;
    blades.status = empty.status;
    blades.kind = empty.kind;
    blades.tempSensors = empty.tempSensors;
    blades.voltageSensors = empty.voltageSensors;
}

/// Writes a slot's value; a slot beyond the tables is written nowhere.
void put(std::array<unsigned short, kBladeSlots> &table, unsigned slot, unsigned short value) {
    if (slot < table.size())
        table[slot] = value;
}

/// Sensor counts are optional: a slot that cannot tell them keeps none.
void putSensors(BladesPicture &blades, unsigned slot, const SmlEntry &temp, const SmlEntry &voltage) {
    if (!temp.failed())
        put(blades.tempSensors, slot, temp.decimal());
    if (!voltage.failed())
        put(blades.voltageSensors, slot, voltage.decimal());
}

} // namespace

int DataCache::_getBladeInfo() {
    cim_log(CIM_LOG_INFO, "DCACHE: _getBladeInfo()\n");
    _prevBlades = _blades;

    SmlEntries entries;
    const int slotsRow = entries.add("Oper.Chassis.0.MaxSlots");
    if (!entries.get(_hSwitch))
        return refreshFailed("_getBladeInfo", 1444);
    _blades.slotCount = entries[slotsRow].decimal();

    if (_blades.slotCount == 1)
        return _readSingleSlot();
    BladeCounts counts;
    for (unsigned slot = 0; slot < _blades.slotCount; ++slot) {
        if (!_readSlot(slot, counts))
            return refreshFailed("_getBladeInfo", 1494);
    }
    if (_blades.loaded)
        _tellBladeChanges(counts);
    _blades.loaded = true;
    return 1;
}

/// A switch with one slot has no blades, only sensors.
int DataCache::_readSingleSlot() {
    SmlEntries entries;
    entries.add("Oper.Switch.Nop");
    const int tempRow = entries.add("Oper.Blade.0.TempSensors");
    const int voltageRow = entries.add("Oper.Blade.0.VoltageSensors");
    clearTables(_blades);
    if (!entries.read(_hSwitch))
        return refreshFailed("_getBladeInfo", 1464);
    putSensors(_blades, 0, entries[tempRow], entries[voltageRow]);
    return 1;
}

bool DataCache::_readSlot(unsigned slot, BladeCounts &counts) {
    SmlEntries entries;
    const int stateRow = entries.add("Oper.Blade.%u.OperState", slot);
    const int partRow = entries.add("Oper.Blade.%u.PlanarPartNum", slot);
    const int serialRow = entries.add("Oper.Blade.%u.BoardSerialNum", slot);
    const int typeRow = entries.add("Oper.Blade.%u.Type", slot);
    const int adminRow = entries.add("Oper.Blade.%u.AdminState", slot);
    const int healthRow = entries.add("Oper.Blade.%u.DiagStatus", slot);
    const int tempRow = entries.add("Oper.Blade.%u.TempSensors", slot);
    const int voltageRow = entries.add("Oper.Blade.%u.VoltageSensors", slot);
    if (!entries.get(_hSwitch))
        return false;

    clearTables(_blades); // for every slot: see BladesPicture
    if (isHere(entries[stateRow], entries[partRow], entries[serialRow])) {
        if (const BladeType *type = findBladeType(entries[typeRow])) {
            if (type->slots != nullptr) {
                if (slot >= kBladeSlots)
                    throw std::out_of_range("bitset::set");
                (_blades.*type->slots).set(slot);
            }
            put(_blades.kind, slot, type->kind);
            if (type->kind == kPowerSupplyBlade)
                ++counts.powerSupplies;
            if (type->kind == kFanBlade)
                ++counts.fans;
        }
        putSensors(_blades, slot, entries[tempRow], entries[voltageRow]);
    }
    const StatusList status = smlIOBladeStateToCIMOperationalStatus(entries[stateRow].text(), entries[adminRow].text(),
                                                                    entries[healthRow].text());
    put(_blades.status, slot, status.front());
    return true;
}

void DataCache::_tellBladeChanges(const BladeCounts &counts) {
    const unsigned slots = std::min(_blades.slotCount, kBladeSlots);
    for (unsigned index = 0; index < slots; ++index) {
        if (_blades.kind[index] == _prevBlades.kind[index])
            continue;
        const auto slot = static_cast<unsigned short>(index);
        _tellBladeAdded(_blades.kind[index], slot);
        _tellBladeRemoved(_prevBlades.kind[index], slot, counts);
    }
}

void DataCache::_tellBladeAdded(unsigned short kind, unsigned short slot) {
    const Wwn &theSwitch = _switch.wwn;
    switch (kind) {
    case kFanBlade:
        return _deliver(DCEventFanAdd(theSwitch, slot));
    case kPowerSupplyBlade:
        return _deliver(DCEventPowerSupplyAdd(theSwitch, slot));
    case kCpuBlade:
        return _deliver(DCEventCPUAdd(theSwitch, slot));
    case kIoBlade:
        return _deliver(DCEventBladeAdd(theSwitch, slot));
    default:
        return;
    }
}

void DataCache::_tellBladeRemoved(unsigned short kind, unsigned short slot, const BladeCounts &counts) {
    const Wwn &theSwitch = _switch.wwn;
    switch (kind) {
    case kFanBlade:
        return _deliver(DCEventFanRemove(theSwitch, slot, counts.fans));
    case kPowerSupplyBlade:
        return _deliver(DCEventPowerSupplyRemove(theSwitch, slot, counts.powerSupplies));
    case kCpuBlade:
        return _deliver(DCEventCPURemove(theSwitch, slot));
    case kIoBlade:
        return _deliver(DCEventBladeRemove(theSwitch, slot));
    default:
        return;
    }
}
