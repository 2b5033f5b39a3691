// A connection inside the process: the zoning database of the switch.

#include <stdexcept>

#include "sim/api/Call.h"
#include "sim/api/LocalConnection.h"
#include "sim/zoning/Fetch.h"
#include "sim/zoning/HandedOut.h"
#include "sim/zoning/NameLists.h"
#include "sim/zoning/Names.h"

namespace sim {

namespace {

/// What a script says that a call hands out, read from its text; none when the switch is to be asked.
template <class Read> auto scripted(const Verdict &verdict, const Read &read) -> decltype(read("")) {
    if (!verdict.handedOut)
        return std::nullopt;
    auto what = read(*verdict.handedOut);
    if (!what)
        throw std::logic_error("a script that nobody looked through"); // its texts were all read once, at the start
    return what;
}

/// A zone set with the name it is handed out by, and what is in it.
struct Fetched {
    std::string name;
    Contents contents;
};

/// A call that hands out a zone set.
///     fetch(zoning, what)   finds it
template <class Fetch> int32_t fetchZoneset(const Call &call, void **zoneset, const Fetch &fetch) {
    std::string handedOut;
    const auto handOut = [&](const Endpoint &endpoint, const std::string &name, const Contents &contents) -> int32_t {
        if (endpoint.recorder.isOn())
            handedOut = shownZoneSet(name, contents);
        *zoneset = pointerOf(makeZoneSet(name, contents));
        return kOk;
    };
    const auto serve = [&](const Endpoint &endpoint, const Verdict &verdict) -> int32_t {
        if (!zoneset)
            return kBadArgument;
        if (const std::optional<FetchedZoneSet> set = scripted(verdict, readZoneSet))
            return handOut(endpoint, set->name, set->contents());
        const Zoning zoning = endpoint.device.zoning(); // what is found is part of it
        Fetched found;
        const int32_t status = fetch(zoning, found);
        return status == kOk ? handOut(endpoint, found.name, found.contents) : status;
    };
    const auto handOutNothing = [&] {
        if (zoneset)
            *zoneset = nullptr;
    };
    return passOnConnection(call, serve, handOutNothing, [&](Record &record) {
        record.arguments = call.arguments;
        record.handedOut = handedOut;
        if (!handedOut.empty())
            record.arguments += (record.arguments.empty() ? "" : ", ") + shown(*zoneset);
    });
}

/// Finds a zone set of the database, or of the active half of it.
int32_t findNamed(const ZoneDatabase &database, const std::string &name, Fetched &found) {
    const StoredZoneSet *stored = database.zonesets.find(name);
    if (!stored)
        return kNotFound;
    found = {name, contentsOf(database, *stored)};
    return kOk;
}

std::vector<std::string> zonesetNames(const ZoneDatabase &database) {
    std::vector<std::string> names;
    for (const StoredZoneSet &zoneset : database.zonesets)
        names.push_back(zoneset.name);
    return names;
}

Call callWith(const char *name, zov_handle_t handle, const char *argument) {
    Call call{name, handle};
    call.arguments = shown(argument);
    return call;
}

} // namespace

int32_t LocalConnection::zoningLimits(zov_fzs_zoninglimits_s *limits) {
    std::string handedOut;
    const auto serve = [&](const Endpoint &endpoint, const Verdict &verdict) -> int32_t {
        if (!limits)
            return kBadArgument;
        const std::optional<Limits> recorded = scripted(verdict, readLimits);
        *limits = recorded ? *recorded : endpoint.device.zoning().limits;
        handedOut = shownLimits(*limits);
        return kOk;
    };
    return passOnConnection({"zov_fzsGetZoningLimitations", _handle}, serve, nothing,
                            [&](Record &record) { record.handedOut = handedOut; });
}

int32_t LocalConnection::activeZonesetName(char *name) {
    std::string handedOut;
    const auto serve = [&](const Endpoint &endpoint, const Verdict &verdict) -> int32_t {
        if (!name)
            return kBadArgument;
        const std::optional<std::vector<std::string>> recorded = scripted(verdict, readNames);
        putName(name, recorded ? recorded->at(0) : activeName(endpoint.device.zoning()));
        handedOut = shownNames({name});
        return kOk;
    };
    return passOnConnection({"zov_fzsGetActiveZonesetName", _handle}, serve, nothing,
                            [&](Record &record) { record.handedOut = handedOut; });
}

int32_t LocalConnection::activeZoneset(void **zoneset) {
    return guarded<int32_t>([&] {
        return fetchZoneset({"zov_fzsGetActiveZoneset", _handle}, zoneset, [](const Zoning &zoning, Fetched &found) {
            return findNamed(*zoning.active.database, activeName(zoning), found);
        });
    });
}

int32_t LocalConnection::zonesetList(int32_t *count, char **names) {
    std::string handedOut;
    const auto serve = [&](Endpoint &endpoint, const Verdict &verdict) -> int32_t {
        if (!count || !names)
            return kBadArgument;
        const std::optional<std::vector<std::string>> recorded = scripted(verdict, readNames);
        const std::vector<std::string> list =
            recorded ? *recorded : zonesetNames(*endpoint.device.zoning().defined.database);
        *names = NameLists::instance().handOut(list);
        *count = static_cast<int32_t>(list.size());
        handedOut = shownNames(list);
        return kOk;
    };
    return passOnConnection({"zov_fzsGetZonesetList", _handle}, serve, nothing,
                            [&](Record &record) { record.handedOut = handedOut; });
}

int32_t LocalConnection::zoneset(const char *name, void **zoneset) {
    return guarded<int32_t>([&] {
        const auto fetch = [&](const Zoning &zoning, Fetched &found) -> int32_t {
            const std::optional<std::string> text = nameFrom(name);
            if (!text)
                return name ? kNotFound : kBadArgument;
            return findNamed(*zoning.defined.database, *text, found);
        };
        return fetchZoneset(callWith("zov_fzsGetZoneset", _handle, name), zoneset, fetch);
    });
}

/// The whole database as one zone set, which carries the name that the client gives it.
int32_t LocalConnection::allZonesAndAliases(const char *newName, void **zoneset) {
    return guarded<int32_t>([&] {
        const auto fetch = [&](const Zoning &zoning, Fetched &found) -> int32_t {
            const std::optional<std::string> name = nameFrom(newName);
            if (!name)
                return newName ? kBadName : kBadArgument;
            found = {*name, contentsOf(*zoning.defined.database)};
            return kOk;
        };
        return fetchZoneset(callWith("zov_fzsGetAllZonesAndAliases", _handle, newName), zoneset, fetch);
    });
}

} // namespace sim
