#include "sim/model/Zoning.h"

#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "sim/Record.h"
#include "sim/model/Switch.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Half = ZoningHalf Zoning::*;

template <Half half> std::string readChecksum(const Switch &device, Index) {
    return (device.zoning.*half).checksum;
}

template <Half half> void writeChecksum(Switch &device, Index, const std::string &value) {
    (device.zoning.*half).checksum = value;
}

std::string readActiveName(const Switch &device, Index) {
    return activeName(device.zoning);
}

template <Half half> constexpr Row checksum(const char *key) {
    return {key, Access::readOnly, &kChecksumRule, ZOV_EVENT_ZONE_CHANGE, readChecksum<half>, writeChecksum<half>};
}

constexpr Row kRows[] = {
    checksum<&Zoning::active>("Oper.Zoning.ActiveChecksum"),
    checksum<&Zoning::defined>("Oper.Zoning.InactiveChecksum"),
    {"Oper.Zoning.ActiveZoneSet", Access::readOnly, &kDerivedRule, 0, readActiveName},
};

/// Clients take 1 for the checksum of what they have never read.
constexpr uint32_t kNeverRead = 1;

std::string checksumText(uint32_t number) {
    char text[9];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(number));
    return text;
}

std::string nextChecksum(const ZoningHalf &half) {
    const std::string mark = half.name + std::to_string(half.generation);
    uint32_t number = digestOf(*half.database);
    for (const char c : mark)
        number = number * 31 + static_cast<uint8_t>(c);
    while (number == kNeverRead || checksumText(number) == half.checksum)
        ++number;
    return checksumText(number);
}

/// False when it is the same as before: the former stays then.
bool replace(ZoningHalf &half, ZoneDatabase database) {
    if (haveSameContent(*half.database, database))
        return false;
    half.database = std::make_shared<const ZoneDatabase>(std::move(database));
    ++half.generation;
    half.checksum = nextChecksum(half);
    return true;
}

Announcements changeOf(bool changed, const std::string &text) {
    return changed ? Announcements{{ZOV_EVENT_ZONE_CHANGE, {0, 0, 0}, text}} : Announcements();
}

} // namespace

ZoningHalf::ZoningHalf(const char *halfName) : name(halfName), database(std::make_shared<const ZoneDatabase>()) {
    checksum = nextChecksum(*this);
}

Rows zoningRows() {
    return {kRows, std::size(kRows)};
}

std::string activeName(const Zoning &zoning) {
    const Catalog<StoredZoneSet> &zonesets = zoning.active.database->zonesets;
    return zonesets.empty() ? "" : zonesets.begin()->name;
}

/// Both halves are made before either is replaced.
Announcements commit(Zoning &zoning, ZoneDatabase database) {
    ZoningHalf active = zoning.active;
    ZoningHalf defined = zoning.defined;
    const StoredZoneSet *zoneset = database.zonesets.find(activeName(zoning));
    bool changed = zoneset && replace(active, extract(database, *zoneset));
    changed |= replace(defined, std::move(database));
    std::swap(zoning.active, active);
    std::swap(zoning.defined, defined);
    return changeOf(changed, "zoning database committed");
}

Announcements setZoning(Switch &device, const ZoningDatabase &database) {
    return commit(device.zoning, databaseFrom(database, device.zoning.limits));
}

Announcements activateZoneset(Switch &device, const std::string &name) {
    const ZoneDatabase &defined = *device.zoning.defined.database;
    const StoredZoneSet *zoneset = defined.zonesets.find(name);
    if (!zoneset && !name.empty())
        throw std::invalid_argument("there is no zone set '" + escaped(name) + "'");
    const bool changed = replace(device.zoning.active, zoneset ? extract(defined, *zoneset) : ZoneDatabase());
    return changeOf(changed, zoneset ? "zone set " + name + " activated" : "active zone set deactivated");
}

Announcements setZoningLimits(Switch &device, const zov_fzs_zoninglimits_s &limits) {
    for (const int32_t limit : {limits.zonesets, limits.zones, limits.members, limits.zonesPerZoneset,
                                limits.membersPerZone, limits.aliases, limits.membersPerAlias})
        if (limit < 0)
            throw std::invalid_argument("a zoning limit cannot be " + std::to_string(limit) + "; allowed: 0 and more");
    device.zoning.limits = limits;
    return {};
}

} // namespace sim
