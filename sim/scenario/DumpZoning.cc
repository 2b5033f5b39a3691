// Zoning on its way into a scenario.

#include <algorithm>

#include "sim/scenario/Dump.h"
#include "sim/scenario/ZoningWords.h"

namespace sim {

namespace {

template <class Thing> const Thing *thingNamed(const std::vector<Thing> &things, const std::string &name) {
    const auto found =
        std::find_if(things.begin(), things.end(), [&](const Thing &thing) { return thing.name == name; });
    return found == things.end() ? nullptr : &*found;
}

/// What activating a zone set makes of a database.
ZoningDatabase activated(const ZoningDatabase &database, const std::string &name) {
    const ZoneSet *zoneset = thingNamed(database.zonesets, name);
    ZoningDatabase active;
    if (!zoneset)
        return active;
    active.zonesets = {*zoneset};
    for (const std::string &zoneName : zoneset->zones) {
        active.zones.push_back(*thingNamed(database.zones, zoneName));
        for (const ZoneMember &member : active.zones.back().members)
            if (member.type == ZOV_ZMT_ALIAS && !thingNamed(active.aliases, member.text))
                active.aliases.push_back(*thingNamed(database.aliases, member.text));
    }
    return active;
}

std::vector<std::string> textsOf(const std::vector<ZoneMember> &members) {
    std::vector<std::string> texts;
    std::transform(members.begin(), members.end(), std::back_inserter(texts), textOf);
    return texts;
}

/// "[[zoning.zone]]"
std::string header(const std::string &path, const char *kind) {
    return "[[" + path + "." + kind + "]]";
}

void write(TomlText &text, const std::string &path, const ZoningDatabase &database) {
    for (const ZoneAlias &alias : database.aliases) {
        text.under(header(path, "alias"));
        text.line("name", alias.name);
        text.list("members", textsOf(alias.members));
    }
    for (const Zone &zone : database.zones) {
        text.under(header(path, "zone"));
        text.line("name", zone.name);
        for (const ZoneTypeWord &known : kZoneTypes)
            if (zone.type == known.type && zone.type != ZOV_ZT_SOFT)
                text.line("type", known.word);
        text.list("members", textsOf(zone.members));
    }
    for (const ZoneSet &zoneset : database.zonesets) {
        text.under(header(path, "zoneset"));
        text.line("name", zoneset.name);
        text.list("zones", zoneset.zones);
    }
}

void writeLimits(Dump &dump) {
    const zov_fzs_zoninglimits_s limits = dump.now.zoningLimits();
    const zov_fzs_zoninglimits_s usual = dump.other->zoningLimits();
    dump.zoning.under("[zoning.limits]");
    for (const LimitField &field : kLimitFields)
        if (limits.*field.limit != usual.*field.limit)
            dump.zoning.line(field.name, limits.*field.limit);
}

void writeChecksum(Dump &dump, const char *name, const char *key) {
    if (takeOver(dump, key))
        dump.zoning.line(name, dump.now.get(key));
}

} // namespace

/// The other switch gets the same, as it is read: without limits, and what was defined formerly first.
void dumpZoning(Dump &dump) {
    constexpr int32_t most = 0x7FFFFFFF;
    const ZoningDatabase defined = dump.now.zoning();
    const ZoningDatabase active = dump.now.activeZoning();
    const std::string name = active.zonesets.empty() ? "" : active.zonesets.front().name;
    const bool isFormer = !(activated(defined, name) == active);
    const zov_fzs_zoninglimits_s usual = dump.other->zoningLimits();
    dump.other->setZoningLimits({most, most, most, most, most, most, most});
    dump.other->setZoning(isFormer ? active : defined, Notify::no);
    dump.other->activateZoneset(name, Notify::no);
    dump.other->setZoning(defined, Notify::no);
    dump.other->setZoningLimits(usual);

    dump.zoning.under("[zoning]");
    if (!name.empty())
        dump.zoning.line("active", name);
    writeChecksum(dump, "active_checksum", kActiveChecksumKey);
    writeChecksum(dump, "defined_checksum", kDefinedChecksumKey);
    writeLimits(dump);
    write(dump.zoning, "zoning", defined);
    if (isFormer)
        write(dump.zoning, "zoning.formerly", active);
}

} // namespace sim
