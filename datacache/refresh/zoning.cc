#include <cstring>
#include <string>
#include <vector>

#include "common/AccessLock.h"
#include "common/numbers.h"
#include "common/uptime.h"
#include "datacache/DataCache.h"
#include "datacache/SmlEntries.h"
#include "datacache/refresh/failure.h"
#include "foundation/cim_log.h"

namespace {

constexpr std::size_t kNameField = 65; // a name of at most 64 characters and its end

/// How long the switch took, in whole seconds.
class Stopwatch {
public:
    long seconds() const { return uptimeNow() - _start; }

private:
    long _start = uptimeNow();
};

/// The names that the switch library lists, copied: its list is good until the next call only.
std::vector<std::string> namesIn(const char *fields, int32_t count) {
    std::vector<std::string> names;
    for (int32_t i = 0; i < count; ++i) {
        const char *field = fields + static_cast<std::size_t>(i) * kNameField;
        names.emplace_back(field, strnlen(field, kNameField - 1));
    }
    return names;
}

} // namespace

bool DataCache::_getZoningInfo() {
    const AccessLock lock;
    if (isTransparentSwitch()) // it has no zoning of its own
        return true;
    SmlEntries entries;
    const int principalRow = entries.add("Oper.Switch.WhoIsPrincipal");
    const int activeRow = entries.add("Oper.Zoning.ActiveChecksum");
    const int inactiveRow = entries.add("Oper.Zoning.InactiveChecksum");
    const int nameRow = entries.add("Oper.Zoning.ActiveZoneSet");
    if (!entries.get(_hSwitch))
        return refreshFailed("_getZoningInfo", 2512);

    const Wwn principal(entries[principalRow].text());
    _sums.active = numbers::unsignedNumber(entries[activeRow].text(), 16);
    _sums.inactive = numbers::unsignedNumber(entries[inactiveRow].text(), 16);
    _sums.activeName = entries[nameRow].text();
    return _loadActiveZoneset(principal) && _loadInactiveZonesets();
}

bool DataCache::_loadActiveZoneset(const Wwn &principal) {
    if (_sums.activeName == _loadedSums.activeName && _sums.active == _loadedSums.active)
        return true;
    clearActive();
    if (!_sums.activeName.empty()) {
        const Stopwatch watch;
        void *zoneset = nullptr;
        if (zov_fzsGetActiveZoneset(_hSwitch, &zoneset) != 0 || zoneset == nullptr) {
            cim_log(CIM_LOG_INFO, "DCACHE: no active zoneset\n");
            return false;
        }
        cim_log(CIM_LOG_INFO, "DCACHE: Active zoneset added, %lds\n", watch.seconds());
        addZoneset(zoneset, ZONESET_ACTIVE);
    }
    cim_log(CIM_LOG_INFO, "DCACHE: DCEventActiveZonesetChange: activeZoneset=%s previousActiveZoneset=%s\n",
            _sums.activeName.c_str(), _loadedSums.activeName.c_str());
    _deliver(DCEventActiveZonesetChange(principal, _sums.activeName, _loadedSums.activeName));
    _loadedSums.activeName = _sums.activeName;
    _loadedSums.active = _sums.active;
    return true;
}

bool DataCache::_loadInactiveZonesets() {
    if (_sums.inactive == _loadedSums.inactive)
        return true;
    clearInactive();
    clearUber();

    int32_t count = 0;
    char *fields = nullptr;
    if (zov_fzsGetZonesetList(_hSwitch, &count, &fields) != 0 || (fields == nullptr && count > 0)) {
        cim_log(CIM_LOG_INFO, "DCACHE: zov_fzsGetZonesetList failed\n");
        return false;
    }
    for (const std::string &name : namesIn(fields, count)) {
        if (!_loadInactiveZoneset(name))
            return false;
    }

    const Stopwatch watch;
    void *uber = nullptr;
    if (zov_fzsGetAllZonesAndAliases(_hSwitch, "__UberZoneset__", &uber) != 0 || uber == nullptr) {
        cim_log(CIM_LOG_INFO, "DCACHE: zov_fzsGetAllZonesAndAliases failed\n");
        return false;
    }
    const long seconds = watch.seconds();
    addZoneset(uber, ZONESET_UBER);
    cim_log(CIM_LOG_INFO, "DCACHE: Uber zoneset added, %lds\n", seconds);
    cim_log(CIM_LOG_INFO, "DCACHE: Zoning database update complete\n");
    cim_log(CIM_LOG_INFO, "DCACHE: DCEventZoningDBChange\n");
    _deliver(DCEventZoningDBChange(getRootSwitchWorldWideName()));
    _loadedSums.inactive = _sums.inactive;
    return true;
}

bool DataCache::_loadInactiveZoneset(const std::string &name) {
    const Stopwatch watch;
    void *zoneset = nullptr;
    if (zov_fzsGetZoneset(_hSwitch, name.c_str(), &zoneset) != 0 || zoneset == nullptr) {
        cim_log(CIM_LOG_INFO, "DCACHE: zov_fzsGetZoneset failed\n");
        return false;
    }
    const long seconds = watch.seconds();
    _takeInactive(zoneset); // of one that is listed twice the first one stands
    cim_log(CIM_LOG_INFO, "DCACHE: Inactive zoneset '%s' added, %lds\n", name.c_str(), seconds);
    return true;
}

void DataCache::reloadZoning() {
    const AccessLock lock;
    _loadedSums.inactive = _sums.inactive + 1;
    updateZoning();
    _wakeEvalThread();
}
