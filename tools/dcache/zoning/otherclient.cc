#include "tools/dcache/zoning/otherclient.h"

#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

/// The object of a name that was created in a line before.
template <class Object> Object &named(std::vector<Object> &objects, const Statement &statement, const char *what) {
    const auto found = std::find_if(objects.begin(), objects.end(),
                                    [&statement](const Object &object) { return object.name == statement.name; });
    if (found == objects.end())
        throw Misuse(fmt::format("line {}: there is no {} {}", statement.line, what, inQuotes(statement.name)));
    return *found;
}

sim::ZoneMember memberIn(const Statement &statement) {
    return {statement.member.type, forLibrary(statement.member)};
}

} // namespace

sim::ZoningDatabase databaseFrom(const Script &description) {
    sim::ZoningDatabase database;
    for (const Statement &statement : description.statements) {
        switch (statement.kind) {
        case StatementKind::createSet:
            database.zonesets.push_back({statement.name, {}});
            break;
        case StatementKind::createZone:
            database.zones.push_back({statement.name, statement.type, {}});
            break;
        case StatementKind::createAlias:
            database.aliases.push_back({statement.name, {}});
            break;
        case StatementKind::addZone:
            named(database.zonesets, statement, "zone set").zones.push_back(statement.zone);
            break;
        case StatementKind::addMember:
            named(database.zones, statement, "zone").members.push_back(memberIn(statement));
            break;
        case StatementKind::addAliasMember:
            named(database.aliases, statement, "alias").members.push_back(memberIn(statement));
            break;
        default:
            break; // not about the database
        }
    }
    return database;
}

void giveZoning(sim::Simulator &device, const std::string &text) {
    const Script description = parseScript(text, ScriptPurpose::description);
    throwErrorsOf(description, "the zoning of the switch");
    try {
        device.setZoning(databaseFrom(description), sim::Notify::no);
        for (const Statement &statement : description.statements) {
            if (statement.kind == StatementKind::activate)
                device.activateZoneset(statement.name, sim::Notify::no);
            else if (statement.kind == StatementKind::lock)
                device.holdZoningLockElsewhere(true);
        }
    } catch (const std::invalid_argument &error) {
        throw Misuse(fmt::format("the switch does not take this zoning: {}", error.what()));
    }
}

} // namespace dcache
