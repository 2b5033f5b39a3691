#include "tools/dcache/story.h"

#include "platform/zovlib.h"

namespace dcache {
namespace {

using std::chrono::milliseconds;
using Switch = sim::Simulator;

// Keys count supplies and fans from 0, people from 1.
constexpr const char *kSupply2 = "Oper.Chassis.0.PowerSupply.1";
constexpr const char *kFan1 = "Oper.Chassis.0.Fan.0";
constexpr const char *kState = "Oper.Switch.OperState";
constexpr const char *kFaults = "Oper.Switch.FaultList";
constexpr const char *kFcoe = "Oper.Switch.FCOEFeature";

const Story &demo() {
    static const Story story = {
        "demo",
        "power, fans, state, faults, a login and an alarm; 13 s",
        {
            {milliseconds(500), "power supply 2 goes bad", [](Switch &device) { device.set(kSupply2, "Bad"); },
             nullptr},
            {milliseconds(1700), "power supply 2 is pulled out",
             [](Switch &device) { device.set(kSupply2, "NotInstalled"); }, nullptr},
            {milliseconds(2900), "a new power supply 2 is put in", [](Switch &device) { device.set(kSupply2, "Good"); },
             nullptr},
            {milliseconds(4100), "fan 1 fails", [](Switch &device) { device.set(kFan1, "Bad"); },
             "fans are kept up to date, but raise no events"},
            {milliseconds(5300), "the switch goes offline", [](Switch &device) { device.set(kState, "Offline"); },
             nullptr},
            {milliseconds(6500), "the switch comes back online", [](Switch &device) { device.set(kState, "Online"); },
             nullptr},
            {milliseconds(7700), "a self-test fails: FW_POST_FAIL in the fault list",
             [](Switch &device) { device.set(kFaults, "FW_POST_FAIL"); },
             "the fault list is read with the chassis, next time"},
            {milliseconds(8900), "fan 1 runs again", [](Switch &device) { device.set(kFan1, "Good"); },
             "the fault list is read now, the switch status not yet"},
            {milliseconds(10100), "the FCoE feature is turned on", [](Switch &device) { device.set(kFcoe, "True"); },
             nullptr},
            {milliseconds(11300), "a login as \"guest\" is refused",
             [](Switch &device) {
                 device.deliver(ZOV_EVENT_USER_LOGIN_FAILURE, {0, 0, 0}, "guest");
             },
             nullptr},
            {milliseconds(12500), "the CPU overheats",
             [](Switch &device) {
                 device.deliver(ZOV_EVENT_OVERHEAT_ALARM, {0, 0, 0}, "Temp overheat, CPU0 reads 92 degrees Celsius");
             },
             nullptr},
        },
    };
    return story;
}

/// Every story there is.
const std::vector<const Story *> &stories() {
    static const std::vector<const Story *> all = {&demo()};
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
