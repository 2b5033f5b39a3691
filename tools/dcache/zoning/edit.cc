#include "tools/dcache/zoning/edit.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

#include "tools/dcache/words.h"

namespace dcache {
namespace {

using Kind = StatementKind;

constexpr int kNotValid = 1;
constexpr int kNotThere = 2;
constexpr int kThereAlready = 3;
constexpr int kFailed = 4;

/// What an edit is about.
enum class Object { zoneset, zone, alias, none };

struct ObjectRow {
    const char *word;
    void *(*find)(const DataCache &cache, const char *name);
};

void *findZoneset(const DataCache &cache, const char *name) {
    _ZoneSetTypes kind = ZONESET_INACTIVE;
    return cache.getZoneset(name, kind);
}

void *findZone(const DataCache &cache, const char *name) {
    void *all = cache.getUberZoneset();
    return all != nullptr ? zov_ZonesetFindZone(all, name) : nullptr;
}

void *findAlias(const DataCache &cache, const char *name) {
    void *all = cache.getUberZoneset();
    return all != nullptr ? zov_ZonesetFindAlias(all, name) : nullptr;
}

constexpr std::array<ObjectRow, 3> kObjects = {{{"zone set", findZoneset}, {"zone", findZone}, {"alias", findAlias}}};

/// A limit of the switch that an edit can reach.
struct Limit {
    bool (*isReached)(const DataCache &cache, void *object);
    int32_t zov_fzs_zoninglimits_s::*number;
    const char *what;
};

// clang-format off
constexpr Limit kZonesets = {[](const DataCache &cache, void *) { return cache.zonesetLimitAtMax(); },
                             &zov_fzs_zoninglimits_s::zonesets, "zone sets"};
constexpr Limit kZones = {[](const DataCache &cache, void *) { return cache.zoneLimitAtMax(); },
                          &zov_fzs_zoninglimits_s::zones, "zones"};
constexpr Limit kAliases = {[](const DataCache &cache, void *) { return cache.aliasLimitAtMax(); },
                            &zov_fzs_zoninglimits_s::aliases, "aliases"};
constexpr Limit kZonesPerSet = {[](const DataCache &cache, void *set) { return cache.zonesPerZonesetAtMax(set); },
                                &zov_fzs_zoninglimits_s::zonesPerZoneset, "zones in a zone set"};
constexpr Limit kPerZone = {[](const DataCache &cache, void *zone) { return cache.membersPerZoneAtMax(zone); },
                            &zov_fzs_zoninglimits_s::membersPerZone, "members in a zone"};
constexpr Limit kPerAlias = {[](const DataCache &cache, void *alias) { return cache.membersPerAliasAtMax(alias); },
                             &zov_fzs_zoninglimits_s::membersPerAlias, "members in an alias"};

/// An edit: what it is about, how it is made, and the limit it can reach.
struct Edit {
    Kind kind;
    Object object;
    int (*perform)(DataCache &cache, const Statement &edit, const char *member);
    const Limit *limit;
};

constexpr std::array<Edit, 13> kEdits = {{
    {Kind::createSet, Object::zoneset,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.createZoneset(edit.name.c_str()); },
     &kZonesets},
    {Kind::createZone, Object::zone,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.createZone(edit.name.c_str(), edit.type); },
     &kZones},
    {Kind::createAlias, Object::alias,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.createZoneAlias(edit.name.c_str()); },
     &kAliases},
    {Kind::deleteSet, Object::zoneset,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.removeZoneset(edit.name.c_str()); },
     nullptr},
    {Kind::deleteZone, Object::zone,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.removeZone(edit.name.c_str()); }, nullptr},
    {Kind::deleteAlias, Object::alias,
     [](DataCache &cache, const Statement &edit, const char *) { return cache.removeZoneAlias(edit.name.c_str()); },
     nullptr},
    {Kind::addZone, Object::zoneset,
     [](DataCache &cache, const Statement &edit, const char *) {
         return cache.addZoneToZoneset(edit.name.c_str(), edit.zone.c_str());
     },
     &kZonesPerSet},
    {Kind::removeZone, Object::zoneset,
     [](DataCache &cache, const Statement &edit, const char *) {
         return cache.removeZoneFromZoneset(edit.name.c_str(), edit.zone.c_str());
     },
     nullptr},
    {Kind::addMember, Object::zone,
     [](DataCache &cache, const Statement &edit, const char *member) {
         return cache.addMemberToZone(edit.name.c_str(), edit.member.type, member);
     },
     &kPerZone},
    {Kind::removeMember, Object::zone,
     [](DataCache &cache, const Statement &edit, const char *member) {
         return cache.removeMemberFromZone(edit.name.c_str(), edit.member.type, member);
     },
     nullptr},
    {Kind::addAliasMember, Object::alias,
     [](DataCache &cache, const Statement &edit, const char *member) {
         return cache.addMemberToZoneAlias(edit.name.c_str(), edit.member.type, member);
     },
     &kPerAlias},
    {Kind::removeAliasMember, Object::alias,
     [](DataCache &cache, const Statement &edit, const char *member) {
         return cache.removeMemberFromZoneAlias(edit.name.c_str(), edit.member.type, member);
     },
     nullptr},
    {Kind::removeEverywhere, Object::none,
     [](DataCache &cache, const Statement &edit, const char *member) {
         return cache.removeMember(edit.member.type, member);
     },
     nullptr},
}};
// clang-format on

