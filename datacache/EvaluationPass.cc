#include <array>
#include <stdexcept>

#include "common/AccessLock.h"
#include "datacache/DataCache.h"
#include "foundation/cim_log.h"

namespace {

/// The refresh routines say in two ways whether they succeeded.
template <auto routine> bool run(DataCache &cache) {
    return static_cast<bool>((cache.*routine)());
}

} // namespace

/// An area of the cache: how it is asked for, how it is refreshed, how that ended, and its name in the log.
struct DataCache::Area {
    DataCacheArea area;
    bool DataCache::*requested;
    bool (*refresh)(DataCache &);
    bool DataCache::*good;
    const char *name;
    bool logsEnd;

    static const std::array<Area, 7> all;
};

// The order of the rows is the order of the refreshes: it decides what one refresh can take from another, and the
// order in which clients hear of changes.
// clang-format off
const std::array<DataCache::Area, 7> DataCache::Area::all{{
    {DataCacheArea::switchInfo, &DataCache::_refreshSwitch, run<&DataCache::_getSwitchInfo>, &DataCache::_switchOK, "switch", false},
    {DataCacheArea::chassis, &DataCache::_refreshChassis, run<&DataCache::_getChassisInfo>, &DataCache::_chassisOK, "chassis", false},
    {DataCacheArea::blades, &DataCache::_refreshBlades, run<&DataCache::_getBladeInfo>, &DataCache::_bladesOK, "blades", false},
    {DataCacheArea::ports, &DataCache::_refreshPorts, run<&DataCache::_getPortInfo>, &DataCache::_portsOK, "ports", false},
    {DataCacheArea::accounts, &DataCache::_refreshAccounts, run<&DataCache::_getAcctInfo>, &DataCache::_accountsOK, "accounts", false},
    {DataCacheArea::fabric, &DataCache::_refreshFabric, run<&DataCache::_getFabricInfo>, &DataCache::_fabricOK, "fabric", false},
    {DataCacheArea::zoning, &DataCache::_refreshZoning, run<&DataCache::_getZoningInfo>, &DataCache::_zoningOK, "zoning", true},
}};
// clang-format on

/// Marks that a pass is running, so that a client's callback cannot start another one inside it.
class DataCache::RunningPass {
public:
    explicit RunningPass(DataCache &cache) : _cache(cache) { _cache._passRunning = true; }
    ~RunningPass() {
        _cache._passRunning = false;
        ++_cache._passCount;
    }
    RunningPass(const RunningPass &) = delete;
    RunningPass &operator=(const RunningPass &) = delete;

private:
    DataCache &_cache;
};

// ---- the pass -----------------------------------------------------------------------------------------

bool DataCache::evaluateCaches() {
    const AccessLock lock;
    if (_passRunning)
        return _cacheReady;
    const RunningPass running(*this);

    cim_log(CIM_LOG_INFO, "DCACHE: evaluateCaches\n");
    try {
        _drainQueue();
        _refreshAreas();
    } catch (const char *message) {
        // Whatever was not reached keeps its request or its place in the queue, and is served by the next pass.
        cim_log(CIM_LOG_CRIT, "DCACHE: Exception: %s\n", message != nullptr ? message : "");
    }

    _cacheReady = _areAllAreasGood();
    if (_cacheReady) {
        _readyPassEnd = std::chrono::steady_clock::now();
        _deliver(DCEventDataCacheUpdateComplete());
    }
    return _cacheReady;
}

void DataCache::_drainQueue() {
    while (!_eventQueue.empty()) {
        zov_event_s *record = _eventQueue.front();
        if (record != nullptr)
            _zovlibNotificationCB(record); // if this throws, the record stays first in the queue
        _eventQueue.pop_front();
        delete record;
    }
}

void DataCache::_refreshAreas() {
    for (const Area &area : Area::all) {
        if (!(this->*area.requested))
            continue;
        cim_log(CIM_LOG_INFO, "DCACHE: Updating %s cache\n", area.name);
        this->*area.good = area.refresh(*this);
        if (area.logsEnd)
            cim_log(CIM_LOG_INFO, "DCACHE: Updating %s cache (Done)\n", area.name);
        if (this->*area.good)
            this->*area.requested = false;
    }
}

bool DataCache::_areAllAreasGood() const {
    bool allGood = true;
    for (const Area &area : Area::all) {
        if (this->*area.good)
            continue;
        cim_log(CIM_LOG_INFO, "DCACHE: _%sOK = false\n", area.name);
        allGood = false;
    }
    return allGood;
}

// ---- what a client can see of it ----------------------------------------------------------------------

bool DataCache::isCacheReady() const {
    const AccessLock lock;
    return _cacheReady;
}

bool DataCache::isAreaGood(DataCacheArea area) const {
    const AccessLock lock;
    for (const Area &row : Area::all) {
        if (row.area == area)
            return this->*row.good;
    }
    return false;
}

bool DataCache::workToDo() const {
    const AccessLock lock;
    for (const Area &area : Area::all) {
        if (this->*area.requested)
            return true;
    }
    return false;
}

unsigned long DataCache::getQueuedNotificationCount() const {
    const AccessLock lock;
    return static_cast<unsigned long>(_eventQueue.size());
}

unsigned long DataCache::getPassCount() const {
    const AccessLock lock;
    return _passCount;
}

long DataCache::getSecondsSinceReadyPass() const {
    const AccessLock lock;
    if (!_readyPassEnd)
        return -1;
    const auto age = std::chrono::steady_clock::now() - *_readyPassEnd;
    return static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(age).count());
}

// ---- requests -----------------------------------------------------------------------------------------

void DataCache::updateAll() {
    const AccessLock lock;
    for (const Area &area : Area::all)
        this->*area.requested = true;
}

void DataCache::updateSwitch() {
    const AccessLock lock;
    _refreshSwitch = true;
}

void DataCache::updateChassis() {
    const AccessLock lock;
    _refreshChassis = true;
}

void DataCache::updateBlades() {
    const AccessLock lock;
    _refreshBlades = true;
}

void DataCache::updatePorts() {
    const AccessLock lock;
    _refreshPorts = true;
}

void DataCache::updateFabric() {
    const AccessLock lock;
    _refreshFabric = true;
}

void DataCache::updateAccounts() {
    const AccessLock lock;
    _refreshAccounts = true;
}

void DataCache::updateZoning() {
    const AccessLock lock;
    _refreshZoning = true;
}

void DataCache::localPortRefreshSet() {
    const AccessLock lock;
    _localPortRefresh.set();
}

void DataCache::localPortRefreshSet(int port) {
    const AccessLock lock;
    if (port < 0 || port >= static_cast<int>(_localPortRefresh.size()))
        throw std::out_of_range("bitset::set");
    _localPortRefresh.set(static_cast<std::size_t>(port));
}
