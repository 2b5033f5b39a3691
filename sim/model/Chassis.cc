#include "sim/model/Chassis.h"

#include <iterator>

#include "platform/zovlib.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Units = std::vector<std::string> Chassis::*;

template <Units units> unsigned unitCount(const Switch &device) {
    return static_cast<unsigned>((device.chassis.*units).size());
}

template <Units units> std::string readUnitCount(const Switch &device, Index) {
    return std::to_string(unitCount<units>(device));
}

/// Units that come with a larger chassis are good ones.
template <Units units> void writeUnitCount(Switch &device, Index, const std::string &value) {
    (device.chassis.*units).resize(*toNumber(value), "Good");
}

template <Units units> std::string readUnit(const Switch &device, Index at) {
    return (device.chassis.*units)[at.first];
}

template <Units units> void writeUnit(Switch &device, Index at, const std::string &value) {
    (device.chassis.*units)[at.first] = value;
}

std::string readFaults(const Switch &device, Index) {
    return device.chassis.faultList;
}

void writeFaults(Switch &device, Index, const std::string &value) {
    device.chassis.faultList = value;
}

template <Units units>
constexpr Axis kUnits = {[](const Switch &device, unsigned) { return unitCount<units>(device); }};

template <Units units> constexpr Row countOf(const char *key) {
    return {
        key, Access::readOnly, &kCountRule, ZOV_EVENT_CHASSIS_OPERCHANGE, readUnitCount<units>, writeUnitCount<units>};
}

template <Units units> constexpr Row unit(const char *pattern) {
    return {pattern,         Access::readOnly, &kHardwareRule, ZOV_EVENT_CHASSIS_OPERCHANGE,
            readUnit<units>, writeUnit<units>, &kUnits<units>};
}

constexpr Row kRows[] = {
    countOf<&Chassis::powerSupplies>("Oper.Chassis.0.PowerSupplies"),
    unit<&Chassis::powerSupplies>("Oper.Chassis.0.PowerSupply.%u"),
    countOf<&Chassis::fans>("Oper.Chassis.0.Fans"),
    unit<&Chassis::fans>("Oper.Chassis.0.Fan.%u"),
    {"Oper.Switch.FaultList", Access::readOnly, &kTextRule, ZOV_EVENT_SWITCH_FAULT_CHANGE, readFaults, writeFaults,
     nullptr, Source::none, faultListStatus},
};

} // namespace

Rows chassisRows() {
    return {kRows, std::size(kRows)};
}

} // namespace sim
