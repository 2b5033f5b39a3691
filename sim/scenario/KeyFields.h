/*
 * What the tables of a scenario file call the attributes of the switch: one row for each, for reading and for writing.
 * Constants.
 */
#ifndef SIM_SCENARIO_KEYFIELDS_H
#define SIM_SCENARIO_KEYFIELDS_H

#include <cstdint>
#include <string>

namespace sim {

struct KeyField {
    const char *name = nullptr;    ///< in the file
    const char *pattern = nullptr; ///< of the key; "%" stands for the number of the thing
    bool isNumber = false;
    int64_t lowest = 0, highest = 0; ///< of a number
};

/// Things of one kind that the switch has several of.
struct KeyThing {
    const char *section;  ///< in the file
    const char *called;   ///< for people
    const char *number;   ///< the name of its number in the file
    const char *countKey; ///< how many there are, numbered from 0
};

constexpr KeyField kIdentityFields[] = {
    {"wwn", "Oper.Switch.WWN"},
    {"domain", "Oper.Switch.DomainID", true, 1, 239},
};

/// Of any kind.
constexpr int64_t kMostThings = 255;

/// How many there are of what can be counted.
constexpr KeyField kCountFields[] = {
    {"ports", "Oper.Switch.MaxPorts", true, 0, kMostThings},
    {"slots", "Oper.Chassis.0.MaxSlots", true, 0, kMostThings},
    {"supplies", "Oper.Chassis.0.PowerSupplies", true, 0, kMostThings},
    {"fans", "Oper.Chassis.0.Fans", true, 0, kMostThings},
};

constexpr KeyField kSwitchFields[] = {
    {"state", "Oper.Switch.OperState"},
    {"hardware", "Oper.Switch.Nop"},
    {"faults", "Oper.Switch.FaultList"},
};

constexpr KeyThing kPort = {"port", "a port", "number", "Oper.Switch.MaxPorts"};

constexpr KeyField kPortFields[] = {
    {"state", "Oper.UserPort.0.%.OperState"},
    {"admin_state", "Oper.UserPort.0.%.AdminState"},
    {"type", "Config.UserPort.0.%.Type"},
};

/// What a switch reads of a transceiver, for one that no module in the field would show.
constexpr KeyField kMediaFields[] = {
    {"media_ddm", "Oper.UserPort.0.%.DDM.Supported"},
    {"media_0_31", "Oper.UserPort.0.%.SFPData0_31"},
    {"media_32_63", "Oper.UserPort.0.%.SFPData32_63"},
    {"media_serial", "Oper.UserPort.0.%.SFPSerialNumber"},
};

constexpr KeyThing kBlade = {"blade", "a blade", "slot", "Oper.Chassis.0.MaxSlots"};

constexpr const char *kEmptySlot = "NotInstalled";

constexpr KeyField kBladeFields[] = {
    {"state", "Oper.Blade.%.OperState"},
    {"admin_state", "Oper.Blade.%.AdminState"},
    {"diagnosis", "Oper.Blade.%.DiagStatus"},
    {"type", "Oper.Blade.%.Type"},
    {"part", "Oper.Blade.%.PlanarPartNum"},
    {"serial", "Oper.Blade.%.BoardSerialNum"},
    {"temperature_sensors", "Oper.Blade.%.TempSensors"},
    {"voltage_sensors", "Oper.Blade.%.VoltageSensors"},
    {"faults", "Oper.Blade.%.FaultList"},
};

constexpr KeyThing kSupply = {"supply", "a power supply", "number", "Oper.Chassis.0.PowerSupplies"};
constexpr KeyField kSupplyFields[] = {{"state", "Oper.Chassis.0.PowerSupply.%"}};

constexpr KeyThing kFan = {"fan", "a fan", "number", "Oper.Chassis.0.Fans"};
constexpr KeyField kFanFields[] = {{"state", "Oper.Chassis.0.Fan.%"}};

/// The key of a thing.
inline std::string keyOf(const KeyField &field, unsigned number = 0) {
    std::string key = field.pattern;
    const size_t place = key.find('%');
    return place == std::string::npos ? key : key.replace(place, 1, std::to_string(number));
}

/// A WWN as the switch takes it: people write it with colons too.
inline std::string plainWwn(const std::string &text) {
    constexpr size_t sizeWithColons = 8 * 3 - 1;
    if (text.size() != sizeWithColons)
        return text;
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if ((i % 3 == 2) != (text[i] == ':'))
            return text;
        if (text[i] != ':')
            plain.append(1, text[i]);
    }
    return plain;
}

constexpr const char *kPrincipalKey = "Oper.Switch.WhoIsPrincipal";
constexpr const char *kLocalEnd = "local"; ///< how the local switch is called where another would be by its name

} // namespace sim

#endif // SIM_SCENARIO_KEYFIELDS_H
