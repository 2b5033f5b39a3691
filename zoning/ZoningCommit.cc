// The fabric lock, and the commit of the cached database under it.
#include "common/AccessLock.h"
#include "common/uptime.h"
#include "foundation/MERO_Except.h"
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "zoning/ZoningCache.h"
#include "zoning/objects.h"

namespace {

constexpr const char *kSourceName = "ZoningCache.cc";
constexpr long long kLockInterval = 90; // seconds
constexpr uint32_t kLockCommands = 2;
constexpr uint32_t kCommitCommands = 30; // at first; a batch grows

constexpr const char *kTakeAdmin = "Cmd.Switch.ReqAdmin";
constexpr const char *kReleaseAdmin = "Cmd.Switch.RelAdmin";
constexpr const char *kLockFabric = "Cmd.Zoning.FabricLock.77";
constexpr const char *kUnlockFabric = "Cmd.Zoning.FabricUnlock.77";

bool addCommand(SmlMsgGroup *group, const char *command) {
    return zov_smlAddMsgGroupV(group, "%s", command) == 0;
}

/// Sends a batch. Its statuses are what happened to be in memory: a switch library that leaves one alone means success.
bool send(SmlMsgGroup *group) {
    for (int32_t i = 0; i < group->count; ++i)
        group->messages[i].status = 0;
    return zov_smlSetMsgGroup(group) == 0;
}

/// The numbers tell the places apart in the field, so they stay as they are whatever happens to the source.
[[noreturn]] void inconsistent(int line) {
    throw MERO_Except(kSourceName, "replaceZoningDB", line, EXCEPT_CRIT, "Internal consistency error");
}

/// A name that the batch cannot do without.
template <class Call> zoning::Buffer nameOf(Call call, void *object, int line) {
    zoning::Buffer name;
    if (!zoning::readName(call, object, name))
        inconsistent(line);
    return name;
}

zoning::Buffer textOf(void *member) {
    zoning::Buffer text{};
    ZoneMemberToString(text.data(), member);
    return text;
}

bool addAlias(SmlMsgGroup *batch, void *alias) {
    const zoning::Buffer name = nameOf(zov_ZoneAliasGetName, alias, 905);
    if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.Alias.%s.Create", name.data()) != 0)
        return false;
    const int members = zov_ZoneAliasGetMemberCount(alias);
    for (int i = 0; i < members; ++i) {
        if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.Alias.%s.AddZoneMember.%s", name.data(),
                                textOf(zov_ZoneAliasListMembers(alias, i)).data()) != 0)
            return false;
    }
    return true;
}

bool addZone(SmlMsgGroup *batch, void *zone) {
    const zoning::Buffer name = nameOf(zov_ZoneGetName, zone, 930);
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID;
    if (zov_ZoneGetType(zone, &type) != 0)
        inconsistent(933);
    if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.Zone.%s.Create", name.data()) != 0 ||
        zov_smlAddMsgGroupV(batch, "Cmd.Zoning.Zone.%s.ZoneType.%s", name.data(), zov_smlCnvFromZOVZoneType(type)) != 0)
        return false;
    const int members = zov_ZoneGetMemberCount(zone);
    for (int i = 0; i < members; ++i) {
        if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.Zone.%s.AddZoneMember.%s", name.data(),
                                textOf(zov_ZoneListMembers(zone, i)).data()) != 0)
            return false;
    }
    return true;
}

bool addZonesetCommands(SmlMsgGroup *batch, void *zoneset) {
    const zoning::Buffer name = nameOf(zov_ZonesetGetName, zoneset, 955);
    if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.ZoneSet.%s.Create", name.data()) != 0)
        return false;
    const int zones = zov_ZonesetGetZoneCount(zoneset);
    for (int i = 0; i < zones; ++i) {
        void *zone = zov_ZonesetListZones(zoneset, i);
        if (zone == nullptr)
            inconsistent(964);
        const zoning::Buffer zoneName = nameOf(zov_ZoneGetName, zone, 967);
        if (zov_smlAddMsgGroupV(batch, "Cmd.Zoning.ZoneSet.%s.AddZone.%s", name.data(), zoneName.data()) != 0)
            return false;
    }
    return true;
}

void logException(const MERO_Except &exception) {
    if (exception.kind == EXCEPT_CRIT)
        cim_log(CIM_LOG_CRIT, "Exception[CRIT]:%s:%s[%d] %s\n", exception.file, exception.function, exception.line,
                exception.message);
    else
        cim_log(CIM_LOG_INFO, "Exception[INFO]:%s:%s[%d] %s\n", exception.file, exception.function, exception.line,
                exception.message);
}

} // namespace

