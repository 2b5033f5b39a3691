#include "sim/model/Identity.h"

#include <iterator>

#include "platform/zovlib.h"
#include "sim/model/PortName.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Text = std::string Identity::*;
using Flag = bool Identity::*;

template <Text field> std::string readText(const Switch &device, Index) {
    return device.identity.*field;
}

template <Text field> void writeText(Switch &device, Index, const std::string &value) {
    device.identity.*field = value;
}

template <Flag field> std::string readFlag(const Switch &device, Index) {
    return device.identity.*field ? "True" : "False";
}

template <Flag field> void writeFlag(Switch &device, Index, const std::string &value) {
    device.identity.*field = value == "True";
}

std::string readDomain(const Switch &device, Index) {
    return std::to_string(device.identity.domainId);
}

void writeDomain(Switch &device, Index, const std::string &value) {
    device.identity.domainId = *toNumber(value);
}

template <Text field> constexpr Row text(const char *key, const Rule &rule, int32_t notification) {
    return {key, Access::readOnly, &rule, notification, readText<field>, writeText<field>};
}

/// An attribute by which the fabric knows the switch: no two switches have the same.
constexpr Row knownBy(Row row, bool (*isTaken)(const Switch &, const std::string &)) {
    row.isTaken = isTaken;
    row.follow = updateLinkState;
    return row;
}

bool isPeersName(const Switch &device, const std::string &value) {
    return peerNamed(device.fabric, upperCase(value)) != nullptr;
}

bool isPeersDomain(const Switch &device, const std::string &value) {
    return peerAt(device.fabric, *toNumber(value)) != nullptr;
}

/// Modes and features all announce themselves as a change of features.
template <Flag field> constexpr Row feature(const char *key, Access access) {
    return {key, access, &kBooleanRule, ZOV_EVENT_FEATURE_CHANGE, readFlag<field>, writeFlag<field>};
}

constexpr Row kRows[] = {
    knownBy(text<&Identity::wwn>("Oper.Switch.WWN", kWwnRule, ZOV_EVENT_SWITCH_ATTR_CHANGE), isPeersName),
    text<&Identity::principal>("Oper.Switch.WhoIsPrincipal", kWwnRule, ZOV_EVENT_FABRIC_CHANGE),
    text<&Identity::operState>("Oper.Switch.OperState", kSwitchStateRule, ZOV_EVENT_SWITCH_STATE_CHANGE),
    knownBy(
        {"Oper.Switch.DomainID", Access::readOnly, &kDomainRule, ZOV_EVENT_DOMAINID_CHANGE, readDomain, writeDomain},
        isPeersDomain),
    text<&Identity::hardwareType>("Oper.Switch.Nop", kTextRule, 0),
    feature<&Identity::transparentModeFeature>("Oper.Switch.TransparentModeFeature", Access::readOnly),
    feature<&Identity::fcoeFeature>("Oper.Switch.FCOEFeature", Access::readOnly),
    feature<&Identity::ethernetPassthroughFeature>("Oper.Switch.EthernetPassthroughFeature", Access::readOnly),
    feature<&Identity::enhancedFaultMonitoring>("Oper.Switch.EnhFaultMonFeature", Access::readOnly),
    feature<&Identity::transparentMode>("Config.Switch.TransparentMode", Access::configuration),
};

} // namespace

Rows identityRows() {
    return {kRows, std::size(kRows)};
}

Status faultListStatus(const Switch &device, Index) {
    return device.identity.enhancedFaultMonitoring ? kOk : kNotSupported;
}

bool isTransparent(const Switch &device) {
    return device.identity.transparentModeFeature && device.identity.transparentMode;
}

} // namespace sim
