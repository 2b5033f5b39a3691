#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"
#include "tests/sim/verbs/Commands.h"

using simtest::refusalOf;

namespace {

/// The values that an attribute takes, as its refusal lists them; "" for nothing.
std::set<std::string> allowedValues(sim::Simulator &device, const std::string &key) {
    std::string text = refusalOf(device, "set " + key + " ?");
    text.erase(0, text.find("allowed: ") + 9);
    std::set<std::string> values;
    std::istringstream stream(text);
    for (std::string value; std::getline(stream >> std::ws, value, ',');)
        values.insert(value == "or nothing" ? "" : value);
    return values;
}

struct StateVerb {
    const char *words; ///< but for the last
    const char *last;
    const char *key;
};

constexpr StateVerb kStateVerbs[] = {
    {"switch", "online|offline|diagnostics|downed", "Oper.Switch.OperState"},
    {"port 3", "online|offline|diagnostics|isolated|down|downed|absent|powered-off", "Oper.UserPort.0.3.OperState"},
    {"port 3 admin", "online|offline|diagnostics|down|downed", "Oper.UserPort.0.3.AdminState"},
    {"port 3 type", "G|GL|E|F|FL|Donor|TH|TF|TR|PT", "Config.UserPort.0.3.Type"},
    {"blade 2", "online|offline|diagnostics|pending|down|downed|absent|powered-off", "Oper.Blade.2.OperState"},
    {"blade 2 admin", "online|offline|diagnostics|down|downed|powered-off|none", "Oper.Blade.2.AdminState"},
    {"blade 2 diagnosis", "good|compromised|failed|none", "Oper.Blade.2.DiagStatus"},
    {"supply 1", "good|bad|pull", "Oper.Chassis.0.PowerSupply.1"},
    {"fan 0", "good|bad|pull", "Oper.Chassis.0.Fan.0"},
};

} // namespace

TEST(HardwareVerbs, EveryStateThereIsHasAWord) {
    const auto device = sim::create("director-8");
    for (const StateVerb &verb : kStateVerbs) {
        std::set<std::string> reached;
        std::istringstream words(verb.last);
        for (std::string word; std::getline(words, word, '|');) {
            sim::perform(*device, std::string(verb.words) + " " + word);
            reached.insert(device->get(verb.key));
        }
        EXPECT_EQ(reached, allowedValues(*device, verb.key)) << verb.words;
    }
}

TEST(HardwareVerbs, PartsThatAreNotThereAreRefusedWithTheirNumber) {
    const auto device = sim::create();
    EXPECT_EQ(refusalOf(*device, "port 24 admin down"), "there is no port 24; the switch has 24, counted from 0");
    EXPECT_EQ(refusalOf(*device, "port 24 type E"), "there is no port 24; the switch has 24, counted from 0");
    EXPECT_EQ(refusalOf(*device, "blade 1 offline"), "there is no slot 1; the switch has 1, counted from 0");
    EXPECT_EQ(refusalOf(*device, "blade 1 fault X"), "there is no slot 1; the switch has 1, counted from 0");
    EXPECT_EQ(refusalOf(*device, "supply 2 bad"), "there is no power supply 2; the switch has 2, counted from 0");
    EXPECT_EQ(refusalOf(*device, "fan 3 bad"), "there is no fan 3; the switch has 3, counted from 0");
    EXPECT_EQ(refusalOf(*device, "media 24 pull"), "there is no port 24; the switch has 24, counted from 0");
}

TEST(HardwareVerbs, ATransceiverIsPluggedAsDescribed) {
    const auto device = sim::create();
    sim::perform(*device,
                 "media 20 plug serial=\"FNS 7\" vendor=ACME part=P-1 oui=00C0DD identifier=0x0D diagnostics=no "
                 "wave=long silently");
    sim::Transceiver same;
    same.serialNumber = "FNS 7";
    same.vendorName = "ACME";
    same.partNumber = "P-1";
    same.vendorOui = 0x00C0DD;
    same.identifier = 0x0D;
    same.diagnostics = false;
    same.longWave = true;
    device->plugTransceiver(21, same);
    for (const char *attribute : {"SFPData0_31", "SFPData32_63", "SFPSerialNumber", "DDM.Supported"})
        EXPECT_EQ(device->get(std::string("Oper.UserPort.0.20.") + attribute),
                  device->get(std::string("Oper.UserPort.0.21.") + attribute))
            << attribute;
}

TEST(HardwareVerbs, ATransceiverIsPluggedOnceAndPulledOnce) {
    const auto device = sim::create();
    sim::perform(*device, "media 20 plug");
    sim::Transceiver usual;
    EXPECT_EQ(device->get("Oper.UserPort.0.20.SFPSerialNumber"), usual.serialNumber);
    EXPECT_EQ(refusalOf(*device, "media 20 plug"), "port 20 has a transceiver already");
    sim::perform(*device, "media 20 pull");
    EXPECT_EQ(refusalOf(*device, "media 20 pull"), "port 20 has no transceiver");
}

TEST(HardwareVerbs, ABladeIsInsertedAsDescribed) {
    const auto device = sim::create("director-8");
    sim::perform(*device, "blade 7 pull\nblade 7 insert io part=P serial=\"\" temperature-sensors=1 voltage-sensors=9");
    EXPECT_EQ(sim::perform(*device, "values Oper.Blade.7.*"), "Oper.Blade.7.OperState \"Online\"\n"
                                                              "Oper.Blade.7.AdminState \"Online\"\n"
                                                              "Oper.Blade.7.DiagStatus \"Good\"\n"
                                                              "Oper.Blade.7.Type \"IO\"\n"
                                                              "Oper.Blade.7.PlanarPartNum \"P\"\n"
                                                              "Oper.Blade.7.BoardSerialNum \"\"\n"
                                                              "Oper.Blade.7.TempSensors \"1\"\n"
                                                              "Oper.Blade.7.VoltageSensors \"9\"\n"
                                                              "Oper.Blade.7.FaultList \"\"");
    EXPECT_EQ(refusalOf(*device, "blade 7 insert CPU"), "slot 7 is occupied");
}

TEST(HardwareVerbs, FaultListsAreSetAndCleared) {
    const auto device = sim::create();
    sim::perform(*device, "fault \"FW_POST_FAIL FAN_FAIL\"\nblade 0 fault TEMP");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "FW_POST_FAIL FAN_FAIL");
    EXPECT_EQ(device->get("Oper.Blade.0.FaultList"), "TEMP");
    sim::perform(*device, "fault clear\nblade 0 fault \"\"");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_EQ(device->get("Oper.Blade.0.FaultList"), "");
}

TEST(HardwareVerbs, AccountsComeAndGo) {
    const auto device = sim::create();
    sim::perform(*device, "account add ann\naccount remove operator");
    EXPECT_EQ(sim::perform(*device, "account list"), "admin\nmonitor\nann");
    sim::perform(*device, "account remove admin\naccount remove monitor\naccount remove ann");
    EXPECT_EQ(sim::perform(*device, "account list"), "");
}
