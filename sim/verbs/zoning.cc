// Verbs for zoning, as another management client does it. What is defined is read, changed and committed as a whole, so an
// edit that a client saves meanwhile is lost.

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "sim/Record.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

struct TypeWord {
    const char *word;
    zov_fzs_zone_type_e type;
};

constexpr TypeWord kTypeWords[] = {{"soft", ZOV_ZT_SOFT}, {"hard-vpf", ZOV_ZT_HARDVPF}, {"hard-acl", ZOV_ZT_HARDACL}};

constexpr const char *kAliasPrefix = "alias:";

/// Members are told apart by their form, aliases by what they begin with.
ZoneMember memberOf(const std::string &text) {
    const std::string prefix = kAliasPrefix;
    if (text.compare(0, prefix.size(), prefix) == 0)
        return {ZOV_ZMT_ALIAS, text.substr(prefix.size())};
    if (const std::optional<std::string> wwn = wwnIn(text))
        return {ZOV_ZMT_PORTWWN, *wwn};
    return {text.find(':') == std::string::npos ? ZOV_ZMT_FCADDRESS : ZOV_ZMT_DOMAINPORT, text};
}

std::vector<ZoneMember> membersOf(const std::vector<std::string> &texts) {
    std::vector<ZoneMember> members;
    members.reserve(texts.size());
    for (const std::string &text : texts)
        members.push_back(memberOf(text));
    return members;
}

/// Puts a thing in the place of the one of its name, or at the end.
template <class Thing> void define(std::vector<Thing> &things, const Thing &thing) {
    const auto found =
        std::find_if(things.begin(), things.end(), [&](const Thing &known) { return known.name == thing.name; });
    if (found == things.end())
        things.push_back(thing);
    else
        *found = thing;
}

template <class Thing> void remove(std::vector<Thing> &things, const char *what, const std::string &name) {
    const auto found =
        std::find_if(things.begin(), things.end(), [&](const Thing &known) { return known.name == name; });
    if (found == things.end())
        throw std::invalid_argument(std::string("there is no ") + what + " '" + escaped(name) + "'");
    things.erase(found);
}

std::string defineSet(Simulator &device, const Given &given) {
    ZoningDatabase database = device.zoning();
    define(database.zonesets, {given.text("NAME"), given.rest()});
    device.setZoning(database, given.notify);
    return "";
}

std::string defineZone(Simulator &device, const Given &given) {
    ZoningDatabase database = device.zoning();
    Zone zone;
    zone.name = given.text("NAME");
    zone.members = membersOf(given.rest());
    for (const TypeWord &known : kTypeWords)
        if (given.has("type") && given.text("type") == known.word)
            zone.type = known.type;
    define(database.zones, zone);
    device.setZoning(database, given.notify);
    return "";
}

std::string defineAlias(Simulator &device, const Given &given) {
    ZoningDatabase database = device.zoning();
    define(database.aliases, {given.text("NAME"), membersOf(given.rest())});
    device.setZoning(database, given.notify);
    return "";
}

/// What refers to it forgets it.
std::string removeNamed(Simulator &device, const Given &given) {
    ZoningDatabase database = device.zoning();
    const std::string &name = given.text("NAME");
    if (given.choice() == "set")
        remove(database.zonesets, "zone set", name);
    if (given.choice() == "zone") {
        remove(database.zones, "zone", name);
        for (ZoneSet &zoneset : database.zonesets)
            zoneset.zones.erase(std::remove(zoneset.zones.begin(), zoneset.zones.end(), name), zoneset.zones.end());
    }
    if (given.choice() == "alias") {
        remove(database.aliases, "alias", name);
        const ZoneMember reference = {ZOV_ZMT_ALIAS, name};
        for (Zone &zone : database.zones)
            zone.members.erase(std::remove(zone.members.begin(), zone.members.end(), reference), zone.members.end());
    }
    device.setZoning(database, given.notify);
    return "";
}

std::string clearZoning(Simulator &device, const Given &given) {
    device.setZoning({}, given.notify);
    return "";
}

std::string activate(Simulator &device, const Given &given) {
    device.activateZoneset(given.text("NAME"), given.notify);
    return "";
}

std::string deactivate(Simulator &device, const Given &given) {
    device.activateZoneset("", given.notify);
    return "";
}

// ---- looking at it -----------------------------------------------------------------------------------