bool isIn(Kind kind, std::initializer_list<Kind> kinds) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool addsMember(const Statement &edit) {
    return isIn(edit.kind, {Kind::addMember, Kind::addAliasMember});
}

/// `zone set "night"`
std::string called(Object object, const std::string &name) {
    return fmt::format("{} {}", kObjects.at(static_cast<size_t>(object)).word, inQuotes(name));
}

std::string memberWords(const Statement &edit) {
    return "member " + printable(inScript(edit.member));
}

std::string notValid(const Statement &edit, Object object) {
    if (isIn(edit.kind, {Kind::createSet, Kind::createZone}))
        return fmt::format("the switch does not take {} as a name", inQuotes(edit.name));
    return fmt::format("the switch does not take {} as a member{}", printable(inScript(edit.member)),
                       object == Object::none ? "" : " of " + called(object, edit.name));
}

std::string notThere(const CacheLock &cache, const Statement &edit, Object object) {
    const DataCache &database = *cache;
    if (kObjects.at(static_cast<size_t>(object)).find(database, edit.name.c_str()) == nullptr)
        return fmt::format("there is no {}", called(object, edit.name));
    if (edit.kind == Kind::addZone)
        return fmt::format("there is no {}", called(Object::zone, edit.zone));
    if (edit.kind == Kind::removeZone)
        return fmt::format("{} does not hold {}", called(object, edit.name), called(Object::zone, edit.zone));
    return fmt::format("{}, or a copy of it in a zone set, does not have {}", called(object, edit.name),
                       memberWords(edit));
}

std::string thereAlready(const Statement &edit, Object object) {
    if (edit.kind == Kind::addZone)
        return fmt::format("{} holds {} already", called(object, edit.name), called(Object::zone, edit.zone));
    if (addsMember(edit))
        return fmt::format("{} has {} already", called(object, edit.name), memberWords(edit));
    return fmt::format("there is {} already", called(object, edit.name));
}

std::string failed(const Statement &edit) {
    const bool isNamed = isIn(edit.kind, {Kind::createSet, Kind::createZone, Kind::createAlias});
    if (isNamed && zov_ZonesetTestName(edit.name.c_str()) != 0)
        return fmt::format("the switch does not take {} as a name", inQuotes(edit.name));
    return "the switch library failed to do it";
}

Refusal limitReached(int32_t limit, const char *what) {
    return {kFailed, true, fmt::format("the switch takes no more than {} {}", limit, what)};
}

bool isReached(const CacheLock &cache, const Statement &statement, const Edit &edit) {
    if (edit.limit == nullptr)
        return false;
    const DataCache &database = *cache;
    void *object = kObjects.at(static_cast<size_t>(edit.object)).find(database, statement.name.c_str());
    const bool isNew = isIn(edit.kind, {Kind::createSet, Kind::createZone, Kind::createAlias});
    return (isNew || object != nullptr) && edit.limit->isReached(database, object);
}

} // namespace

std::optional<Refusal> perform(const CacheLock &cache, const Statement &statement) {
    const auto edit = std::find_if(kEdits.begin(), kEdits.end(),
                                   [&statement](const Edit &candidate) { return candidate.kind == statement.kind; });
    if (edit == kEdits.end())
        return std::nullopt;
    if (addsMember(statement) && cache->memberLimitAtMax())
        return limitReached(cache->getZoningLimits().members, "members in all");
    // Asked before the edit: afterwards a limit may have been reached by what was done of it.
    const bool atLimit = isReached(cache, statement, *edit);
    const std::string member = forLibrary(statement.member);
    const int code = edit->perform(*cache, statement, member.c_str());
    if (isIn(statement.kind, {Kind::addAliasMember, Kind::removeAliasMember, Kind::removeEverywhere}))
        cache->updateZoningCounts(); // these do not count anew, and the limits are about the counts
    switch (code) {
    case 0:
        return std::nullopt;
    case kNotValid:
        return Refusal{code, false, notValid(statement, edit->object)};
    case kNotThere:
        return Refusal{code, false, notThere(cache, statement, edit->object)};
    case kThereAlready:
        return Refusal{code, false, thereAlready(statement, edit->object)};
    default:
        return atLimit ? limitReached(cache->getZoningLimits().*edit->limit->number, edit->limit->what)
                       : Refusal{code, false, failed(statement)};
    }
}

} // namespace dcache
