#include "datacache/FabricCache.h"

#include <limits>
#include <memory>

#include "common/numbers.h"
#include "foundation/cim_log.h"

const char *booltostr(bool value) {
    return value ? "true" : "false";
}

// ---- PortCache ----------------------------------------------------------------------------------------

bool PortCache::isNull() const {
    return _wwn == Wwn();
}

std::string PortCache::getWwn() const {
    return isNull() ? std::string() : _wwn.tostring();
}

// ---- SwitchCache --------------------------------------------------------------------------------------

PortCache SwitchCache::portInRow(unsigned row) const {
    Wwn name = _port_wwn;
    name.Set_Port(_wwn_portno[row]);
    return {name, _port_index[row]};
}

const unsigned short *SwitchCache::findPortNumber(uint32_t number) const {
    for (unsigned row = 0; row < rows(); ++row) {
        if (_wwn_portno[row] == number)
            return &_wwn_portno[row];
    }
    return nullptr;
}

void SwitchCache::addPort(unsigned short wwnPortNumber, unsigned char portIndex) {
    if (_num_ports >= kMaxPorts)
        return;
    _wwn_portno[_num_ports] = wwnPortNumber;
    _port_index[_num_ports] = portIndex;
    ++_num_ports;
}

PortCache SwitchCache::getFirstPort() const {
    return _port_wwn == Wwn() || rows() == 0 ? PortCache() : portInRow(0);
}

PortCache SwitchCache::getNextPort(const PortCache &current) const {
    if (_port_wwn == Wwn())
        return {};
    for (unsigned row = 0; row + 1 < rows(); ++row) {
        if (_port_index[row] == current._port_index)
            return portInRow(row + 1);
    }
    return {};
}

PortCache SwitchCache::getPortByLSDBPortIndex(const std::string &text) const {
    constexpr uint32_t largestIndex = 255;
    if (_port_wwn == Wwn())
        return {};
    uint32_t number = numbers::unsignedNumber(text.c_str(), 0);
    if (number > largestIndex) {
        if (!_wwn.isCisco() || isLocal()) {
            cim_log(CIM_LOG_INFO, "DCACHE: SwitchCache::getPortByLSDBPortIndex( %s ) port=%u is out of range\n",
                    text.c_str(), static_cast<unsigned>(number));
            return {};
        }
        // Cisco counts in slots of 256 ports where the port field has room for 64.
        number = ((number >> 2U) & 0xFC0U) + (number & 63U);
    }
    if (_wwn.isCisco())
        ++number; // and its ports from one
    cim_log(CIM_LOG_INFO, "DCACHE: SwitchCache::getPortByLSDBPortIndex( %s ) searching for _wwn_portno 0x%3.3x\n",
            text.c_str(), static_cast<unsigned>(number));
    const unsigned short *found = findPortNumber(number);
    return found != nullptr ? portInRow(static_cast<unsigned>(found - _wwn_portno.data())) : PortCache();
}

PortCache SwitchCache::getPortByWorldWideName(const Wwn &wwn) const {
    constexpr uint32_t noPortField = 4096;
    if (_port_wwn == Wwn() || !_port_wwn.Same_Base(wwn))
        return {};
    uint32_t number = noPortField;
    wwn.Get_Port(number);
    if (number >= noPortField)
        return {};
    const unsigned short *found = findPortNumber(number);
    return found != nullptr ? PortCache(wwn, _port_index[static_cast<std::size_t>(found - _wwn_portno.data())])
                            : PortCache();
}

PortCache SwitchCache::getPortByWwn(const std::string &text) const {
    return getPortByWorldWideName(Wwn(text));
}

// ---- FabricCache --------------------------------------------------------------------------------------

namespace {

SwitchCache *itemOf(const Element<SwitchCache> *element) {
    return element != nullptr ? element->item() : nullptr;
}

/// The first element whose switch meets the condition; null if there is none.
template <class Condition>
Element<SwitchCache> *findFirst(const List<Element<SwitchCache>> &switches, Condition condition) {
    Element<SwitchCache> *element = switches.get_first();
    while (element != nullptr && (element->item() == nullptr || !condition(*element->item())))
        element = element->get_next();
    return element;
}

} // namespace

FabricCache::~FabricCache() {
    _switches.purge_list(true);
}

SwitchCache *FabricCache::getFirstSwitch() const {
    return itemOf(_switches.get_first());
}

SwitchCache *FabricCache::getNextSwitch(const SwitchCache *current) const {
    const Element<SwitchCache> *element =
        findFirst(_switches, [current](const SwitchCache &item) { return &item == current; });
    return element != nullptr ? itemOf(element->get_next()) : nullptr;
}

SwitchCache *FabricCache::getSwitchByDomainID(const std::string &text) const {
    const uint32_t number = numbers::unsignedNumber(text.c_str(), 10);
    if (number == std::numeric_limits<uint32_t>::max())
        return nullptr;
    return itemOf(findSwitchCacheElement(static_cast<unsigned char>(number)));
}

SwitchCache *FabricCache::getSwitchByWwn(const std::string &text) const {
    return itemOf(findSwitchCacheElement(Wwn(text)));
}

SwitchCache *FabricCache::getSwitchByPortWwn(const std::string &text) const {
    return itemOf(findFirst(_switches, [&text](const SwitchCache &item) { return !item.getPortByWwn(text).isNull(); }));
}

SwitchCache &FabricCache::addSwitch(const Wwn &wwn) {
    auto added = std::make_unique<SwitchCache>();
    added->_wwn = wwn;
    Element<SwitchCache> *element = Element<SwitchCache>::alloc(added.get(), true);
    _switches.add(element);
    return *added.release(); // the element owns it now
}

Element<SwitchCache> *FabricCache::findSwitchCacheElement(unsigned char domainId) const {
    Element<SwitchCache> *element =
        findFirst(_switches, [domainId](const SwitchCache &item) { return item._domain_id == domainId; });
    if (element == nullptr)
        cim_log(CIM_LOG_INFO, "DCACHE: findSwitchCacheElement()domain %x not found from %d elements\n",
                static_cast<unsigned>(domainId), static_cast<int>(_switches.size()));
    return element;
}

Element<SwitchCache> *FabricCache::findSwitchCacheElement(const Wwn &wwn) const {
    return findFirst(_switches, [&wwn](const SwitchCache &item) { return item._wwn == wwn; });
}