std::string textOf(const std::vector<ZoneMember> &members) {
    std::string text;
    for (const ZoneMember &member : members)
        text += " " + wordFor((member.type == ZOV_ZMT_ALIAS ? kAliasPrefix : "") + member.text);
    return text;
}

/// The commands that define it, in an order in which they can be carried out.
std::string showZoning(Simulator &device, const Given &given) {
    const ZoningDatabase database = given.choice() == "active" ? device.activeZoning() : device.zoning();
    Lines lines;
    for (const ZoneAlias &alias : database.aliases)
        lines.add("zoning define alias " + wordFor(alias.name) + textOf(alias.members));
    for (const Zone &zone : database.zones) {
        std::string line = "zoning define zone " + wordFor(zone.name);
        for (const TypeWord &known : kTypeWords)
            if (zone.type == known.type)
                line += std::string(" type=") + known.word;
        lines.add(line + textOf(zone.members));
    }
    for (const ZoneSet &zoneset : database.zonesets) {
        std::string line = "zoning define set " + wordFor(zoneset.name);
        for (const std::string &zone : zoneset.zones)
            line += " " + wordFor(zone);
        lines.add(line);
    }
    return lines.text();
}

struct LimitOption {
    const char *name;
    int32_t zov_fzs_zoninglimits_s::*limit;
};

constexpr LimitOption kLimits[] = {
    {"sets", &zov_fzs_zoninglimits_s::zonesets},
    {"zones", &zov_fzs_zoninglimits_s::zones},
    {"members", &zov_fzs_zoninglimits_s::members},
    {"zones-per-set", &zov_fzs_zoninglimits_s::zonesPerZoneset},
    {"members-per-zone", &zov_fzs_zoninglimits_s::membersPerZone},
    {"aliases", &zov_fzs_zoninglimits_s::aliases},
    {"members-per-alias", &zov_fzs_zoninglimits_s::membersPerAlias},
};

/// Tells the limits as they are now.
std::string limitZoning(Simulator &device, const Given &given) {
    zov_fzs_zoninglimits_s limits = device.zoningLimits();
    bool isChange = false;
    std::string text = "zoning limits";
    for (const LimitOption &option : kLimits) {
        if (given.has(option.name)) {
            limits.*option.limit = given.integer(option.name);
            isChange = true;
        }
        text += std::string(" ") + option.name + "=" + std::to_string(limits.*option.limit);
    }
    if (isChange)
        device.setZoningLimits(limits);
    return isChange ? "" : text;
}

constexpr Verb kVerbs[] = {
    {"zoning define alias NAME [MEMBER...]", "Commits an alias with these members, in place of the one of its name.",
     "zoning define alias tape 21:00:00:24:FF:01:00:01 1:5", Tells::notification, defineAlias},
    {"zoning define zone NAME [type=soft|hard-vpf|hard-acl] [MEMBER...]",
     "Commits a zone with these members, in place of the one of its name.",
     "zoning define zone backup type=hard-acl 21000024FF010002 1:7 010A00 alias:disks", Tells::notification,
     defineZone},
    {"zoning define set NAME [ZONE...]", "Commits a zone set of these zones, in place of the one of its name.",
     "zoning define set day backup", Tells::notification, defineSet},
    {"zoning remove set|zone|alias NAME", "Commits the database without one of these, wherever it is referred to.",
     "zoning remove alias disks", Tells::notification, removeNamed},
    {"zoning clear", "Commits an empty database.", "zoning clear", Tells::notification, clearZoning},
    {"zoning activate NAME", "Activates a defined zone set.", "zoning activate night", Tells::notification, activate},
    {"zoning deactivate", "Deactivates the active zone set.", "zoning deactivate", Tells::notification, deactivate},
    {"zoning show defined|active", "Lists the commands that define what there is.", "zoning show active",
     Tells::nothing, showZoning},
    {"zoning limits [sets=INTEGER] [zones=INTEGER] [members=INTEGER] [zones-per-set=INTEGER] "
     "[members-per-zone=INTEGER] [aliases=INTEGER] [members-per-alias=INTEGER]",
     "Sets how much fits into the database from now on; without a limit, tells them all.", "zoning limits zones=2",
     Tells::nothing, limitZoning},
};

} // namespace

VerbGroup zoningVerbs() {
    return {"Zoning, by another management client", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
