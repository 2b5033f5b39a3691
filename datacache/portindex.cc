// Ports by name and by index, and what is in their transceiver cages: queries over the pictures.
#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>

#include "common/AccessLock.h"
#include "common/numbers.h"
#include "datacache/DataCache.h"
#include "datacache/translate.h"
#include "foundation/cim_log.h"

namespace {

constexpr unsigned short kNoPort = 65535;
constexpr int kNoLocalPort = -1;

/// The port that an index text names, if any. Text that reads as 0 names port 0 only if it is "0".
std::optional<unsigned> portOf(const std::string &index) {
    const auto port = static_cast<unsigned short>(numbers::unsignedNumber(index.c_str(), 10));
    if (port == 0 && index != "0")
        return std::nullopt;
    return port;
}

/// A port's value; 0 for text that names no port of the table.
unsigned short at(const std::array<unsigned short, kPortSlots> &table, const std::string &index) {
    const unsigned port = portOf(index).value_or(kPortSlots);
    return port < kPortSlots ? table[port] : static_cast<unsigned short>(0);
}

/// The switch's first port has this number in its name.
uint32_t firstPortNumber(const Wwn &theSwitch) {
    return theSwitch.isCisco() ? 1 : 0;
}

/// The local port whose name carries this port number; kNoPort if there can be none.
unsigned short portOfNumber(uint32_t number, const Wwn &theSwitch) {
    // A name that says 0 where counting starts at one is taken for the first port.
    const uint32_t port = number == 0 ? 0 : number - firstPortNumber(theSwitch);
    return port < kPortSlots ? static_cast<unsigned short>(port) : kNoPort;
}

std::string textOf(int port) {
    return port == kNoLocalPort ? std::string() : std::to_string(port);
}

} // namespace

// ---- local ports in rising order ----------------------------------------------------------------------

int DataCache::_nextUsablePort(unsigned from, unsigned end) const {
    for (unsigned port = from; port < end; ++port) {
        if (_ports.present.test(port) && _ports.type[port] != cim::kPassthroughPort)
            return static_cast<int>(port);
    }
    return kNoLocalPort;
}

std::string DataCache::getFirstRootPortIndex() const {
    const AccessLock lock;
    return _ports.port0Wwn == Wwn() ? std::string() : textOf(_nextUsablePort(0, _ports.maxPorts));
}

std::string DataCache::getNextRootPortIndex(const std::string &index) const {
    const AccessLock lock;
    const std::optional<unsigned> port = portOf(index);
    if (_ports.port0Wwn == Wwn() || !port)
        return {};
    return textOf(_nextUsablePort(*port + 1, _ports.maxPorts));
}

unsigned short DataCache::getMaxRootPorts() const {
    const AccessLock lock;
    return _ports.maxPorts;
}

unsigned short DataCache::getPortType(const std::string &index) const {
    const AccessLock lock;
    return at(_ports.type, index);
}

unsigned short DataCache::getPortHWType(const std::string &index) const {
    const AccessLock lock;
    return at(_ports.hwType, index);
}

unsigned short DataCache::getPortStatus(const std::string &index) const {
    const AccessLock lock;
    return at(_ports.status, index);
}

bool DataCache::isPortPresent(const std::string &index) const {
    const AccessLock lock;
    const unsigned port = portOf(index).value_or(kPortSlots);
    return port < kPortSlots && _ports.present.test(port);
}

unsigned char DataCache::getRootSwitchDomainID() const {
    const AccessLock lock;
    const Element<SwitchCache> *element = _fabric.findSwitchCacheElement(_switch.wwn);
    return element != nullptr ? element->item()->_domain_id : 0;
}

// ---- names of ports -----------------------------------------------------------------------------------

Wwn DataCache::calcPortWorldWideName(const Wwn &switchWwn, unsigned short index) const {
    const AccessLock lock;
    if (_ports.port0Wwn == Wwn())
        return {};
    if (switchWwn != _switch.wwn)
        return _remotePortName(switchWwn, index);
    if (index >= kPortSlots)
        throw std::out_of_range("bitset::test");
    if (!_ports.present.test(index))
        return {};
    Wwn name = _ports.port0Wwn;
    name.Set_Port(index + firstPortNumber(switchWwn));
    return name;
}

Wwn DataCache::_remotePortName(const Wwn &switchWwn, unsigned short index) const {
    const Element<SwitchCache> *element = _fabric.findSwitchCacheElement(switchWwn);
    if (element == nullptr)
        return {};
    const SwitchCache &remote = *element->item();
    Wwn name;
    // An index may stand in several rows: the last one counts here.
    for (unsigned row = 0; row < std::min<unsigned>(remote._num_ports, SwitchCache::kMaxPorts); ++row) {
        if (remote._port_index[row] == index) {
            name = remote._port_wwn;
            name.Set_Port(remote._wwn_portno[row]);
        }
    }
    return name;
}

