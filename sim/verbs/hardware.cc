// Verbs for what can be touched: ports, transceivers, blades, power supplies, fans; and for the switch as a whole.

#include <iterator>
#include <stdexcept>

#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

/// Things of a kind that a switch has several of, counted from 0.
struct Part {
    const char *name;
    const char *countKey;
    const char *prefix; ///< of the keys, before the number
};

constexpr Part kPort = {"port", "Oper.Switch.MaxPorts", "Oper.UserPort.0."};
constexpr Part kPortConfig = {"port", "Oper.Switch.MaxPorts", "Config.UserPort.0."};
constexpr Part kSlot = {"slot", "Oper.Chassis.0.MaxSlots", "Oper.Blade."};
constexpr Part kSupply = {"power supply", "Oper.Chassis.0.PowerSupplies", "Oper.Chassis.0.PowerSupply."};
constexpr Part kFan = {"fan", "Oper.Chassis.0.Fans", "Oper.Chassis.0.Fan."};

std::string keyOf(const Simulator &device, const Part &part, unsigned number, const char *attribute) {
    const std::string count = device.get(part.countKey);
    if (number >= numberIn(count).value_or(0))
        throw std::invalid_argument(std::string("there is no ") + part.name + " " + std::to_string(number) +
                                    "; the switch has " + count + ", counted from 0");
    return part.prefix + std::to_string(number) + attribute;
}

struct StateWord {
    const char *word;
    const char *value;
};

/// Words that are not the value itself in small letters.
constexpr StateWord kStateWords[] = {
    {"absent", "NotInstalled"}, {"pull", "NotInstalled"}, {"powered-off", "PoweredOff"}, {"none", ""}};

std::string valueOf(const std::string &word) {
    for (const StateWord &known : kStateWords)
        if (word == known.word)
            return known.value;
    std::string value = word;
    if (value.front() >= 'a' && value.front() <= 'z')
        value.front() = static_cast<char>(value.front() - 'a' + 'A');
    return value;
}

/// Sets an attribute of one of several to the word that was chosen.
template <const Part &part>
std::string setState(Simulator &device, const Given &given, const char *number, const char *attribute) {
    device.set(keyOf(device, part, given.number(number), attribute), valueOf(given.choice()), given.notify);
    return "";
}

std::string setPortState(Simulator &device, const Given &given) {
    return setState<kPort>(device, given, "PORT", ".OperState");
}

std::string setPortAdminState(Simulator &device, const Given &given) {
    return setState<kPort>(device, given, "PORT", ".AdminState");
}

std::string setPortType(Simulator &device, const Given &given) {
    return setState<kPortConfig>(device, given, "PORT", ".Type");
}

std::string setBladeState(Simulator &device, const Given &given) {
    return setState<kSlot>(device, given, "SLOT", ".OperState");
}

std::string setBladeAdminState(Simulator &device, const Given &given) {
    return setState<kSlot>(device, given, "SLOT", ".AdminState");
}

std::string setBladeDiagnosis(Simulator &device, const Given &given) {
    return setState<kSlot>(device, given, "SLOT", ".DiagStatus");
}

template <const Part &part> std::string setUnit(Simulator &device, const Given &given) {
    return setState<part>(device, given, "UNIT", "");
}

std::string setSwitchState(Simulator &device, const Given &given) {
    device.set("Oper.Switch.OperState", valueOf(given.choice()), given.notify);
    return "";
}

// ---- transceivers and blades -------------------------------------------------------------------------

/// Takes an option's text over, when it was given.
void overwrite(std::string &text, const Given &given, const char *option) {
    if (given.has(option))
        text = given.text(option);
}

void overwrite(unsigned &number, const Given &given, const char *option) {
    if (given.has(option))
        number = given.number(option);
}

uint32_t ouiIn(const std::string &digits) {
    return static_cast<uint32_t>(std::stoul(digits, nullptr, 16));
}

std::string plugTransceiver(Simulator &device, const Given &given) {
    Transceiver transceiver;
    overwrite(transceiver.serialNumber, given, "serial");
    overwrite(transceiver.vendorName, given, "vendor");
    overwrite(transceiver.partNumber, given, "part");
    if (given.has("oui"))
        transceiver.vendorOui = ouiIn(given.text("oui"));
    if (given.has("identifier"))
        transceiver.identifier = byteIn(given.text("identifier")).value();
    transceiver.diagnostics = given.isYes("diagnostics", transceiver.diagnostics);
    transceiver.longWave = given.has("wave") && given.text("wave") == "long";
    device.plugTransceiver(given.number("PORT"), transceiver, given.notify);
    return "";
}

std::string pullTransceiver(Simulator &device, const Given &given) {
    device.pullTransceiver(given.number("PORT"), given.notify);
    return "";
}

std::string insertBlade(Simulator &device, const Given &given) {
    Blade blade;
    blade.type = given.choice();
    overwrite(blade.partNumber, given, "part");
    overwrite(blade.serialNumber, given, "serial");
    overwrite(blade.temperatureSensors, given, "temperature-sensors");
    overwrite(blade.voltageSensors, given, "voltage-sensors");
    device.insertBlade(given.number("SLOT"), blade, given.notify);
    return "";
}

