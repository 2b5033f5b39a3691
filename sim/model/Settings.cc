#include "sim/model/Settings.h"

#include <iterator>

#include "platform/zovlib.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Text = std::string Settings::*;
using Flag = bool Settings::*;

std::string shown(bool value) {
    return value ? "True" : "False";
}

template <Text field> std::string readText(const Switch &device, Index) {
    return device.settings.*field;
}

template <Text field> void writeText(Switch &device, Index, const std::string &value) {
    device.settings.*field = value;
}

template <Flag field> std::string readFlag(const Switch &device, Index) {
    return shown(device.settings.*field);
}

template <Flag field> void writeFlag(Switch &device, Index, const std::string &value) {
    device.settings.*field = value == "True";
}

template <Flag field> constexpr Row service(const char *key) {
    return {
        key, Access::configuration, &kBooleanRule, ZOV_EVENT_SERVICES_CFG_CHANGE, readFlag<field>, writeFlag<field>};
}

template <Text field> constexpr Row snmp(const char *key, const Rule &rule) {
    return {key, Access::configuration, &rule, ZOV_EVENT_SNMP_CFG_CHANGE, readText<field>, writeText<field>};
}

/// What the switch is, which changes with its firmware only; nobody is told.
template <Text field> constexpr Row product(const char *key, Status (*status)(const Switch &, Index) = nullptr) {
    return {key, Access::readOnly, &kTextRule, 0, readText<field>, writeText<field>, nullptr, Source::none, status};
}

Status oemVersionStatus(const Switch &device, Index) {
    return device.settings.oemActiveVersion.empty() ? kNotSupported : kOk;
}

/// What there is to know about one IP version, but for its state.
struct IpKind {
    IpVersion Settings::*version;
    const char *addressKey;
    const Rule *addressRule;
    int32_t addressNotification;
};

constexpr IpKind kIpv4 = {&Settings::ipv4, "Oper.System.Eth.0.IPv4Address", &kIpv4Rule, ZOV_EVENT_IP_ADDRESS_CHANGE};
constexpr IpKind kIpv6 = {&Settings::ipv6, "Oper.System.Eth.0.IPv6Address.0", &kIpv6Rule,
                          ZOV_EVENT_IPV6_ADDRESS_CHANGE};

template <const IpKind &kind> const IpVersion &versionOf(const Switch &device) {
    return device.settings.*kind.version;
}

template <const IpKind &kind> IpVersion &versionOf(Switch &device) {
    return device.settings.*kind.version;
}

template <const IpKind &kind> Status ipStatus(const Switch &device, Index) {
    return versionOf<kind>(device).feature ? kOk : kNotSupported;
}

template <const IpKind &kind> std::string readAddress(const Switch &device, Index) {
    const IpVersion &version = versionOf<kind>(device);
    return version.feature && version.isEnabled ? version.address : "";
}

template <const IpKind &kind> void writeAddress(Switch &device, Index, const std::string &value) {
    versionOf<kind>(device).address = value;
}

template <const IpKind &kind> std::string storedAddress(const Switch &device, Index) {
    return versionOf<kind>(device).address;
}

template <const IpKind &kind> constexpr Row address() {
    Row row = {kind.addressKey,   Access::readOnly,   kind.addressRule, kind.addressNotification,
               readAddress<kind>, writeAddress<kind>, nullptr,          Source::none,
               ipStatus<kind>};
    row.stored = storedAddress<kind>;
    return row;
}

/// One of the two flags that both have to be up for an address.
using IpFlag = bool IpVersion::*;

template <const IpKind &kind, IpFlag flag> std::string readIpFlag(const Switch &device, Index) {
    return shown(versionOf<kind>(device).*flag);
}

template <const IpKind &kind, IpFlag flag> void writeIpFlag(Switch &device, Index, const std::string &value) {
    versionOf<kind>(device).*flag = value == "True";
}

/// The address comes and goes with the flag, unless the other flag keeps it away.
template <const IpKind &kind, IpFlag other> Announcements followAddress(Switch &device) {
    const IpVersion &version = versionOf<kind>(device);
    if (!(version.*other) || version.address.empty())
        return {};
    return {{kind.addressNotification,
             {0, 0, 0},
             std::string(kind.addressKey) + " is now " + readAddress<kind>(device, {})}};
}

template <const IpKind &kind> constexpr Row feature(const char *key) {
    Row row = {key,
               Access::readOnly,
               &kBooleanRule,
               ZOV_EVENT_FEATURE_CHANGE,
               readIpFlag<kind, &IpVersion::feature>,
               writeIpFlag<kind, &IpVersion::feature>};
    row.follow = followAddress<kind, &IpVersion::isEnabled>;
    return row;
}

template <const IpKind &kind> constexpr Row enable(const char *key) {
    Row row = {key,
               Access::configuration,
               &kBooleanRule,
               ZOV_EVENT_NETWORK_CFG_CHANGE,
               readIpFlag<kind, &IpVersion::isEnabled>,
               writeIpFlag<kind, &IpVersion::isEnabled>};
    row.status = ipStatus<kind>;
    row.follow = followAddress<kind, &IpVersion::feature>;
    return row;
}

constexpr Row kRows[] = {
    service<&Settings::telnet>("Config.Services.TelnetEnable"),
    service<&Settings::ssh>("Config.Services.SSHEnable"),
    service<&Settings::embeddedGui>("Config.Services.EmbeddedGUIEnable"),
    service<&Settings::ssl>("Config.Services.SSLEnable"),
    service<&Settings::snmp>("Config.Services.SNMPEnable"),
    snmp<&Settings::readCommunity>("Config.Snmp.ReadComm", kCommunityRule),
    snmp<&Settings::description>("Config.Snmp.SysDescr", kTextRule),
    feature<kIpv4>("Oper.Switch.IPv4Feature"),
    enable<kIpv4>("Config.System.IPv4Enable"),
    address<kIpv4>(),
    feature<kIpv6>("Oper.Switch.IPv6Feature"),
    enable<kIpv6>("Config.System.IPv6Enable"),
    address<kIpv6>(),
    product<&Settings::activeVersion>("Oper.Switch.ActiveVer"),
    product<&Settings::oemActiveVersion>("Oper.Switch.OemActiveVer", oemVersionStatus),
    product<&Settings::type>("Oper.Switch.Type"),
};

} // namespace

Rows settingsRows() {
    return {kRows, std::size(kRows)};
}

} // namespace sim
