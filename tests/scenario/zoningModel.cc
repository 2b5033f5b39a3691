#include "tests/scenario/zoningModel.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include <fmt/format.h>

#include "tests/scenario/zoningFind.h"

namespace scenario {

namespace {

bool isHexadecimal(const std::string &text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
}

/// More than any domain or port for what is no number.
unsigned numberIn(const std::string &text, int base) {
    constexpr unsigned none = 1000;
    char *end = nullptr;
    const unsigned long number = std::strtoul(text.c_str(), &end, base);
    return text.empty() || !isHexadecimal(text) || *end != '\0' || number > none ? none : static_cast<unsigned>(number);
}

std::string inCapitals(std::string text) {
    for (char &c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

/// A zone set of a database with its zones and the aliases that these refer to.
CachedZoneset cutOut(const sim::ZoningDatabase &database, const sim::ZoneSet &zoneset, _ZoneSetTypes kind) {
    CachedZoneset part{zoneset.name, kind, {}, {}};
    for (const std::string &name : zoneset.zones) {
        part.zones.push_back(*named(database.zones, name));
        for (const sim::ZoneMember &member : part.zones.back().members)
            if (member.type == ZOV_ZMT_ALIAS && named(part.aliases, member.text) == nullptr)
                part.aliases.push_back(*named(database.aliases, member.text));
    }
    return part;
}

// ---- comparing ----------------------------------------------------------------------------------------

void sortMembers(std::vector<sim::ZoneMember> &members) {
    std::sort(members.begin(), members.end(), [](const sim::ZoneMember &one, const sim::ZoneMember &other) {
        return std::pair(one.type, one.text) < std::pair(other.type, other.text);
    });
}

template <class Things> void sortByName(Things &things) {
    std::sort(things.begin(), things.end(), [](const auto &one, const auto &other) { return one.name < other.name; });
}

/// The order in which things are listed makes no other database.
sim::ZoningDatabase sorted(sim::ZoningDatabase database) {
    for (sim::ZoneSet &zoneset : database.zonesets)
        std::sort(zoneset.zones.begin(), zoneset.zones.end());
    for (sim::Zone &zone : database.zones)
        sortMembers(zone.members);
    for (sim::ZoneAlias &alias : database.aliases)
        sortMembers(alias.members);
    sortByName(database.zonesets);
    sortByName(database.zones);
    sortByName(database.aliases);
    return database;
}

template <class Group> std::string describeGroup(const char *what, const Group &group) {
    std::string text = fmt::format("  {} {}:", what, group.name);
    for (const sim::ZoneMember &member : group.members)
        text += fmt::format(" {}/{}", static_cast<int>(member.type), member.text);
    return text + '\n';
}

template <class Holder> std::string describeContents(const Holder &holder) {
    std::string text;
    for (const sim::Zone &zone : holder.zones)
        text += describeGroup(fmt::format("zone of type {}", static_cast<int>(zone.type)).c_str(), zone);
    for (const sim::ZoneAlias &alias : holder.aliases)
        text += describeGroup("alias", alias);
    return text;
}

} // namespace

std::string describe(const CachedZonesets &zonesets) {
    std::string text;
    for (const auto &[key, zoneset] : zonesets)
        text += fmt::format("{}: {} of kind {}\n", key, zoneset.name, static_cast<int>(zoneset.kind)) +
                describeContents(zoneset);
    return text;
}

std::string describe(const sim::ZoningDatabase &database) {
    std::string text;
    for (const sim::ZoneSet &zoneset : database.zonesets) {
        text += fmt::format("zone set {}:", zoneset.name);
        for (const std::string &zone : zoneset.zones)
            text += " " + zone;
        text += '\n';
    }
    return text + describeContents(database);
}

// ---- members and names --------------------------------------------------------------------------------

std::optional<sim::ZoneMember> memberFrom(zov_fzs_zonemember_type_e type, const char *given) {
    std::string text = given != nullptr ? given : "";
    switch (type) {
    case ZOV_ZMT_PORTWWN:
        if (text.size() == 23)
            text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
        if (text.size() != 16 || !isHexadecimal(text))
            return std::nullopt;
        return sim::ZoneMember{type, inCapitals(text)};
    case ZOV_ZMT_FCADDRESS:
        if (text.size() != 6 || !isHexadecimal(text))
            return std::nullopt;
        return sim::ZoneMember{type, inCapitals(text)};
    case ZOV_ZMT_DOMAINPORT: {
        const std::size_t colon = text.find(':');
        const bool digits = text.size() == 4 && isHexadecimal(text);
        const unsigned domain = digits ? numberIn(text.substr(0, 2), 16) : numberIn(text.substr(0, colon), 10);
        const unsigned port = digits ? numberIn(text.substr(2), 16)
                                     : numberIn(colon == std::string::npos ? "" : text.substr(colon + 1), 10);
        if (domain < 1 || domain > 239 || port > 255)
            return std::nullopt;
        return sim::ZoneMember{type, fmt::format("{}:{}", domain, port)};
    }
    case ZOV_ZMT_ALIAS:
        if (text.empty() || text.size() > 64)
            return std::nullopt;
        return sim::ZoneMember{type, text};
    default:
        return std::nullopt;
    }
}

bool isZoningName(const char *name) {
    const std::string text = name != nullptr ? name : "";
    const auto belongs = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || (c != '\0' && std::strchr("$-^_", c) != nullptr);
    };
    return !text.empty() && text.size() <= 64 && std::isalpha(static_cast<unsigned char>(text.front())) &&
           std::all_of(text.begin(), text.end(), belongs);
}

// ---- the switch ---------------------------------------------------------------------------------------

void ZoningOnSwitch::commit(const sim::ZoningDatabase &database) {
    if (const sim::ZoneSet *zoneset = named(database.zonesets, activeName()); zoneset != nullptr) {
        const CachedZoneset part = cutOut(database, *zoneset, ZONESET_ACTIVE);
        const sim::ZoningDatabase active{{*zoneset}, part.zones, part.aliases};
        if (!(sorted(active) == sorted(_active))) {
            _active = active;
            ++_activeVersion;
        }
    }
    if (sorted(database) == sorted(_defined))
        return;
    _defined = database;
    ++_definedVersion;
}

void ZoningOnSwitch::activate(const std::string &name) {
    sim::ZoningDatabase active;
    if (const sim::ZoneSet *zoneset = named(_defined.zonesets, name); zoneset != nullptr) {
        const CachedZoneset part = cutOut(_defined, *zoneset, ZONESET_ACTIVE);
        active = {{*zoneset}, part.zones, part.aliases};
    }
    if (sorted(active) == sorted(_active))
        return;
    _active = active;
    ++_activeVersion;
}

// ---- the cache ----------------------------------------------------------------------------------------

CachedZoneset *ZoningModel::zoneset(const char *key) {
    const auto found = key != nullptr ? _zonesets.find(key) : _zonesets.end();
    return found == _zonesets.end() ? nullptr : &found->second;
}

CachedZoneset *ZoningModel::uber() {
    return zoneset(kUberZonesetKey);
}

sim::Zone *ZoningModel::zoneInUber(const char *name) {
    return uber() != nullptr ? named(uber()->zones, name) : nullptr;
}

sim::ZoneAlias *ZoningModel::aliasInUber(const char *name) {
    return uber() != nullptr ? named(uber()->aliases, name) : nullptr;
}

void ZoningModel::recount() {
    _counts = {};
    for (const auto &[key, zoneset] : _zonesets)
        _counts.zonesets += zoneset.kind == ZONESET_INACTIVE ? 1 : 0;
    if (uber() == nullptr)
        return;
    _counts.zones = static_cast<int32_t>(uber()->zones.size());
    _counts.aliases = static_cast<int32_t>(uber()->aliases.size());
    std::map<std::string, std::size_t> sizes;
    for (const sim::ZoneAlias &alias : uber()->aliases)
        sizes[alias.name] = alias.members.size();
    std::size_t members = 0;
    for (const auto &[name, size] : sizes)
        members += size;
    for (const sim::Zone &zone : uber()->zones) {
        members += zone.members.size();
        for (const sim::ZoneMember &member : zone.members)
            members += member.type == ZOV_ZMT_ALIAS && sizes.count(member.text) != 0 ? sizes[member.text] : 0;
    }
    _counts.members = static_cast<int32_t>(members);
}

std::vector<std::string> ZoningModel::refresh(const ZoningOnSwitch &theSwitch) {
    std::vector<std::string> events;
    if (_activeVersion != theSwitch.activeVersion()) {
        if (_zonesets.erase(kActiveZonesetKey) != 0)
            recount();
        const sim::ZoningDatabase &active = theSwitch.active();
        if (!active.zonesets.empty()) {
            _zonesets[kActiveZonesetKey] = cutOut(active, active.zonesets.front(), ZONESET_ACTIVE);
            recount();
        }
        events.push_back(fmt::format("{}->{}", _activeName, theSwitch.activeName()));
        _activeName = theSwitch.activeName();
        _activeVersion = theSwitch.activeVersion();
    }
    if (_definedVersion == theSwitch.definedVersion())
        return events;
    const auto active = _zonesets.extract(kActiveZonesetKey);
    _zonesets.clear();
    if (!active.empty())
        _zonesets[kActiveZonesetKey] = active.mapped();
    const sim::ZoningDatabase &defined = theSwitch.defined();
    for (const sim::ZoneSet &zoneset : defined.zonesets)
        _zonesets[zoneset.name] = cutOut(defined, zoneset, ZONESET_INACTIVE);
    _zonesets[kUberZonesetKey] = {"__UberZoneset__", ZONESET_UBER, defined.zones, defined.aliases};
    recount();
    events.emplace_back("database");
    _definedVersion = theSwitch.definedVersion();
    return events;
}

sim::ZoningObjectCounts ZoningModel::objects() const {
    sim::ZoningObjectCounts objects;
    for (const auto &[key, zoneset] : _zonesets) {
        ++objects.zonesets;
        objects.zones += zoneset.zones.size();
        objects.aliases += zoneset.aliases.size();
        for (const sim::Zone &zone : zoneset.zones)
            objects.members += zone.members.size();
        for (const sim::ZoneAlias &alias : zoneset.aliases)
            objects.members += alias.members.size();
    }
    return objects;
}

} // namespace scenario
