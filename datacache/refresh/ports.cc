#include <algorithm>

#include "common/numbers.h"
#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"
#include "datacache/translate.h"

namespace {

constexpr unsigned short kMostPorts = 128; // a switch may claim more; no more are read

bool isHere(const SmlEntry &state) {
    return !state.failed() && !state.is("NotInstalled") && !state.is("PoweredOff");
}

/// Format from the identifier byte of the transceiver's identification data. The byte is text of two hexadecimal
/// digits and is read as a decimal number all the same, as clients know it: 0A to 0F count as 0.
unsigned char formatOf(const std::string &identification) {
    switch (numbers::decimal(identification.substr(0, 2).c_str())) {
    case 0:
        return 2;
    case 3:
        return 0;
    default:
        return 1;
    }
}

/// The vendor's OUI stands in bytes 37 to 39, of which this text begins with byte 32.
std::string ouiOf(const std::string &identification) {
    constexpr std::size_t at = 10;
    return identification.size() > at ? identification.substr(at, 6) : std::string();
}

} // namespace

int DataCache::_getPortInfo() {
    cim_log(CIM_LOG_INFO, "DCACHE: _getPortInfo()\n");
    _prevPorts = _ports;
    _refreshPorts = false; // withdrawn: after most failures it takes a notification to ask again

    SmlEntries entries;
    const int maxPortsRow = entries.add("Oper.Switch.MaxPorts");
    if (!entries.get(_hSwitch))
        return refreshFailed("_getPortInfo", 1646);
    _ports.maxPorts = std::min(entries[maxPortsRow].decimal(), kMostPorts);
    if (_ports.maxPorts == 0) {
        _ports = _prevPorts;
        _refreshPorts = true;
        return refreshFailed("_getPortInfo", 1659);
    }
    for (unsigned port = _ports.maxPorts; port < _prevPorts.maxPorts; ++port)
        _ports.present.reset(port);

    for (unsigned port = 0; port < _ports.maxPorts; ++port) {
        if (_localPortRefresh.test(port) && !_readPort(port)) {
            _ports = _prevPorts;
            return refreshFailed("_getPortInfo", 1692);
        }
    }
    if (!_processPort0Wwn())
        return refreshFailed("_getPortInfo", 1796);

    _localPortRefresh.reset();
    _ports.loaded = true;
    return 1;
}

bool DataCache::_readPort(unsigned port) {
    SmlEntries entries;
    const int stateRow = entries.add("Oper.UserPort.0.%u.OperState", port);
    const int adminRow = entries.add("Oper.UserPort.0.%u.AdminState", port);
    const int typeRow = entries.add("Config.UserPort.0.%u.Type", port);
    const int ddmRow = entries.add("Oper.UserPort.0.%u.DDM.Supported", port);
    const int firstDataRow = entries.add("Oper.UserPort.0.%u.SFPData0_31", port);
    const int secondDataRow = entries.add("Oper.UserPort.0.%u.SFPData32_63", port);
    const int serialRow = entries.add("Oper.UserPort.0.%u.SFPSerialNumber", port);
    const int hardwareRow = entries.add("Oper.Switch.Nop"); // carries the hardware type, which all ports share
    if (!entries.get(_hSwitch))
        return false;

    _transceivers[port] = Transceiver();
    _ports.present.set(port, isHere(entries[stateRow]));
    const StatusList status = smlPortStateToCIMOperationalStatus(entries[stateRow].text(), entries[adminRow].text());
    _ports.status[port] = status.empty() ? cim::kUnknown : status.front();
    if (!_ports.present.test(port))
        return true;

    _ports.type[port] = smlTypeToCIMType(entries[typeRow].text());
    _ports.hwType[port] = smlHWTypeToCIMHWType(entries[hardwareRow].text());
    if (entries[ddmRow].is("True")) {
        Transceiver &transceiver = _transceivers[port];
        transceiver.ddm = true;
        transceiver.format = formatOf(entries[firstDataRow].text());
        transceiver.vendorOUI = ouiOf(entries[secondDataRow].text());
        transceiver.vendorSN = _sanitizedMediaVendorSN(entries[serialRow].text());
    }
    return true;
}

bool DataCache::_processPort0Wwn() {
    SmlEntries entries;
    const int wwnRow = entries.add("Oper.UserPort.0.%d.WWN", std::max(_nextUsablePort(0, kPortSlots), 0));
    const int domainRow = entries.add("Oper.Switch.DomainID");
    const int principalRow = entries.add("Oper.Switch.WhoIsPrincipal");
    if (!entries.get(_hSwitch))
        return false;

    _ports.port0Wwn = Wwn(entries[wwnRow].text());
    const auto domain = static_cast<unsigned char>(entries[domainRow].decimal());
    const Wwn fabric(entries[principalRow].text());
    if (_switch.loaded) {
        _enterLocalSwitch(domain);
        if (_ports.loaded)
            _tellPortChanges(fabric);
    }
    return true;
}

void DataCache::_enterLocalSwitch(unsigned char domain) {
    const Element<SwitchCache> *element = _fabric.findSwitchCacheElement(_switch.wwn);
    SwitchCache &local = element != nullptr ? *element->item() : _fabric.addSwitch(_switch.wwn);
    if (element == nullptr) {
        local._port_wwn = _ports.port0Wwn;
        local._local = 1;
    }
    local._domain_id = domain;
    local._num_ports = 0;
    local._stale = 0;
    cim_log(CIM_LOG_INFO, "DCACHE: _processPort0Wwn() update local switch in fabric\n");

    const unsigned firstNumber = _switch.wwn.isCisco() ? 1 : 0;
    for (unsigned port = 0; port < kPortSlots; ++port) {
        if (!_ports.present.test(port))
            continue;
        const unsigned row = local._num_ports;
        if (_ports.type[port] == cim::kDonorPort) {
            cim_log(CIM_LOG_INFO, "DCACHE: _processPort0Wwn() skipping port %u with smlindex %u\n", row, port);
            continue;
        }
        cim_log(CIM_LOG_INFO, "DCACHE: _processPort0Wwn() adding port %u with smlindex %u\n", row, port);
        local.addPort(static_cast<unsigned short>(port + firstNumber), static_cast<unsigned char>(port));
    }
}

void DataCache::_tellPortChanges(const Wwn &fabric) {
    for (unsigned port = 0; port < kPortSlots; ++port) {
        if (!_ports.present.test(port))
            continue;
        const Wwn name = calcPortWorldWideName(_switch.wwn, static_cast<unsigned short>(port));
        const unsigned short now = _ports.status[port];
        const unsigned short before = _prevPorts.status[port];
        if (!_prevPorts.present.test(port)) {
            cim_log(CIM_LOG_INFO, "DCACHE: _processPort0Wwn() send DCEventPortAdd for port %u, %s\n", port,
                    name.tostring().c_str());
            _deliver(DCEventPortAdd(_switch.wwn, name, 0));
        } else if (now != before) {
            cim_log(CIM_LOG_INFO,
                    "DCACHE: _processPort0Wwn() send DCEventPortStatusChange for port %u, %s, fabricWwn=%s, "
                    "currstatus=%u, origstatus=%u\n",
                    port, name.tostring().c_str(), fabric.tostring().c_str(), static_cast<unsigned>(now),
                    static_cast<unsigned>(before));
            _deliver(DCEventPortStatusChange(_switch.wwn, name, fabric, {before}, {now}));
        }
    }
}
