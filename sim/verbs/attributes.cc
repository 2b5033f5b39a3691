// Verbs for attributes by their keys: whatever the switch has can be looked at and changed.

#include <iterator>

#include "sim/Record.h"
#include "sim/levers/Faults.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

std::string setAttribute(Simulator &device, const Given &given) {
    device.set(given.text("KEY"), given.text("VALUE"), given.notify);
    return "";
}

std::string getAttribute(Simulator &device, const Given &given) {
    return device.get(given.text("KEY"));
}

std::string getStored(Simulator &device, const Given &given) {
    return device.stored(given.text("KEY"));
}

std::string tellProfile(Simulator &device, const Given &) {
    return device.profile();
}

/// A line for every key of the pattern that was given, or for every key there is.
template <class LineOf> std::string linesOfKeys(const Simulator &device, const Given &given, const LineOf &lineOf) {
    Lines lines;
    for (const std::string &key : device.keys())
        if (!given.has("PATTERN") || matchesPattern(given.text("PATTERN"), key))
            lines.add(lineOf(key));
    return lines.text();
}

std::string listKeys(Simulator &device, const Given &given) {
    return linesOfKeys(device, given, [](const std::string &key) { return key; });
}

std::string listValues(Simulator &device, const Given &given) {
    return linesOfKeys(device, given, [&](const std::string &key) { return key + " " + quoted(device.get(key)); });
}

constexpr Verb kVerbs[] = {
    {"set KEY VALUE", "Sets an attribute as the switch itself would change it.",
     "set Config.Snmp.SysDescr \"edge switch, rack 4\"", Tells::notification, setAttribute},
    {"get KEY", "Tells the value of an attribute.", "get Oper.Switch.DomainID", Tells::nothing, getAttribute},
    {"stored KEY", "Tells the value that an attribute was given, which may not show.",
     "stored Oper.System.Eth.0.IPv4Address", Tells::nothing, getStored},
    {"profile", "Tells which profile the switch was made from.", "profile", Tells::nothing, tellProfile},
    {"keys [PATTERN]", "Lists the keys of the attributes that the switch has.", "keys Oper.Chassis.*", Tells::nothing,
     listKeys},
    {"values [PATTERN]", "Lists attributes with their values.", "values *.OperState", Tells::nothing, listValues},
};

} // namespace

VerbGroup attributeVerbs() {
    return {"Attributes", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
