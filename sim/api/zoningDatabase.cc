// The C interface: the zoning database of the switch.

#include "sim/api/Call.h"
#include "sim/zoning/Fetch.h"
#include "sim/zoning/Names.h"

using namespace sim;

namespace {

/// A call that hands out a zone set; what it says of the call's arguments comes before the zone set.
template <class Fetch>
int32_t fetchZoneset(const char *call, zov_handle_t handle, void **zoneset, const std::string &arguments,
                     const Fetch &fetch) {
    bool served = false;
    const auto serve = [&](const Endpoint &endpoint, const Verdict &) -> int32_t {
        if (!zoneset)
            return kBadArgument;
        const int32_t status = fetch(endpoint.device.zoning());
        served = status == kOk;
        return status;
    };
    const auto handOutNothing = [&] {
        if (zoneset)
            *zoneset = nullptr;
    };
    return passOnConnection({call, handle}, serve, handOutNothing, [&](Record &record) {
        record.arguments = arguments;
        if (served)
            record.arguments += (arguments.empty() ? "" : ", ") + shown(*zoneset);
    });
}

/// Hands out a zone set of the database, or of the active half of it.
int32_t fetchNamed(const ZoneDatabase &database, const std::string &name, void **zoneset) {
    const StoredZoneSet *stored = database.zonesets.find(name);
    if (!stored)
        return kNotFound;
    *zoneset = pointerOf(makeZoneSet(name, contentsOf(database, *stored)));
    return kOk;
}

std::vector<std::string> zonesetNames(const ZoneDatabase &database) {
    std::vector<std::string> names;
    for (const StoredZoneSet &zoneset : database.zonesets)
        names.push_back(zoneset.name);
    return names;
}

} // namespace

extern "C" {

int32_t zov_fzsGetZoningLimitations(zov_handle_t handle, zov_fzs_zoninglimits_s *limits) {
    const auto serve = [&](const Endpoint &endpoint, const Verdict &) -> int32_t {
        if (!limits)
            return kBadArgument;
        *limits = endpoint.device.zoning().limits;
        return kOk;
    };
    return passOnConnection({"zov_fzsGetZoningLimitations", handle}, serve, nothing, [](Record &) {});
}

int32_t zov_fzsGetActiveZonesetName(zov_handle_t handle, char *name) {
    const auto serve = [&](const Endpoint &endpoint, const Verdict &) -> int32_t {
        if (!name)
            return kBadArgument;
        putName(name, activeName(endpoint.device.zoning()));
        return kOk;
    };
    return passOnConnection({"zov_fzsGetActiveZonesetName", handle}, serve, nothing, [](Record &) {});
}

int32_t zov_fzsGetActiveZoneset(zov_handle_t handle, void **zoneset) {
    return guarded<int32_t>([&] {
        return fetchZoneset("zov_fzsGetActiveZoneset", handle, zoneset, "", [&](const Zoning &zoning) {
            return fetchNamed(*zoning.active.database, activeName(zoning), zoneset);
        });
    });
}

int32_t zov_fzsGetZonesetList(zov_handle_t handle, int32_t *count, char **names) {
    const auto serve = [&](Endpoint &endpoint, const Verdict &) -> int32_t {
        if (!count || !names)
            return kBadArgument;
        const std::vector<std::string> list = zonesetNames(*endpoint.device.zoning().defined.database);
        *names = endpoint.nameLists.handOut(list);
        *count = static_cast<int32_t>(list.size());
        return kOk;
    };
    return passOnConnection({"zov_fzsGetZonesetList", handle}, serve, nothing, [](Record &) {});
}

int32_t zov_fzsGetZoneset(zov_handle_t handle, const char *name, void **zoneset) {
    return guarded<int32_t>([&] {
        return fetchZoneset("zov_fzsGetZoneset", handle, zoneset, shown(name), [&](const Zoning &zoning) -> int32_t {
            const std::optional<std::string> text = nameFrom(name);
            if (!text)
                return name ? kNotFound : kBadArgument;
            return fetchNamed(*zoning.defined.database, *text, zoneset);
        });
    });
}

/// The whole database as one zone set, which carries the name that the client gives it.
int32_t zov_fzsGetAllZonesAndAliases(zov_handle_t handle, const char *newName, void **zoneset) {
    return guarded<int32_t>([&] {
        return fetchZoneset("zov_fzsGetAllZonesAndAliases", handle, zoneset, shown(newName),
                            [&](const Zoning &zoning) -> int32_t {
                                const std::optional<std::string> name = nameFrom(newName);
                                if (!name)
                                    return newName ? kBadName : kBadArgument;
                                *zoneset = pointerOf(makeZoneSet(*name, contentsOf(*zoning.defined.database)));
                                return kOk;
                            });
    });
}

} // extern "C"
