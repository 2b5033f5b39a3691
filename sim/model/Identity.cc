#include "sim/model/Identity.h"

#include <iterator>

#include "platform/zovlib.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Text = std::string Identity::*;
using Flag = bool Identity::*;
using Number = unsigned Identity::*;

template <Text field> std::string readText(const Switch &device, unsigned) {
    return device.identity.*field;
}

template <Text field> void writeText(Switch &device, unsigned, const std::string &value) {
    device.identity.*field = value;
}

template <Flag field> std::string readFlag(const Switch &device, unsigned) {
    return device.identity.*field ? "True" : "False";
}

template <Flag field> void writeFlag(Switch &device, unsigned, const std::string &value) {
    device.identity.*field = value == "True";
}

template <Number field> std::string readNumber(const Switch &device, unsigned) {
    return std::to_string(device.identity.*field);
}

template <Number field> void writeNumber(Switch &device, unsigned, const std::string &value) {
    device.identity.*field = *toNumber(value);
}

template <Text field> constexpr Row text(const char *key, const Rule &rule, int32_t notification) {
    return {key, Access::readOnly, &rule, notification, readText<field>, writeText<field>};
}

template <Number field> constexpr Row number(const char *key, const Rule &rule, int32_t notification) {
    return {key, Access::readOnly, &rule, notification, readNumber<field>, writeNumber<field>};
}

/// Modes and features all announce themselves as a change of features.
template <Flag field> constexpr Row feature(const char *key, Access access) {
    return {key, access, &kBooleanRule, ZOV_EVENT_FEATURE_CHANGE, readFlag<field>, writeFlag<field>};
}

constexpr Row kRows[] = {
    text<&Identity::wwn>("Oper.Switch.WWN", kWwnRule, ZOV_EVENT_SWITCH_ATTR_CHANGE),
    text<&Identity::principal>("Oper.Switch.WhoIsPrincipal", kWwnRule, ZOV_EVENT_FABRIC_CHANGE),
    text<&Identity::operState>("Oper.Switch.OperState", kSwitchStateRule, ZOV_EVENT_SWITCH_STATE_CHANGE),
    number<&Identity::domainId>("Oper.Switch.DomainID", kDomainRule, ZOV_EVENT_DOMAINID_CHANGE),
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

Status faultListStatus(const Switch &device, unsigned) {
    return device.identity.enhancedFaultMonitoring ? kOk : kNotSupported;
}

} // namespace sim