std::string pullBlade(Simulator &device, const Given &given) {
    device.removeBlade(given.number("SLOT"), given.notify);
    return "";
}

// ---- faults and accounts -----------------------------------------------------------------------------

constexpr const char *kFaultList = "Oper.Switch.FaultList";

std::string setBladeFaults(Simulator &device, const Given &given) {
    device.set(keyOf(device, kSlot, given.number("SLOT"), ".FaultList"), given.text("TEXT"), given.notify);
    return "";
}

std::string setFaults(Simulator &device, const Given &given) {
    device.set(kFaultList, given.text("TEXT"), given.notify);
    return "";
}

std::string clearFaults(Simulator &device, const Given &given) {
    device.set(kFaultList, "", given.notify);
    return "";
}

std::string addAccount(Simulator &device, const Given &given) {
    device.addAccount(given.text("NAME"), given.notify);
    return "";
}

std::string removeAccount(Simulator &device, const Given &given) {
    device.removeAccount(given.text("NAME"), given.notify);
    return "";
}

/// Clients walk from one account to the next, and so does this. Each has a key, so the walk ends when they do.
std::string listAccounts(Simulator &device, const Given &) {
    const std::string prefix = "Oper.Switch.NextPotentialUser.";
    Lines lines;
    for (const std::string &key : device.keys())
        if (key.compare(0, prefix.size(), prefix) == 0)
            lines.add(key.substr(prefix.size()));
    return lines.text();
}

constexpr Verb kVerbs[] = {
    {"switch online|offline|diagnostics|downed", "Puts the switch as a whole into a state.", "switch offline",
     Tells::notification, setSwitchState},
    {"port PORT online|offline|diagnostics|isolated|down|downed|absent|powered-off", "Puts a port into a state.",
     "port 3 offline", Tells::notification, setPortState},
    {"port PORT admin online|offline|diagnostics|down|downed", "Sets the state that a port is meant to be in.",
     "port 3 admin down", Tells::notification, setPortAdminState},
    {"port PORT type G|GL|E|F|FL|Donor|TH|TF|TR|PT", "Makes a port one of another type.", "port 3 type GL",
     Tells::notification, setPortType},
    {"media PORT plug [serial=TEXT] [vendor=TEXT] [part=TEXT] [oui=OUI] [identifier=BYTE] [diagnostics=yes|no] "
     "[wave=short|long]",
     "Plugs a transceiver into a port that has none: an SFP (identifier 0x03) unless said otherwise.",
     "media 20 plug serial=\"FNS 0007\" wave=long", Tells::notification, plugTransceiver},
    {"media PORT pull", "Pulls the transceiver out of a port.", "media 3 pull", Tells::notification, pullTransceiver},
    {"blade SLOT insert IO|CPU|PS|FAN [part=TEXT] [serial=TEXT] [temperature-sensors=NUMBER] "
     "[voltage-sensors=NUMBER]",
     "Inserts a blade into an empty slot.", "blade 1 insert IO serial=0331B00017", Tells::notification, insertBlade},
    {"blade SLOT pull", "Takes the blade out of a slot.", "blade 0 pull", Tells::notification, pullBlade},
    {"blade SLOT online|offline|diagnostics|pending|down|downed|absent|powered-off", "Puts a blade into a state.",
     "blade 0 diagnostics", Tells::notification, setBladeState},
    {"blade SLOT admin online|offline|diagnostics|down|downed|powered-off|none",
     "Sets the state that a blade is meant to be in.", "blade 0 admin powered-off", Tells::notification,
     setBladeAdminState},
    {"blade SLOT diagnosis good|compromised|failed|none", "Sets what the diagnosis of a blade has found.",
     "blade 0 diagnosis failed", Tells::notification, setBladeDiagnosis},
    {"blade SLOT fault TEXT", "Sets the fault list of a blade; \"\" clears it.", "blade 0 fault FW_POST_FAIL",
     Tells::notification, setBladeFaults},
    {"supply UNIT good|bad|pull", "Puts a power supply into a state, or takes it out.", "supply 1 pull",
     Tells::notification, setUnit<kSupply>},
    {"fan UNIT good|bad|pull", "The same for a fan.", "fan 0 bad", Tells::notification, setUnit<kFan>},
    {"fault clear", "Clears the fault list of the switch.", "fault clear", Tells::notification, clearFaults},
    {"fault TEXT", "Sets the fault list of the switch.", "fault FW_POST_FAIL", Tells::notification, setFaults},
    {"account add NAME", "Adds an account.", "account add ann", Tells::notification, addAccount},
    {"account remove NAME", "Removes an account.", "account remove operator", Tells::notification, removeAccount},
    {"account list", "Lists the accounts.", "account list", Tells::nothing, listAccounts},
};

} // namespace

VerbGroup hardwareVerbs() {
    return {"The switch and its parts", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
