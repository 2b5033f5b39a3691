#include "tests/scenario/Exceptions.h"

#include <algorithm>
#include <set>
#include <sstream>

#include <fmt/format.h>

namespace scenario {

namespace {

// ---- lines --------------------------------------------------------------------------------------------

const std::string &followed(const Endings &endings, const std::string &line) {
    return lineOf(endings.followed.picture, line);
}

const std::string &fresh(const Endings &endings, const std::string &line) {
    return lineOf(endings.fresh.picture, line);
}

/// The parts of a line's name: "port", "7", "status". Missing ones are empty.
struct Name {
    std::string kind;
    std::string which;
    std::string what;
};

Name nameOf(const std::string &line) {
    Name name;
    const std::size_t first = line.find('.');
    const std::size_t second = first == std::string::npos ? first : line.find('.', first + 1);
    name.kind = line.substr(0, first);
    if (first != std::string::npos)
        name.which = line.substr(first + 1, second == std::string::npos ? second : second - first - 1);
    if (second != std::string::npos)
        name.what = line.substr(second + 1);
    return name;
}

bool isOneOf(const std::string &text, std::initializer_list<const char *> words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

/// What a switch of the fabric tells of its ports.
bool isAboutPorts(const Name &name) {
    return name.kind == "member" && isOneOf(name.what, {"base", "ports", "portCount", "foundPorts", "foundByIndex",
                                                        "owners", "timeout", "errors"});
}

/// A switch that was the local one, under a name that it has given up.
bool isFormerName(const Endings &endings, const std::string &wwn) {
    return wwn != followed(endings, "switch.name") && endings.followed.notes.count("localName." + wwn) != 0 &&
           followed(endings, "member." + wwn + ".local") == "true";
}

/// Whether look-ups by the names of a switch's ports find former names in its place. A switch that changed its name after
/// the switch refresh was entered by the old name, and with the new one's ports.
bool isOwnedByFormerNames(const Endings &endings, const Difference &difference) {
    std::istringstream owners(difference.followed);
    const std::string wwn = nameOf(difference.line).which;
    bool fits = nameOf(difference.line).what == "owners" && difference.fresh == wwn;
    for (std::string owner; fits && owners >> owner;)
        fits = owner == wwn || isFormerName(endings, owner);
    return fits;
}

bool isTransparent(const Endings &endings) {
    return followed(endings, "switch.transparent") == "true" && fresh(endings, "switch.transparent") == "true";
}

bool hasNoPorts(const Endings &endings) {
    return lineOf(endings.followed.state, "Oper.Switch.MaxPorts") == "0" &&
           followed(endings, "good.ports") == "false" && fresh(endings, "good.ports") == "false";
}

constexpr const char *kNoWwn = "0000000000000000";

// ---- examples -----------------------------------------------------------------------------------------

constexpr const char *kPeer = "100000C0DD770001";

/// A peer of four ports joins the fabric, and answers so when it is asked for them.
void joinPeer(Scene &scene, sim::TopologyService service) {
    sim::Peer peer;
    peer.wwn = kPeer;
    peer.domain = 77;
    peer.ports = 4;
    peer.topology = service;
    scene.theSwitch.addPeer(peer);
    scene.theSwitch.connect({scene.theSwitch.get("Oper.Switch.WWN"), 0, peer.wwn, 0});
    scene.pass();
}

void setService(Scene &scene, sim::TopologyService service) {
    sim::Peer peer = scene.theSwitch.peers().front();
    peer.topology = service;
    scene.theSwitch.changePeer(peer);
}

// ---- the list -----------------------------------------------------------------------------------------

const std::vector<Exception> all = {
    {"FaultsOfThePassBefore",
     "A pass refreshes the switch before the chassis. So its status is made from the faults that the chassis refresh "
     "before found: none in the first pass. The next pass tells the same for both.",
     [](const Difference &difference, const Endings &endings) {
         return difference.line == "switch.status" && difference.followed == lineOf(endings.followed.notes, "status") &&
                difference.fresh == lineOf(endings.fresh.notes, "status") &&
                followed(endings, "switch.statusAfterwards") == fresh(endings, "switch.statusAfterwards");
     },
     "fixed-24", [](Scene & /*scene*/) {}},

    {"TypesOfAbsentPorts", "A port that is gone keeps the types it had.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return name.kind == "port" && isOneOf(name.what, {"type", "hardware"}) && difference.fresh == "0" &&
                followed(endings, "port." + name.which + ".present") == "false" &&
                fresh(endings, "port." + name.which + ".present") == "false";
     },
     "fixed-24", [](Scene &scene) { scene.theSwitch.set("Oper.UserPort.0.3.OperState", "NotInstalled"); }},

    {"StatesBeyondThePortCount",
     "A switch that has fewer ports than before is not asked for the others any more: their states stay.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return name.kind == "port" && name.what == "status" && difference.fresh == "0" &&
                std::stoul(name.which) >= std::stoul(fresh(endings, "ports.count")) &&
                followed(endings, "ports.count") == fresh(endings, "ports.count");
     },
     "fixed-24", [](Scene &scene) { scene.theSwitch.set("Oper.Switch.MaxPorts", "23"); }},