// ---- the lock -----------------------------------------------------------------------------------------

bool ZoningCache::ZoningLock(const char *id) {
    const AccessLock lock;
    SmlMsgGroup *group = id != nullptr ? zov_smlAllocMsgGroup(kLockCommands) : nullptr;
    if (group == nullptr)
        return false;
    _lockTime = uptimeNow(); // from the request on, whenever the answer comes
    addCommand(group, kTakeAdmin);
    addCommand(group, kLockFabric);
    const bool taken = send(group);
    zov_smlFreeMsgGroup(group);
    _lockHeld = taken;
    _lockId = taken ? id : "";
    if (!taken)
        ZoningUnlock(); // whatever of it the switch did grant
    return taken;
}

bool ZoningCache::ZoningUnlock() {
    const AccessLock lock;
    // This group is never freed. That is known, small, and left as it is.
    SmlMsgGroup *group = zov_smlAllocMsgGroup(kLockCommands);
    if (group == nullptr)
        return false;
    addCommand(group, kUnlockFabric);
    addCommand(group, kReleaseAdmin);
    const bool released = send(group);
    _lockId.clear();
    _lockHeld = false;
    return released;
}

bool ZoningCache::LockIdOK(const char *id, bool &expired) const {
    const AccessLock lock;
    expired = false;
    if (!_lockHeld || id == nullptr || _lockId != id)
        return false;
    const long long age = static_cast<long long>(uptimeNow()) - _lockTime;
    expired = age > kLockInterval;
    if (expired)
        cim_log(CIM_LOG_INFO, "DCACHE: fabric lock interval expired at %lds\n", static_cast<long>(age));
    return !expired;
}

std::string ZoningCache::getZoningLockHolder() const {
    const AccessLock lock;
    return _lockHeld ? _lockId : std::string();
}

// ---- the commit ---------------------------------------------------------------------------------------

bool ZoningCache::replaceZoningDB() {
    const AccessLock lock;
    SmlMsgGroup *batch = nullptr;
    try {
        batch = zov_smlAllocMsgGroup(kCommitCommands);
        if (batch == nullptr || !_addCommands(batch))
            return false; // a batch that could not grow is gone
        if (!send(batch)) {
            cim_log(CIM_LOG_INFO, "DCACHE: Zoning session failed\n");
            _lockHeld = false;
        }
        zov_smlFreeMsgGroup(batch);
        return true;
    } catch (const MERO_Except &exception) {
        zov_smlFreeMsgGroup(batch);
        logException(exception);
        return false;
    }
}

/// The commands that build the database anew; false when the batch could not grow.
bool ZoningCache::_addCommands(SmlMsgGroup *batch) const {
    bool added = addCommand(batch, "Cmd.Zoning.EditConfig") && addCommand(batch, "Cmd.Zoning.ClearConfig");
    const int aliases = zoning::countOf(zov_ZonesetGetAliasCount, _uberZoneset);
    for (int i = 0; added && i < aliases; ++i) {
        void *alias = zov_ZonesetListAliases(_uberZoneset, i);
        if (alias == nullptr)
            inconsistent(902);
        added = addAlias(batch, alias);
    }
    const int zones = added ? zoning::countOf(zov_ZonesetGetZoneCount, _uberZoneset) : 0;
    for (int i = 0; added && i < zones; ++i) {
        void *zone = zov_ZonesetListZones(_uberZoneset, i);
        if (zone == nullptr)
            inconsistent(927);
        added = addZone(batch, zone);
    }
    for (auto entry = _zonesets.begin(); added && entry != _zonesets.end(); ++entry) {
        if (entry->second.kind != ZONESET_UBER) // the active one comes beside the defined one of its name
            added = addZonesetCommands(batch, entry->second.handle);
    }
    return added && addCommand(batch, "Cmd.Zoning.SaveConfig") && addCommand(batch, kUnlockFabric) &&
           addCommand(batch, kReleaseAdmin);
}

// ---- conversions --------------------------------------------------------------------------------------

zov_fzs_zonemember_type_e ZoningCache::CIMMemberTypeToZovlib(int type) {
    switch (type) {
    case 2:
        return ZOV_ZMT_PORTWWN;
    case 3:
        return ZOV_ZMT_FCADDRESS;
    case 4:
        return ZOV_ZMT_DOMAINPORT;
    default:
        return ZOV_ZMT_UNKNOWN;
    }
}

zov_fzs_zone_type_e ZoningCache::cnvCIMZoneTypeToZOV(int type) {
    switch (type) {
    case 1:
        return ZOV_ZT_HARDACL;
    case 2:
        return ZOV_ZT_SOFT;
    default:
        return ZOV_ZT_INVALID;
    }
}
