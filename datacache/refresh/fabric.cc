#include <cstdint>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "common/uptime.h"
#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"
#include "foundation/cim_log.h"

namespace {

/// Hops of a record whose switch cannot be reached, and of the local switch's own.
constexpr const char *kOutOfReach = "255";
constexpr const char *kLocal = "0";

/// A name server that needs longer than this to refuse is not asked again.
constexpr long kPatience = 10; // seconds

/// Logs a line about a switch; `format` takes its name, or what the switch library gave for its name.
__attribute__((format(printf, 1, 0))) void logSwitch(const char *format, const std::string &name) {
    cim_log(CIM_LOG_INFO, format, name.c_str()); // NOLINT(clang-diagnostic-format-nonliteral): checked at the callers
}

template <class Action> void forEachSwitch(const FabricCache &fabric, Action action) {
    for (Element<SwitchCache> *element = fabric._switches.get_first(); element != nullptr;
         element = element->get_next()) {
        if (element->item() != nullptr)
            action(*element->item());
    }
}

std::vector<Wwn> namesOf(const FabricCache &fabric) {
    std::vector<Wwn> names;
    forEachSwitch(fabric, [&names](const SwitchCache &item) { names.push_back(item._wwn); });
    return names;
}

} // namespace

bool DataCache::_getFabricInfo() {
    return _load_fabric_info() && _load_switch_domain_list() && _load_mserver_ports();
}

// ---- the fabric's name --------------------------------------------------------------------------------

bool DataCache::_load_fabric_info() {
    cim_log(CIM_LOG_INFO, "DCACHE: _load_fabric_info()\n");
    const bool transparent = isTransparentSwitch(); // such a switch is in no fabric that has a principal

    SmlEntries entries;
    const int principalRow = transparent ? 0 : entries.add("Oper.Switch.WhoIsPrincipal");
    entries.add("Oper.Switch.WWN");
    if (!transparent)
        entries.add("Oper.Switch.DomainID");
    if (!entries.get(_hSwitch))
        return refreshFailed("_load_fabric_info", 2024);

    _origFabricName = _fabric._fabric_name;
    _origFabric = namesOf(_fabric);
    for (const Wwn &name : _origFabric)
        logSwitch("DCACHE: Initializing _origFabric with %s\n", name.tostring());

    if (entries.hasErrors()) { // the same answers once more; the line tells the two places apart in the field
        cim_log(CIM_LOG_CRIT, "DCACHE: _load_fabric_info() response errors\n");
        return refreshFailed("_load_fabric_info", 2042);
    }
    if (!transparent) {
        _fabric._fabric_name = Wwn(entries[principalRow].text());
        _fabric._first_flag = 0;
    }
    _fabric._operating_mode = 0;
    _fabric._values = {};
    return true;
}

// ---- its switches -------------------------------------------------------------------------------------

bool DataCache::_load_switch_domain_list() {
    cim_log(CIM_LOG_INFO, "DCACHE: _load_switch_domain_list()\n");
    if (isTransparentSwitch())
        return true;

    SmlEntries entries;
    const int listRow = entries.add("Oper.Eport.LsdbRecordList.255");
    if (!entries.read(_hSwitch))
        return refreshFailed("_load_switch_domain_list", 2081);
    if (entries[listRow].failed())
        cim_log(CIM_LOG_INFO, "DCACHE: smlerror = %d\n", static_cast<int>(entries[listRow].status()));
    cim_log(CIM_LOG_INFO, "DCACHE: LsdbRecordList: %s\n", entries[listRow].text());

    const std::vector<std::string> domains = _parseSMLList(entries[listRow].text());
    if (domains.empty()) {
        cim_log(CIM_LOG_CRIT, "DCACHE: _load_switch_domain_list - no domains reported\n");
        _fabric._fabric_name = _origFabricName;
        return true;
    }

    forEachSwitch(_fabric, [](SwitchCache &item) {
        if (!item.isLocal())
            item._stale = 1;
    });
    for (const std::string &domain : domains) {
        if (!_validateDomain(domain)) {
            _fabric._fabric_name = _origFabricName; // as if this refresh had not begun; the next one marks anew
            return refreshFailed("_load_switch_domain_list", 2117);
        }
    }
    _sweepStaleSwitches();

    if (_fabricInitialized) {
        cim_log(CIM_LOG_INFO, "DCACHE: _fabricInitialized = true\n");
        _tellMembershipChanges();
    }
    _fabricInitialized = true;
    return true;
}

