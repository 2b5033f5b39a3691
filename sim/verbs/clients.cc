// Verbs for what clients meet: locks held elsewhere, a reboot, notifications; and for what they did.

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "sim/levers/Duration.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

std::string lockAdminMode(Simulator &device, const Given &given) {
    device.holdAdminModeElsewhere(given.choice() == "elsewhere");
    return "";
}

std::string lockZoning(Simulator &device, const Given &given) {
    device.holdZoningLockElsewhere(given.choice() == "elsewhere");
    return "";
}

std::string holderText(uint32_t holder) {
    if (holder == 0)
        return "nobody";
    return holder == kOtherClient ? "another client" : "connection " + std::to_string(holder);
}

std::string tellWho(Simulator &device, const Given &) {
    Lines lines;
    lines.add("connections made: " + std::to_string(device.connectionCount()));
    lines.add("admin mode: " + holderText(device.adminModeHolder()));
    lines.add("zoning lock: " + holderText(device.zoningLockHolder()));
    return lines.text();
}

std::string reboot(Simulator &device, const Given &) {
    device.restart();
    return "";
}

// ---- notifications -----------------------------------------------------------------------------------

std::string deliver(Simulator &device, const Given &given) {
    device.deliver(given.integer("CODE"), {given.integer("A"), given.integer("B"), given.integer("C")},
                   given.has("TEXT") ? given.text("TEXT") : "");
    return "";
}

std::string waitUntilQuiet(Simulator &device, const Given &given) {
    const std::chrono::milliseconds limit =
        given.has("TIME") ? parseDuration(given.text("TIME")).value() : std::chrono::seconds(10);
    if (!device.waitUntilQuiet(std::min<std::chrono::milliseconds>(limit, std::chrono::hours(24))))
        throw std::invalid_argument("some notifications have not been taken in time");
    return "";
}

// ---- what clients did --------------------------------------------------------------------------------

std::string listRecords(Simulator &device, const Given &given) {
    const std::vector<Record> records = device.records();
    const size_t wanted = given.has("NUMBER") ? given.number("NUMBER") : records.size();
    Lines lines;
    for (size_t i = records.size() - std::min(wanted, records.size()); i < records.size(); ++i)
        lines.add(records[i].line());
    return lines.text();
}

std::string clearRecords(Simulator &device, const Given &) {
    device.clearRecords();
    return "";
}

std::string keepRecords(Simulator &device, const Given &given) {
    device.keepRecords(given.choice() == "yes");
    return "";
}

std::string listMisuses(Simulator &device, const Given &) {
    Lines lines;
    for (const std::string &misuse : device.misuses())
        lines.add(misuse);
    return lines.text();
}

std::string countObjects(Simulator &device, const Given &) {
    const ZoningObjectCounts counts = device.zoningObjects();
    return "zone sets: " + std::to_string(counts.zonesets) + ", zones: " + std::to_string(counts.zones) +
           ", aliases: " + std::to_string(counts.aliases) + ", members: " + std::to_string(counts.members);
}

constexpr Verb kVerbs[] = {
    {"lock admin elsewhere|free", "Lets another client take admin mode, or give it back.", "lock admin elsewhere",
     Tells::nothing, lockAdminMode},
    {"lock zoning elsewhere|free", "Lets another client take the fabric's zoning lock, or give it back.",
     "lock zoning elsewhere", Tells::nothing, lockZoning},
    {"who", "Tells who is connected, and who holds admin mode and the zoning lock.", "who", Tells::nothing, tellWho},
    {"reboot", "Reboots the switch in no time: locks and edits that were not saved are gone.", "reboot", Tells::nothing,
     reboot},
    {"deliver CODE A B C [TEXT]", "Sends a notification of this code to every client.",
     "deliver 40 0 0 0 \"CPU too hot\"", Tells::nothing, deliver},
    {"wait [TIME]", "Waits until every notification has been taken, or complains after this time (10 s).", "wait 5s",
     Tells::nothing, waitUntilQuiet},
    {"records clear", "Forgets what was recorded.", "records clear", Tells::nothing, clearRecords},
    {"records keep yes|no", "Records from now on, or no more; what was recorded stays.", "records keep no",
     Tells::nothing, keepRecords},
    {"records [NUMBER]", "Lists calls and notifications as they were recorded: the last ones, or all.", "records 5",
     Tells::nothing, listRecords},
    {"misuses", "Lists what clients did with zoning objects that a real switch library might not survive.", "misuses",
     Tells::nothing, listMisuses},
    {"objects", "Counts the zoning objects that clients have.", "objects", Tells::nothing, countObjects},
};

} // namespace

VerbGroup clientVerbs() {
    return {"Clients and notifications", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