std::string DataCache::calcPortWwn(const std::string &switchWwn, const std::string &index) const {
    const AccessLock lock;
    const uint32_t port = numbers::unsignedNumber(index.c_str(), 10);
    if (port == std::numeric_limits<uint32_t>::max())
        return {};
    const Wwn name = calcPortWorldWideName(Wwn(switchWwn), static_cast<unsigned short>(port));
    return name == Wwn() ? std::string() : name.tostring();
}

unsigned short DataCache::calcPortIndex(const Wwn &switchWwn, const Wwn &portWwn) {
    const AccessLock lock;
    cim_log(CIM_LOG_INFO, "DCACHE: calcPortIndex() port_wwn=%s, switch_wwn=%s, root_switch_wwn=%s\n",
            portWwn.tostring().c_str(), switchWwn.tostring().c_str(), _switch.wwn.tostring().c_str());
    return switchWwn == _switch.wwn ? _localPortIndex(portWwn) : _remotePortIndex(switchWwn, portWwn);
}

unsigned short DataCache::_localPortIndex(const Wwn &portWwn) const {
    uint32_t number = kPortSlots + 1; // stays for a name without a port field
    portWwn.Get_Port(number);
    const unsigned short area = portOfNumber(number, _switch.wwn);
    const unsigned short result = area != kNoPort && _ports.present.test(area) ? area : kNoPort;
    cim_log(CIM_LOG_INFO, "DCACHE: calcPortIndex()local, area=%u, result=%u\n", static_cast<unsigned>(area),
            static_cast<unsigned>(result));
    return result;
}

unsigned short DataCache::_remotePortIndex(const Wwn &switchWwn, const Wwn &portWwn) const {
    unsigned short result = kNoPort;
    if (const Element<SwitchCache> *element = _fabric.findSwitchCacheElement(switchWwn)) {
        const PortCache port = element->item()->getPortByWorldWideName(portWwn);
        if (port.isNull())
            cim_log(CIM_LOG_INFO, "DCACHE: calcPortIndex() remote, port wwn not found on switch\n");
        else
            result = port._port_index;
    }
    cim_log(CIM_LOG_INFO, "DCACHE: calcPortIndex() remote, result=%u\n", static_cast<unsigned>(result));
    return result;
}

std::string DataCache::calcPortIndex(const std::string &switchWwn, const std::string &portWwn) {
    const AccessLock lock;
    const unsigned short port = calcPortIndex(Wwn(switchWwn), Wwn(portWwn));
    return port == kNoPort ? std::string() : std::to_string(port);
}

// ---- transceivers -------------------------------------------------------------------------------------

const Transceiver *DataCache::_transceiverOf(const std::string &index) const {
    const std::optional<unsigned> port = portOf(index);
    if (!port)
        return nullptr;
    if (*port >= kPortSlots)
        throw std::out_of_range("bitset::test");
    return _ports.present.test(*port) && _transceivers[*port].ddm ? &_transceivers[*port] : nullptr;
}

bool DataCache::getTransceiverDDMSupported(const std::string &index) {
    const AccessLock lock;
    return _transceiverOf(index) != nullptr;
}

unsigned char DataCache::getTransceiverFormat(const std::string &index) {
    const AccessLock lock;
    const Transceiver *transceiver = _transceiverOf(index);
    return transceiver != nullptr ? transceiver->format : Transceiver().format;
}

std::string DataCache::getTransceiverVendorOUI(const std::string &index) {
    const AccessLock lock;
    const Transceiver *transceiver = _transceiverOf(index);
    return transceiver != nullptr ? transceiver->vendorOUI : std::string();
}

std::string DataCache::getTransceiverVendorSN(const std::string &index) {
    const AccessLock lock;
    const Transceiver *transceiver = _transceiverOf(index);
    return transceiver != nullptr ? transceiver->vendorSN : std::string();
}

std::string DataCache::getRootPortIndexForTransceiver(const std::string & /*vendorOUI*/,
                                                      const std::string & /*vendorSN*/) {
    // Clients have come to rely on the empty answer: a serial number does not tell one transceiver from another.
    const AccessLock lock;
    return {};
}

std::string DataCache::_sanitizedMediaVendorSN(const char *raw) const {
    constexpr std::size_t longest = 16;
    const AccessLock lock;
    const std::string text = raw != nullptr ? raw : "";
    std::string serial = text.substr(0, longest);
    serial.erase(serial.find_last_not_of(' ') + 1);
    for (std::size_t i = 1; i < serial.size(); ++i) {
        // Within a run of blanks the replaced ones count as blanks too.
        if (serial[i] == ' ' && text[i - 1] == ' ')
            serial[i] = '_';
    }
    return serial;
}