bool DataCache::_validateDomain(const std::string &domain) {
    logSwitch("DCACHE: Validating domainID %s\n", domain);
    SmlEntries entries;
    const int wwnRow = entries.add("Oper.Eport.LsdbRecord.%s.WWN", domain.c_str());
    const int hopsRow = entries.add("Oper.Eport.LsdbRecord.%s.Hops", domain.c_str());
    if (!entries.get(_hSwitch))
        return false;

    const std::string text = entries[wwnRow].text();
    const Wwn wwn(text);
    if (entries[hopsRow].is(kOutOfReach) || entries[wwnRow].failed()) // the latter has ended the walk already
        logSwitch("DCACHE: _load_switch_domain_list() - skip stale switch, %s\n", text);
    else if (entries[hopsRow].is(kLocal)) // the port refresh enters the local switch
        logSwitch("DCACHE: _load_switch_domain_list() - skip local switch %s\n", text);
    else if (wwn == Wwn())
        logSwitch("DCACHE: _load_switch_domain_list() - skip bad wwn %s\n", text);
    else
        _enterRemoteSwitch(wwn, static_cast<unsigned char>(numbers::decimal(domain.c_str())), text);
    return true;
}

void DataCache::_enterRemoteSwitch(const Wwn &wwn, unsigned char domain, const std::string &text) {
    const Element<SwitchCache> *element = _fabric.findSwitchCacheElement(wwn);
    if (element != nullptr)
        logSwitch("DCACHE: _load_switch_domain_list() - found %s\n", text);
    else
        logSwitch("DCACHE: _load_switch_domain_list() - add %s\n", text);
    SwitchCache &remote = element != nullptr ? *element->item() : _fabric.addSwitch(wwn);
    remote._domain_id = domain;
    remote._num_ports = 0;
    remote._stale = 0;
}

