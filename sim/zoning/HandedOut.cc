#include "sim/zoning/HandedOut.h"

#include "sim/record/Scanner.h"
#include "sim/zoning/Names.h"

namespace sim {

namespace {

struct LimitRow {
    const char *name;
    int32_t Limits::*limit;
};

constexpr LimitRow kLimits[] = {
    {"zonesets ", &Limits::zonesets},
    {"zones ", &Limits::zones},
    {"members ", &Limits::members},
    {"zones per zoneset ", &Limits::zonesPerZoneset},
    {"members per zone ", &Limits::membersPerZone},
    {"aliases ", &Limits::aliases},
    {"members per alias ", &Limits::membersPerAlias},
};

constexpr const char *kNoNames = "none";

std::string shownMembers(const Catalog<MemberId> &members) {
    std::string text = " [";
    const char *separator = "";
    for (const MemberId &member : members) {
        text += separator + quoted(describe(member));
        separator = ", ";
    }
    return text + "]";
}

bool readMembers(Scanner &text, Catalog<MemberId> &members) {
    if (!text.take(" ["))
        return false;
    for (bool isFirst = true; !text.take("]"); isFirst = false) {
        if (!isFirst && !text.take(", "))
            return false;
        const std::optional<std::string> words = text.quotedText();
        const std::optional<MemberId> member = words ? memberFromDescription(*words) : std::nullopt;
        if (!member || !members.add(*member))
            return false;
    }
    return true;
}

std::optional<std::string> readName(Scanner &text) {
    std::optional<std::string> name = text.quotedText();
    return name && name->size() <= kLongestName ? name : std::nullopt;
}

bool readZone(Scanner &text, StoredZone &zone) {
    const std::optional<std::string> name = readName(text);
    if (!name || !text.take(" "))
        return false;
    const std::optional<int32_t> type = text.number<int32_t>();
    if (!type)
        return false;
    zone.name = *name;
    zone.type = static_cast<zov_fzs_zone_type_e>(*type);
    return readMembers(text, zone.members);
}

bool readAlias(Scanner &text, StoredAlias &alias) {
    const std::optional<std::string> name = readName(text);
    if (!name)
        return false;
    alias.name = *name;
    return readMembers(text, alias.members);
}

} // namespace

std::string shownLimits(const Limits &limits) {
    std::string text;
    for (const LimitRow &row : kLimits)
        text += (text.empty() ? "" : ", ") + std::string(row.name) + std::to_string(limits.*row.limit);
    return text;
}

std::optional<Limits> readLimits(const std::string &text) {
    Scanner scanner(text);
    Limits limits = {};
    bool isFirst = true;
    for (const LimitRow &row : kLimits) {
        if ((!isFirst && !scanner.take(", ")) || !scanner.take(row.name))
            return std::nullopt;
        const std::optional<int32_t> number = scanner.number<int32_t>();
        if (!number)
            return std::nullopt;
        limits.*row.limit = *number;
        isFirst = false;
    }
    return scanner.atEnd() ? std::optional<Limits>(limits) : std::nullopt;
}

std::string shownNames(const std::vector<std::string> &names) {
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + quoted(name);
    return text.empty() ? kNoNames : text;
}

std::optional<std::vector<std::string>> readNames(const std::string &text) {
    std::vector<std::string> names;
    if (text == kNoNames)
        return names;
    Scanner scanner(text);
    do {
        const std::optional<std::string> name = readName(scanner);
        if (!name)
            return std::nullopt;
        names.push_back(*name);
    } while (scanner.take(", "));
    return scanner.atEnd() ? std::optional<std::vector<std::string>>(names) : std::nullopt;
}

Contents FetchedZoneSet::contents() const {
    Contents contents;
    for (const StoredZone &zone : zones)
        contents.zones.push_back(&zone);
    for (const StoredAlias &alias : aliases)
        contents.aliases.push_back(&alias);
    return contents;
}

std::string shownZoneSet(const std::string &name, const Contents &contents) {
    std::string text = quoted(name);
    const char *separator = ": ";
    for (const StoredZone *zone : contents.zones) {
        text += separator + ("zone " + quoted(zone->name)) + " " + std::to_string(static_cast<int32_t>(zone->type)) +
                shownMembers(zone->members);
        separator = ", ";
    }
    for (const StoredAlias *alias : contents.aliases) {
        text += separator + ("alias " + quoted(alias->name)) + shownMembers(alias->members);
        separator = ", ";
    }
    return text;
}

std::optional<FetchedZoneSet> readZoneSet(const std::string &text) {
    Scanner scanner(text);
    const std::optional<std::string> name = readName(scanner);
    if (!name)
        return std::nullopt;
    FetchedZoneSet set{*name, {}, {}};
    for (const char *separator = ": "; !scanner.atEnd(); separator = ", ") {
        if (!scanner.take(separator))
            return std::nullopt;
        const bool isUnderstood = scanner.take("zone ")    ? readZone(scanner, set.zones.emplace_back())
                                  : scanner.take("alias ") ? readAlias(scanner, set.aliases.emplace_back())
                                                           : false;
        if (!isUnderstood)
            return std::nullopt;
    }
    return set;
}

} // namespace sim
