// The cached database in the log.
#include <array>

#include "common/AccessLock.h"
#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "zoning/ZoningCache.h"
#include "zoning/objects.h"

namespace {

/// The lines of a dump: what they say of a name, and the number that stands with it in every log of the field.
struct Line {
    int number;
    const char *before;
    const char *after;
};

constexpr Line kBadZoneset = {1328, "Zoneset: Bad entry", ""};
constexpr Line kBadZone = {1351, "Zone : Bad entry", ""};
constexpr Line kNamelessZone = {1357, "Zone : Can't get name", ""};
constexpr Line kZone = {1360, "  Zone: ", ""};
constexpr Line kZoneMember = {1368, "    Member: ", ""};
constexpr Line kBadAlias = {1378, "   Alias : Bad entry", ""};
constexpr Line kNamelessAlias = {1384, "   Alias : Can't get name", ""};
constexpr Line kAliasMember = {1396, "    Member: ", ""};

constexpr std::array<Line, 3> kZonesets = {{
    {1335, "Zoneset: ", " (active)"},
    {1338, "Zoneset: ", " (inactive)"},
    {1341, "Zoneset: ", " (uber)"},
}};

void log(const Line &line, const char *name = "") {
    cim_log(CIM_LOG_INFO, "INFO:%s:%s:[%d] %s%s%s\n", "ZoningCache.cc", "dump", line.number, line.before, name,
            line.after);
}

void logMember(const Line &line, void *member) {
    zoning::Buffer text{};
    ZoneMemberToString(text.data(), member);
    log(line, text.data());
}

} // namespace

bool ZoningCache::dump() const {
    const AccessLock lock;
    for (const auto &[key, zoneset] : _zonesets) {
        zoning::Buffer name;
        if (!zoning::readName(zov_ZonesetGetName, zoneset.handle, name)) {
            log(kBadZoneset);
            continue;
        }
        log(kZonesets.at(static_cast<std::size_t>(zoneset.kind)), name.data());
        _dumpZones(zoneset.handle);
        _dumpAliases(); // those of the database: a zone set has none of its own
    }
    return true;
}

void ZoningCache::_dumpZones(void *zoneset) const {
    const int count = zoning::countOf(zov_ZonesetGetZoneCount, zoneset);
    for (int i = 0; i < count; ++i) {
        void *zone = zov_ZonesetListZones(zoneset, i);
        zoning::Buffer name;
        if (zone == nullptr) {
            log(kBadZone);
        } else if (!zoning::readName(zov_ZoneGetName, zone, name)) {
            log(kNamelessZone);
        } else {
            log(kZone, name.data());
            const int members = zov_ZoneGetMemberCount(zone);
            for (int m = 0; m < members; ++m)
                logMember(kZoneMember, zov_ZoneListMembers(zone, m));
        }
    }
}

void ZoningCache::_dumpAliases() const {
    const int count = zoning::countOf(zov_ZonesetGetAliasCount, _uberZoneset);
    for (int i = 0; i < count; ++i) {
        void *alias = zov_ZonesetListAliases(_uberZoneset, i);
        zoning::Buffer name;
        if (alias == nullptr) {
            log(kBadAlias);
        } else if (!zoning::readName(zov_ZoneAliasGetName, alias, name)) {
            log(kNamelessAlias);
        } else {
            const int members = zov_ZoneAliasGetMemberCount(alias);
            for (int m = 0; m < members; ++m)
                logMember(kAliasMember, zov_ZoneAliasListMembers(alias, m));
        }
    }
}
