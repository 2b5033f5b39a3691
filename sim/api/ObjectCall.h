/*
 * The way of a call about zoning objects. It names no connection, so it goes to the switch made last, and to the objects
 * alone when there is none. What a client does with objects that are none is noted first.
 *
 * Thread-safe.
 */
#ifndef SIM_API_OBJECTCALL_H
#define SIM_API_OBJECTCALL_H

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "sim/api/Call.h"
#include "sim/zoning/NameLists.h"
#include "sim/zoning/Objects.h"

namespace sim {

/// An argument that must be an object of a kind.
struct Used {
    ObjectKind kind;
    const void *handle;
};

using Uses = std::initializer_list<Used>;

inline Used aSet(const void *handle) {
    return {ObjectKind::zoneSet, handle};
}

inline Used aZone(const void *handle) {
    return {ObjectKind::zone, handle};
}

inline Used anAlias(const void *handle) {
    return {ObjectKind::alias, handle};
}

inline Used aMember(const void *handle) {
    return {ObjectKind::member, handle};
}

/// Tells of every object that is not what the call needs.
inline void checkUses(const char *call, Uses uses, const std::shared_ptr<Endpoint> &endpoint) {
    for (const Used &used : uses) {
        const std::optional<std::string> misuse = Objects::instance().misuseOf(numberOf(used.handle), used.kind);
        if (!misuse)
            continue;
        const std::string text = std::string(call) + ": " + shown(used.handle) + " " + *misuse;
        if (endpoint)
            endpoint->misuses.add(text);
        stopUnlessForgiven(text);
    }
}

/// `arguments` is asked before the call: some calls destroy what they are about.
template <class Result, class Arguments, class Serve>
Result onObjects(const char *name, Uses uses, const Arguments &arguments, const Serve &serve) {
    return guarded<Result>([&]() -> Result {
        NameLists::instance().expire();
        const std::shared_ptr<Endpoint> endpoint = Registry::instance().newest();
        checkUses(name, uses, endpoint);
        if (!endpoint)
            return serve(Objects::instance());
        const std::string text = endpoint->recorder.isOn() ? arguments() : "";
        Call call{name};
        return pass<Result>(
            *endpoint, call, [&](const Verdict &) { return serve(Objects::instance()); }, nothing,
            [&](Record &record) { record.arguments = text; });
    });
}

} // namespace sim

#endif // SIM_API_OBJECTCALL_H
