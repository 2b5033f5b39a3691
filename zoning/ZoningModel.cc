// The zone sets of the cached database.
#include <algorithm>

#include "common/AccessLock.h"
#include "zoning/ZoningCache.h"
#include "zoning/objects.h"

namespace {

constexpr const char *kActiveKey = "[ActiveZoneSetKey]";
constexpr const char *kUberKey = "[UberZoneSetKey]";

} // namespace

ZoningCache::ZoningCache() = default;

ZoningCache::~ZoningCache() {
    clearZoningCache();
}

// ---- lookups ------------------------------------------------------------------------------------------

void *ZoningCache::getFirstZoneset(_ZoneSetTypes &kind) const {
    const AccessLock lock;
    if (_zonesets.empty())
        return nullptr;
    kind = _zonesets.begin()->second.kind;
    return _zonesets.begin()->second.handle;
}

void *ZoningCache::getNextZoneset(void *handle, _ZoneSetTypes &kind) const {
    const AccessLock lock;
    auto entry = std::find_if(_zonesets.begin(), _zonesets.end(),
                              [handle](const auto &each) { return each.second.handle == handle; });
    if (entry == _zonesets.end() || ++entry == _zonesets.end())
        return nullptr;
    kind = entry->second.kind;
    return entry->second.handle;
}

void *ZoningCache::getZoneset(const char *name, _ZoneSetTypes &kind) const {
    const AccessLock lock;
    const auto entry = name != nullptr ? _zonesets.find(name) : _zonesets.end();
    if (entry == _zonesets.end())
        return nullptr;
    kind = entry->second.kind;
    return entry->second.handle;
}

bool ZoningCache::isActiveZoneset(void *handle) const {
    const AccessLock lock;
    return handle == _activeZoneset;
}

bool ZoningCache::isUberZoneset(void *handle) const {
    const AccessLock lock;
    return handle == _uberZoneset;
}

void *ZoningCache::getActiveZoneset() const {
    const AccessLock lock;
    return _activeZoneset;
}

void *ZoningCache::getUberZoneset() const {
    const AccessLock lock;
    return _uberZoneset;
}

// ---- entering and deleting ----------------------------------------------------------------------------

/// The key of a zone set of this kind; false when its name cannot be read, or there is no such kind.
bool ZoningCache::_keyOf(void *handle, _ZoneSetTypes kind, std::string &key) const {
    switch (kind) {
    case ZONESET_ACTIVE:
        key = kActiveKey;
        return true;
    case ZONESET_UBER:
        key = kUberKey;
        return true;
    case ZONESET_INACTIVE: {
        zoning::Buffer name;
        const bool read = zoning::readName(zov_ZonesetGetName, handle, name);
        key = name.data();
        return read;
    }
    }
    return false;
}

int ZoningCache::addZoneset(void *handle, _ZoneSetTypes kind) {
    const AccessLock lock;
    std::string key;
    if (handle == nullptr || !_keyOf(handle, kind, key))
        return -1;
    // Before anything can go wrong: whoever made it this kind means it.
    if (kind == ZONESET_ACTIVE)
        _activeZoneset = handle;
    if (kind == ZONESET_UBER)
        _uberZoneset = handle;
    if (!_zonesets.insert({key, ZoneSet{handle, kind}}).second)
        return -1;
    updateZoningCounts();
    return 0;
}

int ZoningCache::_takeInactive(void *handle) {
    const int result = addZoneset(handle, ZONESET_INACTIVE);
    const bool entered = std::any_of(_zonesets.begin(), _zonesets.end(),
                                     [handle](const auto &each) { return each.second.handle == handle; });
    if (!entered)
        zov_ZonesetDestroy(handle);
    return result;
}

int ZoningCache::delZoneset(void *handle, _ZoneSetTypes kind) {
    const AccessLock lock;
    std::string key;
    if (!_keyOf(handle, kind, key))
        return -1;
    if (kind == ZONESET_ACTIVE)
        _activeZoneset = nullptr;
    if (kind == ZONESET_UBER)
        _uberZoneset = nullptr;
    const auto entry = _zonesets.find(key);
    void *entered = entry != _zonesets.end() ? entry->second.handle : nullptr;
    if (entry != _zonesets.end())
        _zonesets.erase(entry);
    _destroy(handle);
    if (entered != handle) // a handle that was not entered, because there was this entry already
        _destroy(entered);
    updateZoningCounts();
    return 0;
}

/// Destroys a zone set; nothing that the cache keeps refers to it any more.
void ZoningCache::_destroy(void *handle) {
    if (handle == nullptr)
        return;
    zov_ZonesetDestroy(handle);
    if (_activeZoneset == handle)
        _activeZoneset = nullptr;
    if (_uberZoneset == handle)
        _uberZoneset = nullptr;
    for (auto entry = _zonesets.begin(); entry != _zonesets.end();)
        entry = entry->second.handle == handle ? _zonesets.erase(entry) : std::next(entry);
}

void ZoningCache::clearActive() {
    const AccessLock lock;
    if (_activeZoneset != nullptr)
        delZoneset(_activeZoneset, ZONESET_ACTIVE);
}

void ZoningCache::clearUber() {
    const AccessLock lock;
    if (_uberZoneset != nullptr)
        delZoneset(_uberZoneset, ZONESET_UBER);
}

void ZoningCache::clearInactive() {
    const AccessLock lock;
    const auto isInactive = [](const auto &each) { return each.second.kind == ZONESET_INACTIVE; };
    for (auto entry = _zonesets.begin();
         (entry = std::find_if(_zonesets.begin(), _zonesets.end(), isInactive)) != _zonesets.end();) {
        void *handle = entry->second.handle;
        _zonesets.erase(entry);
        _destroy(handle);
    }
    updateZoningCounts();
}

void ZoningCache::clearZoningCache() {
    const AccessLock lock;
    clearActive();
    clearInactive();
    clearUber();
}