    {"NoPortsAtAll",
     "A switch that claims to have no ports is not believed: the port refresh fails and leaves its picture as it was. "
     "A "
     "cache that has none knows no names of ports, nor the local switch's place in the fabric.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         const bool isLocalSwitch = name.kind == "member" && difference.fresh == kNoLine &&
                                    followed(endings, "member." + name.which + ".local") == "true";
         const bool isLocalDomain =
             name.kind == "domain" && followed(endings, "member." + difference.followed + ".local") == "true";
         const bool isPeerWithoutPorts =
             isAboutPorts(name) && fresh(endings, "member." + name.which + ".portCount") == "0";
         return hasNoPorts(endings) && (name.kind == "port" || name.kind == "ports" || isLocalSwitch || isLocalDomain ||
                                        isPeerWithoutPorts || difference.line == "switch.domain");
     },
     "fixed-24", [](Scene &scene) { scene.theSwitch.set("Oper.Switch.MaxPorts", "0"); }},

    {"SlotsOfAChassisWithoutSlots", "What was in the slots is cleared as a slot is read, and there is none to read.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return (name.kind == "slot" || difference.line == "blades.first") &&
                followed(endings, "blades.slots") == "0" && fresh(endings, "blades.slots") == "0" &&
                isOneOf(difference.fresh, {"0", "65535"});
     },
     "director-8", [](Scene &scene) { scene.theSwitch.set("Oper.Chassis.0.MaxSlots", "0"); }},

    {"FabricOfATransparentSwitch",
     "A transparent switch is in no fabric that it could ask about: the fabric stays as it was before.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         const bool isRemote = name.kind == "member" && followed(endings, "member." + name.which + ".local") == "false";
         const bool isDomain =
             name.kind == "domain" && followed(endings, "member." + difference.followed + ".local") == "false";
         return isTransparent(endings) && (difference.line == "fabric.name" || isRemote || isDomain);
     },
     "fabric-2", [](Scene &scene) { scene.theSwitch.set("Config.Switch.TransparentMode", "True"); }},

    {"FormerNames",
     "The fabric refresh takes no local switch out of the picture: one that has changed its name stays there under the "
     "former ones.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return (name.kind == "member" && isFormerName(endings, name.which)) ||
                (name.kind == "domain" && isFormerName(endings, difference.followed)) ||
                isOwnedByFormerNames(endings, difference);
     },
     "fixed-24", [](Scene &scene) { scene.theSwitch.set("Oper.Switch.WWN", "100000C0DD99AAAA"); }},

    {"TimedOut",
     "A switch whose ports were refused only after a long time is not asked again as long as it is in the fabric.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return isAboutPorts(name) && endings.followed.notes.count("refusedLate." + name.which) != 0 &&
                followed(endings, "member." + name.which + ".timeout") == "1" &&
                followed(endings, "member." + name.which + ".portCount") == "0";
     },
     "fixed-24",
     [](Scene &scene) {
         joinPeer(scene, {11, false});
         setService(scene, {0, true});
     }},

    {"CountedErrors", "Refused reads of a switch's ports are counted until one succeeds.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return name.kind == "member" && name.what == "errors" && difference.fresh == "1" &&
                followed(endings, "member." + name.which + ".portCount") == "0" &&
                lineOf(endings.followed.picture, "member." + name.which + ".timeout") == "0";
     },
     "fixed-24",
     [](Scene &scene) {
         joinPeer(scene, {0, false});
     }},

    {"BaseNameOfASwitchWithoutPorts", "A switch that tells no ports any more keeps what the last one was called.",
     [](const Difference &difference, const Endings &endings) {
         const Name name = nameOf(difference.line);
         return name.kind == "member" && name.what == "base" && difference.fresh == kNoWwn &&
                followed(endings, "member." + name.which + ".portCount") == "0" &&
                fresh(endings, "member." + name.which + ".portCount") == "0";
     },
     "fixed-24",
     [](Scene &scene) {
         joinPeer(scene, {0, true});
         setService(scene, {0, false});
     }},
};

} // namespace

std::vector<Difference> differencesOf(const Endings &endings) {
    std::set<std::string> names;
    for (const Lines *lines : {&endings.followed.picture, &endings.fresh.picture})
        for (const auto &line : *lines)
            names.insert(line.first);
    std::vector<Difference> differences;
    for (const std::string &name : names)
        if (followed(endings, name) != fresh(endings, name))
            differences.push_back({name, followed(endings, name), fresh(endings, name)});
    return differences;
}

const Exception *exceptionFor(const Difference &difference, const Endings &endings) {
    for (const Exception &exception : exceptions())
        if (exception.covers(difference, endings))
            return &exception;
    return nullptr;
}

const std::vector<Exception> &exceptions() {
    return all;
}

} // namespace scenario