void DataCache::_sweepStaleSwitches() {
    Element<SwitchCache> *next = nullptr;
    for (Element<SwitchCache> *element = _fabric._switches.get_first(); element != nullptr; element = next) {
        next = element->get_next();
        if (element->item() == nullptr || element->item()->_stale == 0)
            continue;
        logSwitch("DCACHE: _load_switch_domain_list() - delete %s\n", element->item()->getWwn());
        _fabric._switches.remove(element);
        delete element;
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): clients were compiled with it so
std::vector<std::string> DataCache::_parseSMLList(std::string list) {
    std::vector<std::string> pieces;
    if (list.empty())
        return pieces;
    std::size_t begin = 0;
    for (std::size_t comma = 0; (comma = list.find(',', begin)) != std::string::npos; begin = comma + 1) {
        if (comma > begin)
            pieces.push_back(list.substr(begin, comma - begin));
    }
    pieces.push_back(list.substr(begin)); // what ends the list counts even when there is nothing
    return pieces;
}

// ---- what the client hears of it ----------------------------------------------------------------------

void DataCache::_tellMembershipChanges() {
    if (_fabric._fabric_name == _origFabricName)
        _tellJoinsAndDepartures(namesOf(_fabric));
    else
        _tellFabricReplaced(namesOf(_fabric));
}

void DataCache::_tellJoinsAndDepartures(const std::vector<Wwn> &switches) {
    const Wwn fabric = _fabric._fabric_name;
    const std::vector<Wwn> former = _origFabric; // a callback that refreshes the fabric takes a new snapshot
    cim_log(CIM_LOG_INFO, "DCACHE: _fabric._fabric_name == _origFabricName\n");
    cim_log(CIM_LOG_INFO, "DCACHE: Checking for new switches in the fabric\n");
    bool joined = false;
    for (const Wwn &name : switches) {
        logSwitch("DCACHE: Checking %s\n", name.tostring());
        if (_fabricContainsWWN(former, name))
            continue;
        _deliver(DCEventSwitchAdd(fabric, name));
        joined = true;
    }
    bool left = false;
    for (const Wwn &name : former) {
        if (_isStillThere(name, switches))
            continue;
        _deliver(DCEventSwitchRemove(fabric, name));
        left = true;
    }
    if (left)
        _deliver(DCEventFabricChange(fabric, false));
    if (joined)
        _deliver(DCEventFabricChange(fabric, true));
}

bool DataCache::_isStillThere(const Wwn &name, const std::vector<Wwn> &switches) const {
    for (const Wwn &current : switches) {
        logSwitch("DCACHE: Evaluating switch %s for deletion\n", current.tostring());
        logSwitch("DCACHE: _origFabric[i] = %s\n", name.tostring());
        if (current == name)
            return true;
    }
    return false;
}

void DataCache::_tellFabricReplaced(const std::vector<Wwn> &switches) {
    const Wwn fabric = _fabric._fabric_name;
    const Wwn former = _origFabricName;
    std::vector<Wwn> known; // those that the client knows from the former fabric; it is not told of the others
    for (const Wwn &name : switches) {
        if (_fabricContainsWWN(_origFabric, name))
            known.push_back(name);
    }
    bool lost = false;
    for (const Wwn &name : _origFabric)
        lost = lost || !_fabricContainsWWN(switches, name);

    cim_log(CIM_LOG_INFO, "DCACHE: _fabric._fabric_name != _origFabricName\n");
    if (lost) {
        cim_log(CIM_LOG_INFO, "DCACHE: Segmentation in original fabric\n");
        _deliver(DCEventFabricChange(former, false));
        cim_log(CIM_LOG_INFO, "DCACHE: Creation of new fabric\n");
        _deliver(DCEventFabricAdd(fabric));
    } else if (known.size() == switches.size()) {
        known = _origFabric; // now: a callback that refreshes the fabric takes a new snapshot
        cim_log(CIM_LOG_INFO, "DCACHE: Delete original fabric\n");
        _deliver(DCEventFabricRemove(former));
        cim_log(CIM_LOG_INFO, "DCACHE: Create new fabric\n");
        _deliver(DCEventFabricAdd(fabric));
    } else {
        cim_log(CIM_LOG_INFO, "DCACHE: Merge fabric\n");
        _deliver(DCEventFabricChange(fabric, true));
        cim_log(CIM_LOG_INFO, "DCACHE: Delete old fabric\n");
        _deliver(DCEventFabricRemove(former));
    }
    for (const Wwn &name : known)
        _deliver(DCEventSwitchAdd(fabric, name));
}

// ---- the ports of the other switches ------------------------------------------------------------------

bool DataCache::_load_mserver_ports() {
    cim_log(CIM_LOG_INFO, "DCACHE: _load_mserver_ports()\n");
    if (_ports.port0Wwn == Wwn() || isTransparentSwitch())
        return true;
    bool answered = true;
    forEachSwitch(_fabric, [this, &answered](SwitchCache &item) { answered = answered && _loadSwitchPorts(item); });
    return answered || refreshFailed("_load_mserver_ports", 2273);
}

/// False when an exchange failed; a refusal concerns this switch alone.
bool DataCache::_loadSwitchPorts(SwitchCache &remote) const {
    if (remote._mserver_timeout != 0) {
        logSwitch("DCACHE: _load_mserver_ports - skip %s due to mserver err timeout\n", remote.getWwn());
        return true;
    }
    if (remote.isLocal()) {
        logSwitch("DCACHE: _load_mserver_ports - skip local %s\n", remote.getWwn());
        return true;
    }
    const auto domain = static_cast<unsigned>(remote._domain_id);
    SmlEntries entries;
    const int countRow = entries.add("Oper.TopologyAll.%u.PortEntries", domain);
    const long before = uptimeNow();
    if (!entries.read(_hSwitch))
        return false;
    if (entries[countRow].failed()) {
        if (uptimeNow() - before > kPatience)
            remote._mserver_timeout = 1;
        else
            ++remote._mserver_errors;
        return true;
    }
    remote._mserver_errors = 0;
    const unsigned count = entries[countRow].decimal();
    if (count == 0)
        return true;
    remote._num_ports = 0;
    for (unsigned number = 0; number < count; ++number) {
        if (!_loadSwitchPort(remote, number))
            return false;
    }
    return true;
}

bool DataCache::_loadSwitchPort(SwitchCache &remote, unsigned number) const {
    constexpr uint32_t noPort = 4096;
    SmlEntries entries;
    const int wwnRow =
        entries.add("Oper.TopologyAll.%u.Entry.%u.PortWwn", static_cast<unsigned>(remote._domain_id), number);
    if (!entries.read(_hSwitch))
        return false;
    if (entries[wwnRow].failed())
        return true;
    const Wwn wwn(entries[wwnRow].text());
    uint32_t port = noPort;
    if (wwn != Wwn())
        wwn.Get_Port(port);
    // The table numbers its ports with a byte; what goes beyond has no place in it.
    if (port >= noPort || number >= SwitchCache::kMaxPorts)
        return true;
    remote._port_wwn = wwn;
    remote.addPort(static_cast<unsigned short>(port), static_cast<unsigned char>(number));
    return true;
}
