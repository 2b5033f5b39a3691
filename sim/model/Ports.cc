#include "sim/model/Ports.h"

#include <iterator>
#include <stdexcept>

#include "platform/zovlib.h"
#include "sim/model/PortName.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using PortText = std::string UserPort::*;
using MediaText = std::string Media::*;

constexpr const char *kNoPort = "NotInstalled";

constexpr int32_t kMediaInserted = 76;
constexpr int32_t kMediaRemoved = 77;

unsigned portCount(const Switch &device) {
    return static_cast<unsigned>(device.ports.size());
}

std::string readPortCount(const Switch &device, Index) {
    return std::to_string(portCount(device));
}

void writePortCount(Switch &device, Index, const std::string &value) {
    device.ports.resize(*toNumber(value));
}

template <PortText field> std::string readText(const Switch &device, Index at) {
    return device.ports[at.first].*field;
}

template <PortText field> void writeText(Switch &device, Index at, const std::string &value) {
    device.ports[at.first].*field = value;
}

template <MediaText field> std::string readMedia(const Switch &device, Index at) {
    return device.ports[at.first].media.*field;
}

template <MediaText field> void writeMedia(Switch &device, Index at, const std::string &value) {
    device.ports[at.first].media.*field = value;
}

std::string readWwn(const Switch &device, Index at) {
    return portName(device.identity.wwn, at.first);
}

constexpr Axis kPorts = {[](const Switch &device, unsigned) { return portCount(device); }};

template <PortText field>
constexpr Row text(const char *pattern, Access access, const Rule &rule, int32_t notification) {
    return {pattern, access, &rule, notification, readText<field>, writeText<field>, &kPorts, Source::port};
}

/// Transceivers announce themselves as they come and go.
template <MediaText field> constexpr Row media(const char *pattern, const Rule &rule) {
    return {pattern, Access::readOnly, &rule, 0, readMedia<field>, writeMedia<field>, &kPorts, Source::port};
}

constexpr Row kRows[] = {
    {"Oper.Switch.MaxPorts", Access::readOnly, &kCountRule, 0, readPortCount, writePortCount},
    text<&UserPort::operState>("Oper.UserPort.0.%u.OperState", Access::readOnly, kPortStateRule,
                               ZOV_EVENT_PORT_ATTR_CHANGE),
    text<&UserPort::adminState>("Oper.UserPort.0.%u.AdminState", Access::readOnly, kPortAdminRule,
                                ZOV_EVENT_PORT_ATTR_CHANGE),
    text<&UserPort::type>("Config.UserPort.0.%u.Type", Access::configuration, kPortTypeRule, ZOV_EVENT_PORT_CFG_CHANGE),
    media<&Media::diagnostics>("Oper.UserPort.0.%u.DDM.Supported", kDdmRule),
    media<&Media::bytes0To31>("Oper.UserPort.0.%u.SFPData0_31", kSfpDataRule),
    media<&Media::bytes32To63>("Oper.UserPort.0.%u.SFPData32_63", kSfpDataRule),
    media<&Media::serialNumber>("Oper.UserPort.0.%u.SFPSerialNumber", kSfpSerialRule),
    {"Oper.UserPort.0.%u.WWN", Access::readOnly, &kDerivedRule, 0, readWwn, nullptr, &kPorts, Source::port},
};

UserPort &existingPort(Switch &device, unsigned port) {
    if (port >= portCount(device))
        throw std::invalid_argument("there is no port " + std::to_string(port) + "; the switch has " +
                                    std::to_string(portCount(device)) + ", counted from 0");
    return device.ports[port];
}

bool isPlugged(const UserPort &port) {
    return !port.media.bytes0To31.empty();
}

/// The text says where, in four numbers, and then what.
Announcements mediaChange(int32_t code, unsigned port, const std::string &what) {
    return {{code, {0, 0, static_cast<int32_t>(port)}, "0;0;0;" + std::to_string(port) + what}};
}

} // namespace

Rows portsRows() {
    return {kRows, std::size(kRows)};
}

Announcements plugTransceiver(Switch &device, unsigned port, const Transceiver &transceiver) {
    UserPort &place = existingPort(device, port);
    if (isPlugged(place))
        throw std::invalid_argument("port " + std::to_string(port) + " has a transceiver already");
    place.media = mediaOf(transceiver);
    return mediaChange(kMediaInserted, port,
                       ";1;" + std::to_string(transceiver.vendorOui) + ";" + place.media.serialNumber + ";" +
                           std::to_string(formatOf(transceiver)));
}

Announcements pullTransceiver(Switch &device, unsigned port) {
    UserPort &place = existingPort(device, port);
    if (!isPlugged(place))
        throw std::invalid_argument("port " + std::to_string(port) + " has no transceiver");
    place.media = {};
    return mediaChange(kMediaRemoved, port, "");
}

bool hasPort(const Switch &device, unsigned port) {
    return port < portCount(device) && device.ports[port].operState != kNoPort;
}

void bringPortsOf(Switch &device, unsigned slot) {
    for (UserPort &port : device.ports)
        if (port.slot == slot)
            port.operState = "Offline";
}

void takePortsOf(Switch &device, unsigned slot) {
    for (UserPort &port : device.ports)
        if (port.slot == slot) {
            port.operState = kNoPort;
            port.media = {};
        }
}

} // namespace sim
