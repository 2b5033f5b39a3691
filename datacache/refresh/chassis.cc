#include <algorithm>

#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/translate.h"
#include "foundation/cim_log.h"

namespace {

/// The rows of the batch that reads what the first batch counted: supplies, fans, the switch's fault list and one
/// per slot, in this order.
struct ChassisRows {
    int supplies = 0;
    int fans = 0;
    int switchFaults = 0;
    int slotFaults = 0;
    int slots = 0;
};

/// A fault that the switch names in a fault list. A slot reports access faults under more names than the switch does.
struct FaultNames {
    unsigned short marker;
    std::array<const char *, 3> inSwitchList;
    const char *inSlotList;
};

constexpr std::array<FaultNames, 2> kFaults{{
    {cim::kSelfTestFault, {"FW_POST_FAIL", nullptr, nullptr}, "FW_POST_FAIL"},
    {cim::kProcessorFault, {"HW_MP_ACCESS_CPU0", "HW_MP_ACCESS_CPU1", "HW_MP_DATA_MISMATCH"}, "HW_MP_ACCESS"},
}};

/// Fills the second batch. Without fault monitoring the no-operation key keeps the places of the fault lists.
ChassisRows addUnits(SmlEntries &entries, const ChassisPicture &chassis, bool faultMonitoring) {
    ChassisRows rows;
    for (int i = 0; i < chassis.powerSupplyCount; ++i)
        entries.add("Oper.Chassis.0.PowerSupply.%d", i);
    rows.fans = chassis.powerSupplyCount;
    for (int i = 0; i < chassis.fanCount; ++i)
        entries.add("Oper.Chassis.0.Fan.%d", i);
    rows.switchFaults = entries.add("%s", faultMonitoring ? "Oper.Switch.FaultList" : "Oper.Switch.Nop");
    rows.slotFaults = rows.switchFaults + 1;
    // A switch may claim any number of slots; what goes into the batch is what fits.
    rows.slots = std::min<int>(chassis.maxSlots, entries.room());
    for (int slot = 0; slot < rows.slots; ++slot) {
        if (faultMonitoring)
            entries.add("Oper.Blade.%d.FaultList", slot);
        else
            entries.add("Oper.Switch.Nop");
    }
    return rows;
}

bool isReported(const FaultNames &fault, const SmlEntries &entries, const ChassisRows &rows) {
    for (const char *name : fault.inSwitchList) {
        if (name != nullptr && entries[rows.switchFaults].contains(name))
            return true;
    }
    for (int slot = 0; slot < rows.slots; ++slot) {
        if (entries[rows.slotFaults + slot].contains(fault.inSlotList))
            return true;
    }
    return false;
}

/// One element per known fault, 0 for one that is not there.
StatusList faultsOf(const SmlEntries &entries, const ChassisRows &rows) {
    StatusList faults;
    for (const FaultNames &fault : kFaults)
        faults.push_back(isReported(fault, entries, rows) ? fault.marker : cim::kNoFault);
    return faults;
}

} // namespace

int DataCache::_getChassisInfo() {
    cim_log(CIM_LOG_INFO, "DCACHE: _getChassisInfo()\n");

    bool faultMonitoring = false;
    {
        SmlEntries entries;
        const int suppliesRow = entries.add("Oper.Chassis.0.PowerSupplies");
        const int fansRow = entries.add("Oper.Chassis.0.Fans");
        const int slotsRow = entries.add("Oper.Chassis.0.MaxSlots");
        const int monitoringRow = entries.add("Oper.Switch.EnhFaultMonFeature");
        if (!entries.get(_hSwitch))
            return 0;

        _prevChassis = _chassis;
        _chassis.powerSupplyCount = std::min(entries[suppliesRow].decimal(), kChassisUnits);
        _chassis.fanCount = std::min(entries[fansRow].decimal(), kChassisUnits);
        const unsigned short slots = entries[slotsRow].decimal();
        _chassis.maxSlots = slots == 1 ? 0 : slots; // a single slot is the switch itself: it has no list of its own
        faultMonitoring = entries[monitoringRow].is("True");
    }

    SmlEntries entries;
    const ChassisRows rows = addUnits(entries, _chassis, faultMonitoring);
    if (!entries.get(_hSwitch))
        return 0; // the counts stay as read, the states as they were

    for (unsigned short i = 0; i < _chassis.powerSupplyCount; ++i)
        _chassis.powerSupplyStatus[i] = _smlConvToHardwareStatus(entries[rows.supplies + i].text());
    for (unsigned short i = 0; i < _chassis.fanCount; ++i)
        _chassis.fanStatus[i] = _smlConvToHardwareStatus(entries[rows.fans + i].text());
    _chassis.faults = faultsOf(entries, rows);

    if (_chassis.loaded)
        _tellPowerSupplyChanges();
    _chassis.loaded = true;
    return 1;
}

void DataCache::_tellPowerSupplyChanges() {
    const auto *first = _chassis.powerSupplyStatus.begin();
    const auto good = static_cast<unsigned short>(std::count(first, first + _chassis.powerSupplyCount, cim::kGood));
    for (unsigned short i = 0; i < _chassis.powerSupplyCount; ++i) {
        const unsigned short now = _chassis.powerSupplyStatus[i];
        const unsigned short before = _prevChassis.powerSupplyStatus[i];
        const auto number = static_cast<unsigned short>(i + 1);
        if (now == before)
            continue;
        if (now == cim::kNotInstalled) {
            _deliver(DCEventPowerSupplyRemove(_switch.wwn, number, good));
        } else if (before == cim::kNotInstalled) {
            _deliver(DCEventPowerSupplyAdd(_switch.wwn, number));
        } else if (now == cim::kBad) {
            _deliver(DCEventPowerSupplyFail(_switch.wwn, number, good));
        }
    }
}
