/*
 * What a zoning database is expected to be: on the switch, and in a cache that loads and edits it. An implementation of its
 * own, which shares nothing with the library or the simulator but the forms in which databases are written down.
 *
 * Where the edits differ from each other in what they repeat in which zone sets, and in counting anew, the model does as
 * clients know it. It makes no difference between edits that a switch library refuses for different reasons.
 *
 * Plain data; for one thread at a time.
 */
#ifndef TESTS_SCENARIO_ZONINGMODEL_H
#define TESTS_SCENARIO_ZONINGMODEL_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "zoning/ZoningCache.h"

namespace scenario {

constexpr const char *kActiveZonesetKey = "[ActiveZoneSetKey]";
constexpr const char *kUberZonesetKey = "[UberZoneSetKey]";

using ZoningLimits = zov_fzs_zoninglimits_s;

/// A zone set with zones and aliases of its own.
struct CachedZoneset {
    std::string name;
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    std::vector<sim::Zone> zones;
    std::vector<sim::ZoneAlias> aliases;
};

/// By their keys, in the order of their bytes.
using CachedZonesets = std::map<std::string, CachedZoneset>;

/// One line for each zone set, zone and alias.
std::string describe(const CachedZonesets &zonesets);
std::string describe(const sim::ZoningDatabase &database);

/// A member as the switch shows it; none for what is no member.
std::optional<sim::ZoneMember> memberFrom(zov_fzs_zonemember_type_e type, const char *given);

/// The names of zone sets, zones and aliases that may be given.
bool isZoningName(const char *name);

/// The switch: what is defined, what is active, and how often each has changed.
class ZoningOnSwitch {
public:
    ZoningOnSwitch() = default;
    /// One that is as this switch is now.
    explicit ZoningOnSwitch(const sim::Simulator &theSwitch)
        : _defined(theSwitch.zoning()), _active(theSwitch.activeZoning()) {}

    /// What a client or another one commits.
    void commit(const sim::ZoningDatabase &database);
    /// An empty name deactivates.
    void activate(const std::string &name);

    const sim::ZoningDatabase &defined() const { return _defined; }
    const sim::ZoningDatabase &active() const { return _active; }
    std::string activeName() const { return _active.zonesets.empty() ? "" : _active.zonesets.front().name; }
    int definedVersion() const { return _definedVersion; }
    int activeVersion() const { return _activeVersion; }

    ZoningLimits limits = {300, 3000, 12000, 1000, 500, 3000, 500};

private:
    sim::ZoningDatabase _defined;
    sim::ZoningDatabase _active;
    int _definedVersion = 0;
    int _activeVersion = 0;
};

/// A cache. The edits have the names, arguments and results of the library's.
class ZoningModel {
public:
    /// A refresh, of the halves that have changed: the events it tells, without what they carry besides.
    std::vector<std::string> refresh(const ZoningOnSwitch &theSwitch);
    /// The next refresh loads the defined half in any case.
    void forgetDefined() { _definedVersion = -1; }

    int createZoneset(const char *name);
    int removeZoneset(const char *name);
    int createZone(const char *name, zov_fzs_zone_type_e type);
    int removeZone(const char *name);
    int createZoneAlias(const char *name);
    int removeZoneAlias(const char *name);
    int addMemberToZone(const char *zone, zov_fzs_zonemember_type_e type, const char *text);
    int removeMemberFromZone(const char *zone, zov_fzs_zonemember_type_e type, const char *text);
    int addMemberToZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *text);
    int removeMemberFromZoneAlias(const char *alias, zov_fzs_zonemember_type_e type, const char *text);
    int removeMember(zov_fzs_zonemember_type_e type, const char *text);
    int addZoneToZoneset(const char *key, const char *zone);
    int removeZoneFromZoneset(const char *key, const char *zone);

    /// The database that a switch of these limits makes of a commit; none when it rejects it.
    std::optional<sim::ZoningDatabase> committed(const ZoningLimits &switchLimits) const;

    const CachedZonesets &zonesets() const { return _zonesets; }
    /// As they were counted last.
    const ZoningLimits &counts() const { return _counts; }
    /// The zoning objects that the cache holds.
    sim::ZoningObjectCounts objects() const;

    /// Those that the switch told when the cache was set up.
    ZoningLimits limits = {};

private:
    CachedZoneset *uber();
    sim::Zone *zoneInUber(const char *name);
    sim::ZoneAlias *aliasInUber(const char *name);
    CachedZoneset *zoneset(const char *key);
    void recount();

    CachedZonesets _zonesets;
    ZoningLimits _counts = {};
    int _definedVersion = -1;
    int _activeVersion = -1;
    std::string _activeName;
};

} // namespace scenario

#endif // TESTS_SCENARIO_ZONINGMODEL_H
