#include <algorithm>
#include <array>
#include <cstdio>
#include <fmt/format.h>
#include <unistd.h>

#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/interruptibly.h"
#include "tools/dcache/words.h"
#include "tools/dcache/zoning/difference.h"
#include "tools/dcache/zoning/picture.h"
#include "tools/dcache/zoning/script.h"
#include "tools/dcache/zoning/session.h"

namespace dcache {
namespace {

void load() {
    loadOnce(DataCacheArea::zoning);
    const CacheLock cache;
    if (cache->getZoningLimits().zonesets == 0)
        cache->initZoningLimits(); // they were asked for once, when the connection was made
}

// ---- tables --------------------------------------------------------------------------------------------

Cell textCell(const std::string &text) {
    return {text, printable(text)};
}

/// For people a line each.
Cell listCell(const std::vector<std::string> &texts) {
    Cell cell{texts, ""};
    for (const std::string &text : texts)
        cell.text += (cell.text.empty() ? "" : "\n") + printable(text);
    return texts.empty() ? Cell{texts, "-", Tone::faint} : cell;
}

Cell membersCell(const std::vector<Member> &members) {
    std::vector<std::string> texts;
    texts.reserve(members.size());
    for (const Member &member : members)
        texts.push_back(inScript(member));
    return listCell(texts);
}

Fact activeFact(const std::optional<ZoningPicture> &active) {
    const std::string name = active ? active->zonesets.front().name : "";
    return {"activeZoneset", "active zone set",
            active ? Cell{name, printable(name), Tone::good} : Cell{nullptr, "none", Tone::faint}};
}

Listing zonesetsOf(const ZoningPicture &zoning, const std::string &active) {
    Listing listing{"zonesets", {{"name", "ZONE SET"}, {"active", "ACTIVE"}, {"zones", "ZONES"}}, {}, "No zone sets."};
    for (const ZonesetPicture &zoneset : zoning.zonesets) {
        const bool isActive = zoneset.name == active;
        listing.rows.push_back({textCell(zoneset.name),
                                {isActive, isActive ? "yes" : "-", isActive ? Tone::good : Tone::faint},
                                listCell(zoneset.zones)});
    }
    return listing;
}

Listing zonesOf(const ZoningPicture &zoning) {
    Listing listing{"zones", {{"name", "ZONE"}, {"type", "TYPE"}, {"members", "MEMBERS"}}, {}, "No zones."};
    for (const ZonePicture &zone : zoning.zones)
        listing.rows.push_back({textCell(zone.name), textCell(zoneTypeWord(zone.type)), membersCell(zone.members)});
    return listing;
}

Listing aliasesOf(const ZoningPicture &zoning) {
    Listing listing{"aliases", {{"name", "ALIAS"}, {"members", "MEMBERS"}}, {}, "No aliases."};
    for (const AliasPicture &alias : zoning.aliases)
        listing.rows.push_back({textCell(alias.name), membersCell(alias.members)});
    return listing;
}

template <class Object, class Parts> int most(const std::vector<Object> &objects, Parts Object::*parts) {
    size_t count = 0;
    for (const Object &object : objects)
        count = std::max(count, (object.*parts).size());
    return static_cast<int>(count);
}

/// The counts against the limits; a member of an alias counts for every zone that has the alias, too.
Listing limitsOf(const CacheLock &cache, const ZoningPicture &zoning) {
    const zov_fzs_zoninglimits_s used = cache->getZoningCounts();
    const zov_fzs_zoninglimits_s limits = cache->getZoningLimits();
    struct Row {
        const char *what;
        int used;
        int limit;
    };
    const std::array<Row, 7> rows = {{
        {"zone sets", used.zonesets, limits.zonesets},
        {"zones", used.zones, limits.zones},
        {"aliases", used.aliases, limits.aliases},
        {"members", used.members, limits.members},
        {"zones in a zone set", most(zoning.zonesets, &ZonesetPicture::zones), limits.zonesPerZoneset},
        {"members in a zone", most(zoning.zones, &ZonePicture::members), limits.membersPerZone},
        {"members in an alias", most(zoning.aliases, &AliasPicture::members), limits.membersPerAlias},
    }};
    Listing listing{"limits", {{"what", "LIMIT OF"}, {"used", "USED"}, {"limit", "AT MOST"}}, {}};
    for (const Row &row : rows)
        listing.rows.push_back({textCell(row.what),
                                {row.used, std::to_string(row.used), row.used < row.limit ? Tone::plain : Tone::bad},
                                row.limit > 0 ? Cell{row.limit, std::to_string(row.limit)} : emptyCell("?")});
    return listing;
}

Tone toneOf(const std::string &change) {
    return change == "added" ? Tone::good : change == "removed" ? Tone::bad : Tone::accent;
}

Listing changesListing(const char *key, const std::vector<ZoningChange> &changes, const std::string &whenEmpty) {
    Listing listing{
        key,
        {{"change", "CHANGE"}, {"object", "OBJECT"}, {"name", "NAME"}, {"part", nullptr}, {"value", "PART"}},
        {},
        whenEmpty};
    for (const ZoningChange &change : changes) {
        const std::string part = *change.part != '\0' ? change.part + (" " + printable(change.value)) : "-";
        listing.rows.push_back({{change.change, change.change, toneOf(change.change)},
                                textCell(change.object),
                                textCell(change.name),
                                textCell(change.part),
                                {change.value, part}});
    }
    return listing;
}

// ---- scripts -------------------------------------------------------------------------------------------

/// On stderr, whether anybody reads it or not: an edit does not stop for that.
void say(const std::string &words) {
    std::fputs((words + '\n').c_str(), stderr);
}

Script readScript(const std::string &text) {
    Script script = parseScript(text, ScriptPurpose::edits);
    throwErrorsOf(script, "the script");
    return script;
}

/// What the script makes of the cached database.
std::vector<ZoningChange> rehearse(const std::string &script, const Progress &progress, size_t &edits) {
    ZoningSession session(readScript(script), "", progress);
    load();
    ZoningPicture before;
    {
        const CacheLock cache;
        before = definedZoning(cache);
    }
    const SessionResult result = session.rehearse();
    edits = result.edits;
    return difference(before, result.edited);
}

[[noreturn]] void endAtOnce(bool isCommitting) {
    say(isCommitting ? "dcache: interrupted while the switch works on the commit; see later whether it took it"
                     : "dcache: interrupted; the switch does not answer, and frees the zoning lock when this "
                       "connection ends");
    _exit(kFailedExit); // a thread waits for the switch, and nothing could end it
}

Report reportOn(const SessionResult &result) {
    Report report;
    report.facts = {{"edits", "edits", {result.edits, std::to_string(result.edits)}},
                    {"committed",
                     "committed",
                     {result.committed, result.committed ? "yes" : "no", result.committed ? Tone::good : Tone::faint}}};
    if (!result.committed) {
        report.notes = {"The script does not end in a commit: the edits were tried out and dropped."};
        return report;
    }
    const CacheLock cache;
    const auto active = activeZoning(cache);
    report.facts.push_back(activeFact(active));
    report.listings = {
        changesListing("deviations", result.deviations, "The switch now has what the script made of its zoning."),
        limitsOf(cache, definedZoning(cache))};
    if (!result.deviations.empty())
        report.notes = {"The switch has something else than was committed: somebody has changed it since."};
    return report;
}

// clang-format off
constexpr const char *kHelp =
    "Scripts: one edit a line, # begins a comment.\n"
    "  create set SET                 delete set SET\n"
    "  create zone ZONE acl|soft|vpf  delete zone ZONE\n"
    "  create alias ALIAS             delete alias ALIAS\n"
    "  add zone SET ZONE              remove zone SET ZONE\n"
    "  add member ZONE MEMBER         remove member ZONE MEMBER\n"
    "  add alias-member ALIAS MEMBER  remove alias-member ALIAS MEMBER\n"
    "  commit (only at the end)       remove everywhere MEMBER\n\n"
    "Members: a port name, 10:00:00:C0:DD:00:A1:B2 or without colons; DOMAIN:PORT,\n"
    "1:10; an address of six hexadecimal digits, 010A00; alias NAME.\n\n"
    "Edits are made under the fabric's zoning lock, and reach the switch with the\n"
    "commit. The first one refused ends the run, with its line, why, and the code of\n"
    "the cache: 1 not valid, 2 not there, 3 there already, 4 limit or failure.\n\n"
    "Exit codes: 0 done, 1 failed, 2 usage or an error in a script, 3 zoning lock\n"
    "busy or lost, 4 limit reached, 5 commit rejected by the switch.\n\n"
    "--zoning gives a simulated switch what a script creates and adds; in addition,\n"
    "\"activate SET\" makes a set active, \"lock\" lets another client hold the lock.\n\n"
    "Examples:\n  dcache zoning --zoning before.txt\n"
    "  dcache zoning diff --zoning before.txt edits.txt\n"
    "  dcache zoning run --zoning before.txt edits.txt\n"
    "  dcache zoning dump --zoning before.txt";
// clang-format on

} // namespace

const char *zoningHelp() {
    return kHelp;
}

Report showZoning(bool activeOnly) {
    load();
    const CacheLock cache;
    const auto active = activeZoning(cache);
    Report report;
    report.facts = {activeFact(active)};
    if (activeOnly) {
        const ZoningPicture alone = active.value_or(ZoningPicture());
        report.listings = {zonesOf(alone), aliasesOf(alone)};
        return report;
    }
    const ZoningPicture defined = definedZoning(cache);
    const std::string name = active ? active->zonesets.front().name : "";
    report.listings = {zonesetsOf(defined, name), zonesOf(defined), aliasesOf(defined), limitsOf(cache, defined)};
    if (active && !difference(*active, zonesetAlone(defined, name)).empty())
        report.notes = {"What is active is not what is defined under its name: \"dcache zoning diff\" tells more."};
    return report;
}

std::string dumpZoning() {
    load();
    const CacheLock cache;
    const auto active = activeZoning(cache);
    const std::string name = active ? active->zonesets.front().name : "";
    return (active ? fmt::format("# zone set {} is active\n", inQuotes(name)) : "# no zone set is active\n") +
           scriptOf(definedZoning(cache));
}

Report diffZoning(const std::optional<std::string> &script) {
    Report report;
    if (script) {
        size_t edits = 0;
        const auto changes = rehearse(
            *script, [](const std::string &) {}, edits);
        report.listings = {changesListing("changes", changes, "No difference.")};
        return report;
    }
    load();
    const CacheLock cache;
    const auto active = activeZoning(cache);
    const std::string name = active ? active->zonesets.front().name : "";
    const auto changes =
        active ? difference(*active, zonesetAlone(definedZoning(cache), name)) : std::vector<ZoningChange>();
    report.listings = {changesListing("changes", changes,
                                      active ? fmt::format("What is active is what is defined as {}.", inQuotes(name))
                                             : "No zone set is active.")};
    if (!changes.empty())
        report.notes = {fmt::format("From what is active to what is defined as {}.", inQuotes(name))};
    return report;
}

Report runZoning(const ZoningRun &run) {
    if (run.dryRun) {
        size_t edits = 0;
        const auto changes = rehearse(run.script, say, edits);
        Report report;
        report.facts = {{"edits", "edits", {edits, std::to_string(edits)}},
                        {"committed", "committed", {false, "no (dry run)", Tone::faint}}};
        report.listings = {changesListing("changes", changes, "No difference.")};
        return report;
    }
    ZoningSession session(readScript(run.script), run.holder, say);
    load();
    return reportOn(runInterruptibly<SessionResult>([&session] { return session.run(); },
                                                    [&session] { session.stop(); },
                                                    [&session] { endAtOnce(session.isCommitting()); }));
}

} // namespace dcache
