/*
 * The cached zoning database: what the fabric's zoning holds, edits of it, and their commit.
 *
 * The database is kept as the switch library's own zoning objects. The zone set called "uber" carries every zone and
 * every alias of the database. Each defined (inactive) zone set, and the active one, is an entry of its own with its own
 * copies of the zones it contains. The refresh fills the entries and rebuilds them whole when the switch's database
 * changes; edits change them in place. Nothing reaches the switch before replaceZoningDB(), which sends the whole
 * database.
 *
 *     bool expired = false;
 *     if (cache->ZoningLock("provider")) {
 *         if (cache->LockIdOK("provider", expired)) // before every edit
 *             cache->createZone("backup", ZOV_ZT_SOFT);
 *         const bool sent = cache->LockIdOK("provider", expired) && cache->replaceZoningDB();
 *         const bool accepted = sent && cache->LockIdOK("provider", expired);
 *         if (!sent)
 *             cache->ZoningUnlock(); // a commit that was sent has given the lock back on the switch
 *     }
 *
 * DataCache derives from ZoningCache; the members below are members of the one cache object and are guarded by
 * the cache's lock, which every operation takes for its whole run, but for the conversions. Any thread may call
 * them. Handles that are handed out belong to the cache. They are good until a refresh, an edit or a clear destroys what
 * they stand for: hold the lock (DataCache::getInstance()) while you use one.
 *
 * Errors: results are as said below; nothing throws. Null texts name nothing, and null handles stand for empty
 * objects: neither is ever passed on to the switch library.
 */
#ifndef ZONING_ZONINGCACHE_H
#define ZONING_ZONINGCACHE_H

#include <cstdint>
#include <map>
#include <string>

#include "foundation/Export.h"
#include "platform/zovlib.h"

struct SmlMsgGroup;

/// The kind of a cached zone set.
enum _ZoneSetTypes { // NOLINT(bugprone-reserved-identifier): clients know it by this name
    ZONESET_ACTIVE = 0,
    ZONESET_INACTIVE = 1,
    ZONESET_UBER = 2
};

/// An entry of the cached database. It is found under the zone set's name; the active and the uber entry are found under
/// "[ActiveZoneSetKey]" and "[UberZoneSetKey]".
struct ZoneSet {
    void *handle = nullptr;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
};

class DATACACHE_EXPORT ZoningCache {
public:
    ZoningCache();
    /// Destroys every zone set that the cache holds.
    virtual ~ZoningCache();
    ZoningCache(const ZoningCache &) = delete;
    ZoningCache &operator=(const ZoningCache &) = delete;

    // ---- the zone sets (ZoningModel.cc) --------------------------------------------------------------

    /// Walks the entries in the byte order of their keys: a zone set and its kind; null, and the kind untouched, after
    /// the last one and for a handle that is no entry's.
    void *getFirstZoneset(_ZoneSetTypes &kind) const;
    void *getNextZoneset(void *handle, _ZoneSetTypes &kind) const;
    /// The zone set of exactly this key.
    void *getZoneset(const char *name, _ZoneSetTypes &kind) const;
    /// Whether the handle is what getActiveZoneset() or getUberZoneset() return; null is while there is none.
    bool isActiveZoneset(void *handle) const;
    bool isUberZoneset(void *handle) const;
    void *getActiveZoneset() const;
    void *getUberZoneset() const;

    /// Enters a zone set, which the cache owns from then on, and counts anew: 0. -1 for null, for a kind that is none, when
    /// the name cannot be read, and when there is an entry of this key. An inactive zone set then stays the caller's. An
    /// active or uber one is taken for such all the same: a clear destroys it with the entry that was there already, but
    /// deleting that entry by its own handle or key gives it back to the caller.
    int addZoneset(void *handle, _ZoneSetTypes kind);
    /// Destroys a zone set and the entry of its key, whichever zone set that holds, and counts anew: 0. -1 when the name
    /// cannot be read or the kind is none.
    int delZoneset(void *handle, _ZoneSetTypes kind);

    /// Destroy what there is of a kind, or everything.
    void clearActive();
    void clearInactive();
    void clearUber();
    void clearZoningCache();

    // ---- how full the database is (ZoningLimits.cc) --------------------------------------------------

    /// Counts the zone sets, zones, aliases and members of the cached database, and logs the counts. An alias's members
    /// count once for the alias and once for every zone that has it as a member. Always true.
    bool updateZoningCounts();

    /// Counts as above, then asks the switch for its zoning limits; true when it answered. Needs the connection.
    bool initZoningLimits();

    /// The database has exactly as many as the switch takes; logged when it is so. Edits test all but the members: test
    /// those before adding one.
    bool zonesetLimitAtMax() const;
    bool zoneLimitAtMax() const;
    bool aliasLimitAtMax() const;
    bool memberLimitAtMax() const;
    /// The object has as many as the switch takes, or more; logged when it is so.
    bool zonesPerZonesetAtMax(void *zoneset) const;
    bool membersPerZoneAtMax(void *zone) const;
    bool membersPerAliasAtMax(void *alias) const;

    /// The counts, in the order of the limits: zone sets, zones, members; and aliases. Per-object fields are 0.
    zov_fzs_zoninglimits_s getZoningCounts() const;
    /// The limits of the switch; all 0 until it has told them.
    zov_fzs_zoninglimits_s getZoningLimits() const;

    /// Writes every zone set, its zones and their members to the log. Always true.
    bool dump() const;

    // ---- edits (ZoningEdits.cc, MemberEdits.cc) ------------------------------------------------------

