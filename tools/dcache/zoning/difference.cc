#include "tools/dcache/zoning/difference.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "tools/dcache/zoning/script.h"

namespace dcache {
namespace {

using Changes = std::vector<ZoningChange>;

/// Zone sets, zones or aliases by their names.
template <class Object> std::map<std::string, const Object *> byName(const std::vector<Object> &objects) {
    std::map<std::string, const Object *> index;
    for (const Object &object : objects)
        index.emplace(object.name, &object);
    return index;
}

const std::string &wordFor(const std::string &zone) {
    return zone;
}
std::string wordFor(const Member &member) {
    return inScript(member);
}

/// The parts that an object has gained and lost.
template <class Part>
void compareParts(const ZoningChange &what, const std::vector<Part> &before, const std::vector<Part> &after,
                  Changes &changes) {
    const std::set<Part> had(before.begin(), before.end());
    const std::set<Part> has(after.begin(), after.end());
    const auto note = [&](const char *change, const std::set<Part> &these, const std::set<Part> &others) {
        for (const Part &part : these)
            if (others.count(part) == 0)
                changes.push_back({change, what.object, what.name, what.part, wordFor(part)});
    };
    note("removed", had, has);
    note("added", has, had);
}

void compare(const AliasPicture &before, const AliasPicture &after, Changes &changes) {
    compareParts({"", "alias", after.name, "member", ""}, before.members, after.members, changes);
}

void compare(const ZonePicture &before, const ZonePicture &after, Changes &changes) {
    if (before.type == ZOV_ZT_INVALID && before.name.empty())
        changes.push_back({"added", "zone", after.name, "type", zoneTypeWord(after.type)});
    else if (before.type != after.type)
        changes.push_back(
            {"changed", "zone", after.name, "type", zoneTypeWord(before.type) + " -> " + zoneTypeWord(after.type)});
    compareParts({"", "zone", after.name, "member", ""}, before.members, after.members, changes);
}

void compare(const ZonesetPicture &before, const ZonesetPicture &after, Changes &changes) {
    compareParts({"", "zone set", after.name, "zone", ""}, before.zones, after.zones, changes);
}

template <class Object>
void compareAll(const char *object, const std::vector<Object> &before, const std::vector<Object> &after,
                Changes &changes) {
    const auto had = byName(before);
    const auto has = byName(after);
    for (const auto &[name, gone] : had)
        if (has.count(name) == 0)
            changes.push_back({"removed", object, name, "", ""});
    for (const auto &[name, there] : has) {
        const auto old = had.find(name);
        if (old == had.end())
            changes.push_back({"added", object, name, "", ""});
        compare(old != had.end() ? *old->second : Object(), *there, changes);
    }
}

} // namespace

std::vector<ZoningChange> difference(const ZoningPicture &before, const ZoningPicture &after) {
    Changes changes;
    compareAll("alias", before.aliases, after.aliases, changes);
    compareAll("zone", before.zones, after.zones, changes);
    compareAll("zone set", before.zonesets, after.zonesets, changes);
    return changes;
}

} // namespace dcache
