#include "tools/dcache/story.h"

#include "platform/zovlib.h"
#include "tools/dcache/zoning/otherclient.h"

namespace dcache {
namespace {

using std::chrono::milliseconds;
using Switch = sim::Simulator;

// Keys count supplies and fans from 0, people from 1. Ports and slots everybody counts from 0.
constexpr const char *kSupply2 = "Oper.Chassis.0.PowerSupply.1";
constexpr const char *kFan1 = "Oper.Chassis.0.Fan.0";
constexpr const char *kState = "Oper.Switch.OperState";
constexpr const char *kFaults = "Oper.Switch.FaultList";
constexpr const char *kFcoe = "Oper.Switch.FCOEFeature";
constexpr const char *kPort5 = "Oper.UserPort.0.5.OperState";
constexpr const char *kPort5Type = "Config.UserPort.0.5.Type";
constexpr const char *kPort6 = "Oper.UserPort.0.6.OperState";
constexpr const char *kPort44 = "Oper.UserPort.0.44.OperState";
constexpr unsigned kEmptyCage = 55;
constexpr unsigned kFirstIoSlot = 1;
constexpr unsigned kLastSlot = 7;

sim::Blade blade(const char *type) {
    sim::Blade blade;
    blade.type = type;
    return blade;
}

void overheat(Switch &device) {
    device.deliver(ZOV_EVENT_OVERHEAT_ALARM, {0, 0, 0}, "Temp overheat, CPU0 reads 92 degrees Celsius");
}

// The switches of the demo. They are put behind port 16 of the local one, the edge switch before the core switch.
constexpr const char *kPort16 = "Oper.UserPort.0.16.OperState";
constexpr unsigned kUplink = 16;
constexpr unsigned kLowPriority = 200;

sim::Peer edge() {
    sim::Peer peer;
    peer.wwn = "100000C0DD00B201";
    peer.domain = 2;
    peer.priority = kLowPriority;
    return peer;
}

sim::Peer core() {
    sim::Peer peer;
    peer.wwn = "100000C0DD00C001";
    peer.domain = 10;
    peer.priority = 2;
    peer.ports = 64;
    return peer;
}

sim::Link linkToEdge(const Switch &device) {
    return {device.get("Oper.Switch.WWN"), kUplink, edge().wwn, 20};
}

/// The first or second link between the two.
sim::Link linkToCore(unsigned number) {
    return {edge().wwn, 21 + number, core().wwn, number};
}

/// A device at a port of the edge switch.
sim::NameServerEntry deviceAt(unsigned port) {
    const std::string rest = "0000E08B00200" + std::to_string(port);
    return {edge().wwn, port, "20" + rest, "21" + rest};
}

// The zoning that another client commits, grown from one commit to the next.
std::string day() {
    return "create zone db acl\n"
           "add member db 10:00:00:00:C9:2B:44:01\n"
           "add member db 50:06:01:60:3B:A0:00:01\n"
           "create set day\n"
           "add zone day db\n";
}

std::string dayWithBackup() {
    return day() + "create zone backup soft\n"
                   "add member backup 1:7\n"
                   "add zone day backup\n";
}

std::string dayAndNight() {
    return dayWithBackup() + "create set night\n"
                             "add zone night backup\n";
}

void commit(Switch &device, const std::string &description) {
    device.setZoning(databaseFrom(parseScript(description, ScriptPurpose::description)));
}

// One line per step, so that the story can be read from top to bottom.
// clang-format off
const Story &demo() {
    static const Story story = {
        "demo", "a fabric on a bad day: joins, failing links; 14 s", "fixed-24", milliseconds(1150),
        {
            {"port 16 comes up: a cable to another switch", [](Switch &device) { device.set(kPort16, "Online"); },
             nullptr},
            {"that switch joins the fabric",
             [](Switch &device) {
                 device.addPeer(edge());
                 device.connect(linkToEdge(device));
             },
             nullptr},
            {"three devices log in at its ports",
             [](Switch &device) {
                 for (const unsigned port : {0U, 1U, 2U})
                     device.logIn(deviceAt(port));
             },
             nullptr},
            {"a core switch is linked to it: two fabrics merge",
             [](Switch &device) {
                 device.addPeer(core());
                 device.connect(linkToCore(0));
             },
             nullptr},
            {"a second link between those two comes up", [](Switch &device) { device.connect(linkToCore(1)); },
             "the fabric has the same switches as before"},
            {"both links fail: the fabric segments",
             [](Switch &device) {
                 device.disconnect(linkToCore(0), sim::Notify::no);
                 device.disconnect(linkToCore(1));
             },
             nullptr},
            {"a link comes back: the fabric heals", [](Switch &device) { device.connect(linkToCore(0)); }, nullptr},
            {"the new switch becomes the principal",
             [](Switch &device) {
                 sim::Peer peer = edge();
                 peer.priority = 1;
                 device.changePeer(peer);
             },
             nullptr},
            {"one of its devices logs out", [](Switch &device) { device.logOut(deviceAt(1).portWwn); }, nullptr},
            {"and logs in again", [](Switch &device) { device.logIn(deviceAt(1)); }, nullptr},
            {"the core switch is switched off", [](Switch &device) { device.removePeer(core().wwn); }, nullptr},
            {"the CPU overheats", overheat, nullptr},
        },
    };
    return story;
}

const Story &director() {
    static const Story story = {
        "director", "a director on a bad day: ports, power, faults; 15 s", "director-8",
        milliseconds(640),
        {
            {"port 44 comes up", [](Switch &device) { device.set(kPort44, "Online"); }, nullptr},
            {"port 5 goes down", [](Switch &device) { device.set(kPort5, "Offline"); }, nullptr},
            {"port 5 becomes an E port", [](Switch &device) { device.set(kPort5Type, "E"); },
             "port types are kept up to date, but raise no events"},
            {"a transceiver is plugged into port 55", [](Switch &device) { device.plugTransceiver(kEmptyCage, {}); },
             "the cache knows it now, but tells nobody"},
            {"the transceiver is pulled out again", [](Switch &device) { device.pullTransceiver(kEmptyCage); },
             "the cache has forgotten it, without a word"},
            {"port 6 is powered off", [](Switch &device) { device.set(kPort6, "PoweredOff"); },
             "a port that goes away raises none, one that comes does"},
            {"port 6 is powered on", [](Switch &device) { device.set(kPort6, "Online"); }, nullptr},
            {"the I/O blade is pulled out of slot 7", [](Switch &device) { device.removeBlade(kLastSlot); }, nullptr},
            {"a fan blade is put into slot 7", [](Switch &device) { device.insertBlade(kLastSlot, blade("FAN")); },
             nullptr},
            {"the account \"ann\" is added", [](Switch &device) { device.addAccount("ann"); }, nullptr},
            {"the account \"ann\" is removed", [](Switch &device) { device.removeAccount("ann"); }, nullptr},
            {"power supply 2 goes bad", [](Switch &device) { device.set(kSupply2, "Bad"); }, nullptr},
            {"power supply 2 is pulled out", [](Switch &device) { device.set(kSupply2, "NotInstalled"); }, nullptr},
            {"a new power supply 2 is put in", [](Switch &device) { device.set(kSupply2, "Good"); }, nullptr},
            {"fan 1 fails", [](Switch &device) { device.set(kFan1, "Bad"); },
             "fans are kept up to date, but raise no events"},
            {"the switch goes offline", [](Switch &device) { device.set(kState, "Offline"); }, nullptr},
            {"the switch comes back online", [](Switch &device) { device.set(kState, "Online"); }, nullptr},
            {"a self-test fails: FW_POST_FAIL in the fault list",
             [](Switch &device) { device.set(kFaults, "FW_POST_FAIL"); },
             "the fault list is read with the chassis, next time"},
            {"fan 1 runs again", [](Switch &device) { device.set(kFan1, "Good"); },
             "the fault list is read now, the switch status not yet"},
            {"the FCoE feature is turned on", [](Switch &device) { device.set(kFcoe, "True"); }, nullptr},
            {"a login as \"guest\" is refused",
             [](Switch &device) { device.deliver(ZOV_EVENT_USER_LOGIN_FAILURE, {0, 0, 0}, "guest"); }, nullptr},
            {"the CPU overheats", overheat, nullptr},
        },
    };
    return story;
}

const Story &blades() {
    static const Story story = {
        "blades", "the blades of a director and their ports; 10 s", "director-8", milliseconds(1900),
        {
            {"the I/O blade is pulled out of slot 1", [](Switch &device) { device.removeBlade(kFirstIoSlot); },
             "the cache follows the last slot; ports go silently"},
            {"it is put back, with its 16 ports",
             [](Switch &device) { device.insertBlade(kFirstIoSlot, blade("IO")); }, nullptr},
            {"the I/O blade is pulled out of slot 7", [](Switch &device) { device.removeBlade(kLastSlot); }, nullptr},
            {"a CPU blade is put into slot 7", [](Switch &device) { device.insertBlade(kLastSlot, blade("CPU")); },
             nullptr},
            {"it makes way for an I/O blade with 16 ports",
             [](Switch &device) {
                 device.removeBlade(kLastSlot, sim::Notify::no);
                 device.insertBlade(kLastSlot, blade("IO"));
             },
             nullptr},
        },
    };
    return story;
}

const Story &zoning() {
    static const Story story = {
        "zoning", "another management client changes the zoning; 11 s", "fixed-24", milliseconds(1500),
        {
            {"another client commits zone set \"day\" with a zone", [](Switch &device) { commit(device, day()); },
             nullptr},
            {"it activates \"day\"", [](Switch &device) { device.activateZoneset("day"); }, nullptr},
            {"it adds a second zone to \"day\"", [](Switch &device) { commit(device, dayWithBackup()); }, nullptr},
            {"it commits another zone set, \"night\"", [](Switch &device) { commit(device, dayAndNight()); }, nullptr},
            {"it activates \"night\"", [](Switch &device) { device.activateZoneset("night"); }, nullptr},
            {"the switch announces a change of zoning that is none",
             [](Switch &device) { device.deliver(ZOV_EVENT_ZONE_CHANGE, {0, 0, 0}, "zoning"); },
             "both checksums are what they were, so nothing is read"},
            {"the other client deactivates the zone set", [](Switch &device) { device.activateZoneset(""); }, nullptr},
        },
    };
    return story;
}
// clang-format on

/// Every story there is.
const std::vector<const Story *> &stories() {
    static const std::vector<const Story *> all = {&demo(), &director(), &blades(), &zoning()};
    return all;
}

} // namespace

const Story *findStory(const std::string &name) {
    for (const Story *story : stories())
        if (story->name == name)
            return story;
    return nullptr;
}

std::vector<std::string> storyNames() {
    std::vector<std::string> names;
    for (const Story *story : stories())
        names.emplace_back(story->name);
    return names;
}

} // namespace dcache