    /// All edits return 0 when done; 1 for a name or member text that is not valid, or a zone that could not be created;
    /// 2 for what does not exist; 3 for what exists already; 4 when a limit is reached or the switch library failed, which
    /// includes an alias name that is not valid. An edit that fails part of the way leaves what it has done.
    ///
    /// Until the database has been loaded there is no zone or alias to find, and none can be created. While the switch
    /// has not told its limits they are all 0: a member, a zone in a zone set, and the first zone set, zone or alias is
    /// refused with 4 then.
    ///
    /// Edits of an alias's members, removeMember(), addZoneToZoneset() and removeZoneFromZoneset() do not count anew:
    /// call updateZoningCounts() before asking memberLimitAtMax() after one of them.

    int createZoneset(const char *name);
    /// The active and the uber zone set too, under the keys of their entries.
    int removeZoneset(const char *name);
    int createZone(const char *name, zov_fzs_zone_type_e type);
    /// Removes it from the database and from every defined zone set. The active zone set keeps it.
    int removeZone(const char *name);
    int createZoneAlias(const char *name);
    /// Zones that have it as a member keep the reference, and the active zone set keeps the alias.
    int removeZoneAlias(const char *name);
    /// In the database and in every defined zone set that has the zone or alias. A defined zone set that does not have
    /// the member ends a removal with 2.
    int addMemberToZone(const char *zone, zov_fzs_zonemember_type_e type, const char *member);
    int removeMemberFromZone(const char *zone, zov_fzs_zonemember_type_e type, const char *member);
    int addMemberToZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *member);
    /// In the database and in the active zone set.
    int removeMemberFromZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *member);
    /// From every zone and alias, but for those of the active zone set. 0 also when there was none; what could not be
    /// removed is logged and left.
    int removeMember(zov_fzs_zonemember_type_e type, const char *member);
    /// The zone set gets a copy of its own of the zone.
    int addZoneToZoneset(const char *zoneset, const char *zone);
    int removeZoneFromZoneset(const char *zoneset, const char *zone);

    // ---- the fabric lock and the commit (ZoningCommit.cc) --------------------------------------------

    /// Takes the fabric-wide zoning lock, and admin mode with it, for a holder of this name; false, and nothing taken,
    /// when the switch refuses. A lock that is held is asked for again, and goes over to the new holder.
    bool ZoningLock(const char *id);
    /// Gives the lock back; the cache forgets it whatever the switch says. False when the switch refused. (What the
    /// request was made of, some 1000 bytes, is not freed.)
    bool ZoningUnlock();
    /// The lock is held by this very holder, and for 90 seconds of uptime at most. `expired` tells that only its age
    /// speaks against it; the lock stays as it is.
    bool LockIdOK(const char *id, bool &expired) const;
    /// The holder's name; empty when the lock is not held as far as the cache knows.
    std::string getZoningLockHolder() const;

    /// Writes the whole cached database to the switch, saves it there, and gives the lock back on the switch, in one
    /// exchange. False, with nothing sent, when the cached database cannot be read whole or memory ends. True when it was
    /// sent: of a switch that rejected it the cache forgets the lock, so that LockIdOK() answers false from then on. After
    /// a commit that was accepted it goes on naming the holder, though the switch has the lock back.
    ///
    /// Take care: this replaces the switch's database by what the cache holds. Without an uber zone set that is no zone
    /// and no alias, so a commit then empties the switch's database: before the first refresh of zoning, after one that
    /// failed, and when the uber zone set was removed. Commit only while getUberZoneset() is not null and
    /// isAreaGood(DataCacheArea::zoning).
    bool replaceZoningDB();

    // ---- conversions: pure functions -----------------------------------------------------------------

    /// CIM's connectivity member types 2, 3, 4 are the switch's port name, address, and domain and port; any other is
    /// unknown.
    static zov_fzs_zonemember_type_e CIMMemberTypeToZovlib(int type);
    /// CIM's zone types 1, 2 are the switch's hard (ACL) and soft; any other is invalid.
    static zov_fzs_zone_type_e cnvCIMZoneTypeToZOV(int type);

protected:
    /// What the refresh compares.
    struct Checksums {
        uint32_t active = 0;
        std::string activeName;
        uint32_t inactive = 0;
    };
    Checksums _sums;
    /// Those of the last loads. They start one above the others, so that the first refresh loads everything, but for what
    /// has a checksum of 1.
    Checksums _loadedSums = {1, "", 1};

    /// addZoneset() of an inactive zone set that nobody else owns: one that cannot be entered is destroyed, unless the
    /// switch library has handed out one that the cache has already.
    int _takeInactive(void *handle);

private:
    using ZoneSets = std::map<std::string, ZoneSet>;

    bool _keyOf(void *handle, _ZoneSetTypes kind, std::string &key) const;
    void _destroy(void *handle);
    int _weightedMembers(void *zone) const;
    void _dumpZones(void *zoneset) const;
    void _dumpAliases() const;
    bool _addCommands(SmlMsgGroup *batch) const;

    bool _lockHeld = false;
    std::string _lockId;
    long _lockTime = 0; // uptime, in seconds, when the lock was asked for

    ZoneSets _zonesets;
    void *_activeZoneset = nullptr;
    void *_uberZoneset = nullptr;

    int _zonesetCount = 0;
    int _zoneCount = 0;
    int _aliasCount = 0;
    int _memberCount = 0;

    zov_fzs_zoninglimits_s _limits = {};
};

#endif // ZONING_ZONINGCACHE_H
