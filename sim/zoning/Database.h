/*
 * A zoning database, and the edits that make one. Plain data; guarded by its owner.
 *
 * An edit is done exactly or refused with a status and then changes nothing. Creating or adding what is there already
 * is accepted and changes nothing either.
 */
#ifndef SIM_ZONING_DATABASE_H
#define SIM_ZONING_DATABASE_H

#include <string>
#include <vector>

#include "platform/zovlib.h"
#include "sim/Simulator.h"
#include "sim/Status.h"
#include "sim/zoning/Catalog.h"
#include "sim/zoning/MemberId.h"

namespace sim {

struct StoredAlias {
    std::string name;
    Catalog<MemberId> members;
    size_t references = 0; ///< zones that have it as a member
};

struct StoredZone {
    std::string name;
    zov_fzs_zone_type_e type = ZOV_ZT_SOFT;
    Catalog<MemberId> members;
};

struct StoredZoneSet {
    std::string name;
    Catalog<std::string> zones; ///< names
};

struct ZoneDatabase {
    Catalog<StoredZoneSet> zonesets;
    Catalog<StoredZone> zones;
    Catalog<StoredAlias> aliases;
    size_t members = 0; ///< an alias's count once for it, and once more for every reference to it
};

using Limits = zov_fzs_zoninglimits_s;

// ---- edits -------------------------------------------------------------------------------------------

Status createAlias(ZoneDatabase &database, const Limits &limits, const std::string &name);
Status createZone(ZoneDatabase &database, const Limits &limits, const std::string &name);
Status createZoneSet(ZoneDatabase &database, const Limits &limits, const std::string &name);
Status setZoneType(ZoneDatabase &database, const std::string &zone, zov_fzs_zone_type_e type);
Status addAliasMember(ZoneDatabase &database, const Limits &limits, const std::string &alias, const MemberId &member);
Status addZoneMember(ZoneDatabase &database, const Limits &limits, const std::string &zone, const MemberId &member);
Status addZone(ZoneDatabase &database, const Limits &limits, const std::string &zoneset, const std::string &zone);

// ---- looking at one ----------------------------------------------------------------------------------

/// A zone set's zones, and the aliases that these refer to, each once.
struct Contents {
    std::vector<const StoredZone *> zones;
    std::vector<const StoredAlias *> aliases;
};

Contents contentsOf(const ZoneDatabase &database, const StoredZoneSet &zoneset);
/// Everything there is.
Contents contentsOf(const ZoneDatabase &database);

/// A zone set of the database alone, with its contents.
ZoneDatabase extract(const ZoneDatabase &database, const StoredZoneSet &zoneset);

/// Whether the same is defined, in whatever order.
bool haveSameContent(const ZoneDatabase &left, const ZoneDatabase &right);

/// A number that tells databases apart, as far as 32 bits can.
uint32_t digestOf(const ZoneDatabase &database);

// ---- in the form in which it goes in and out ---------------------------------------------------------

/// Throws std::invalid_argument for names that are not valid or there twice, members that are none or there twice,
/// references to what is not there, and more than the limits allow.
ZoneDatabase databaseFrom(const ZoningDatabase &database, const Limits &limits);
ZoningDatabase shownDatabase(const ZoneDatabase &database);

} // namespace sim

#endif // SIM_ZONING_DATABASE_H
