#include "sim/model/Blades.h"

#include <iterator>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/Record.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Text = std::string Slot::*;

constexpr const char *kEmptySlot = "NotInstalled";

unsigned slotCount(const Switch &device) {
    return static_cast<unsigned>(device.slots.size());
}

std::string readSlotCount(const Switch &device, Index) {
    return std::to_string(slotCount(device));
}

/// Slots that come with a larger chassis are empty.
void writeSlotCount(Switch &device, Index, const std::string &value) {
    device.slots.resize(*toNumber(value));
}

template <Text field> std::string readText(const Switch &device, Index at) {
    return device.slots[at.first].*field;
}

template <Text field> void writeText(Switch &device, Index at, const std::string &value) {
    device.slots[at.first].*field = value;
}

constexpr Axis kSlots = {[](const Switch &device, unsigned) { return slotCount(device); }};

template <Text field>
constexpr Row text(const char *pattern, const Rule &rule, int32_t notification,
                   Status (*status)(const Switch &, Index) = nullptr) {
    return {pattern,          Access::readOnly, &rule,        notification, readText<field>,
            writeText<field>, &kSlots,          Source::slot, status};
}

constexpr Row kRows[] = {
    {"Oper.Chassis.0.MaxSlots", Access::readOnly, &kCountRule, ZOV_EVENT_CHASSIS_OPERCHANGE, readSlotCount,
     writeSlotCount},
    text<&Slot::operState>("Oper.Blade.%u.OperState", kBladeStateRule, ZOV_EVENT_BLADE_STATE_CHANGE),
    text<&Slot::adminState>("Oper.Blade.%u.AdminState", kBladeAdminRule, ZOV_EVENT_BLADE_STATE_CHANGE),
    text<&Slot::diagStatus>("Oper.Blade.%u.DiagStatus", kDiagnosisRule, ZOV_EVENT_BLADE_STATE_CHANGE),
    text<&Slot::type>("Oper.Blade.%u.Type", kBladeTypeRule, 0),
    text<&Slot::planarPartNum>("Oper.Blade.%u.PlanarPartNum", kTextRule, 0),
    text<&Slot::boardSerialNum>("Oper.Blade.%u.BoardSerialNum", kTextRule, 0),
    text<&Slot::tempSensors>("Oper.Blade.%u.TempSensors", kSensorsRule, 0),
    text<&Slot::voltageSensors>("Oper.Blade.%u.VoltageSensors", kSensorsRule, 0),
    text<&Slot::faultList>("Oper.Blade.%u.FaultList", kTextRule, ZOV_EVENT_SWITCH_FAULT_CHANGE, faultListStatus),
};

Slot &existingSlot(Switch &device, unsigned slot) {
    if (slot >= slotCount(device))
        throw std::invalid_argument("there is no slot " + std::to_string(slot) + "; the switch has " +
                                    std::to_string(slotCount(device)) + ", counted from 0");
    return device.slots[slot];
}

void check(const Rule &rule, const char *what, const std::string &value) {
    if (!rule.accepts(value))
        throw std::invalid_argument(std::string("the ") + what + " of a blade cannot be '" + escaped(value) +
                                    "'; allowed: " + rule.allowed);
}

Announcements changeOf(int32_t code, unsigned slot, const std::string &text) {
    return {{code, {0, static_cast<int32_t>(slot), 0}, text + " slot " + std::to_string(slot)}};
}

} // namespace

Rows bladesRows() {
    return {kRows, std::size(kRows)};
}

Slot slotWith(const Blade &blade) {
    if (blade.type.empty())
        throw std::invalid_argument("a blade is IO, CPU, PS or FAN");
    Slot slot = {"Online",
                 "Online",
                 "Good",
                 blade.type,
                 blade.partNumber,
                 blade.serialNumber,
                 std::to_string(blade.temperatureSensors),
                 std::to_string(blade.voltageSensors),
                 ""};
    check(kBladeTypeRule, "type", slot.type);
    check(kTextRule, "part number", slot.planarPartNum);
    check(kTextRule, "serial number", slot.boardSerialNum);
    check(kSensorsRule, "number of sensors", slot.tempSensors);
    check(kSensorsRule, "number of sensors", slot.voltageSensors);
    return slot;
}

Announcements insertBlade(Switch &device, unsigned slot, const Blade &blade) {
    Slot &place = existingSlot(device, slot);
    if (place.operState != kEmptySlot)
        throw std::invalid_argument("slot " + std::to_string(slot) + " is occupied");
    place = slotWith(blade);
    if (blade.type == "IO")
        bringPortsOf(device, slot);
    return changeOf(ZOV_EVENT_BLADE_INSERTED, slot, blade.type + " blade inserted into");
}

Announcements removeBlade(Switch &device, unsigned slot) {
    Slot &place = existingSlot(device, slot);
    if (place.operState == kEmptySlot)
        throw std::invalid_argument("slot " + std::to_string(slot) + " is empty");
    const std::string type = place.type;
    place = {};
    takePortsOf(device, slot);
    return changeOf(ZOV_EVENT_BLADE_REMOVED, slot, type + " blade removed from");
}

} // namespace sim
