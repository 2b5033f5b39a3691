#include "tests/scenario/Attributes.h"

namespace scenario {

namespace {

constexpr const char *kPorts = "Oper.Switch.MaxPorts";
constexpr const char *kSlots = "Oper.Chassis.0.MaxSlots";
constexpr const char *kSupplies = "Oper.Chassis.0.PowerSupplies";
constexpr const char *kFans = "Oper.Chassis.0.Fans";
constexpr unsigned kAll = 256;
constexpr unsigned kRead = 128; // ports that the cache reads

/// 32 bytes that begin so, in hexadecimal.
std::string bytes(const char *beginning) {
    std::string text = beginning;
    text.resize(64, '0');
    return text;
}

// clang-format off
const std::vector<Attribute> &attributes() {
    static const std::string sfp = bytes("0304"), qsfp = bytes("0D04"), qsfp28 = bytes("11"), odd = bytes("7A"),
                             none = bytes("00"), oneVendor = bytes("20202020200090AB"), otherVendor = bytes("2020202020FFFFFF");
    static const std::vector<const char *> flags = {"True", "False"};
    static const std::vector<const char *> units = {"Good", "Bad", "NotInstalled", "Good"};
    static const std::vector<const char *> bladeFaults = {"", "", "HW_MP_ACCESS_CPU7", "FW_POST_FAIL", "HW_FAN"};
    static const std::vector<const char *> sensors = {"", "0", "1", "7", "255"};
    static const std::vector<Attribute> all = {
        {8, "Oper.Switch.OperState", nullptr, 1, {"Online", "Online", "Offline", "Diagnostics", "Downed"}},
        {4, "Oper.Switch.Nop", nullptr, 1, {"", "GL", "EXG", "GL", "FW_POST_FAIL HW_MP_ACCESS_CPU0"}},
        {4, "Oper.Switch.TransparentModeFeature", nullptr, 1, flags},
        {5, "Config.Switch.TransparentMode", nullptr, 1, {"True", "False", "False"}},
        {4, "Oper.Switch.FCOEFeature", nullptr, 1, flags},
        {4, "Oper.Switch.EthernetPassthroughFeature", nullptr, 1, flags},
        {6, "Oper.Switch.EnhFaultMonFeature", nullptr, 1, flags},
        {8, "Oper.Switch.FaultList", nullptr, 1, {"", "", "FW_POST_FAIL", "HW_MP_ACCESS_CPU0", "HW_MP_ACCESS", "FW_POST_FAIL,HW_MP_DATA_MISMATCH"}},
        {2, "Config.Mfg.ProductFeatureType", nullptr, 1, {"Standard", ""}},
        {2, "Config.Mfg.BrandName", nullptr, 1, {"FC Switch", "Another"}},
        {3, kSupplies, nullptr, 1, {"0", "1", "2", "2", "4", "16", "17", "255"}},
        {3, kFans, nullptr, 1, {"0", "1", "3", "3", "16", "20", "255"}},
        {10, "Oper.Chassis.0.PowerSupply.{}", kSupplies, kAll, units},
        {8, "Oper.Chassis.0.Fan.{}", kFans, kAll, units},
        {3, kSlots, nullptr, 1, {"0", "1", "1", "1", "2", "4", "8", "12", "40"}},
        {15, "Oper.Blade.{}.OperState", kSlots, kAll, {"Online", "Online", "Offline", "Diagnostics", "Pending", "Down", "Downed", "NotInstalled", "PoweredOff"}},
        {5, "Oper.Blade.{}.AdminState", kSlots, kAll, {"Online", "Offline", "Diagnostics", "Down", "Downed", "PoweredOff", ""}},
        {5, "Oper.Blade.{}.DiagStatus", kSlots, kAll, {"Good", "Compromised", "Failed", ""}},
        {5, "Oper.Blade.{}.Type", kSlots, kBladeSlots, {"IO", "CPU", "PS", "FAN", ""}},
        {3, "Oper.Blade.{}.PlanarPartNum", kSlots, kAll, {"31-80016-02", "31-80016-02", ""}},
        {3, "Oper.Blade.{}.BoardSerialNum", kSlots, kAll, {"0331B00001", "0331B00001", ""}},
        {4, "Oper.Blade.{}.TempSensors", kSlots, kAll, sensors},
        {4, "Oper.Blade.{}.VoltageSensors", kSlots, kAll, sensors},
        {5, "Oper.Blade.{}.FaultList", kSlots, kAll, bladeFaults},
        {4, kPorts, nullptr, 1, {"0", "1", "8", "16", "20", "23", "24", "24", "24", "24", "25", "25", "32", "32", "48", "64", "200", "255"}},
        {50, "Oper.UserPort.0.{}.OperState", kPorts, kRead, {"Online", "Online", "Offline", "Diagnostics", "Isolated", "Down", "Downed", "NotInstalled", "PoweredOff"}},
        {20, "Oper.UserPort.0.{}.AdminState", kPorts, kRead, {"Online", "Offline", "Diagnostics", "Down", "Downed"}},
        {25, "Config.UserPort.0.{}.Type", kPorts, kRead, {"G", "GL", "E", "F", "FL", "Donor", "TH", "TF", "TR", "PT"}},
        {10, "Oper.UserPort.0.{}.DDM.Supported", kPorts, kRead, {"True", "True", "False", ""}},
        {8, "Oper.UserPort.0.{}.SFPData0_31", kPorts, kRead, {sfp.c_str(), qsfp.c_str(), qsfp28.c_str(), odd.c_str(), none.c_str(), ""}},
        {8, "Oper.UserPort.0.{}.SFPData32_63", kPorts, kRead, {oneVendor.c_str(), otherVendor.c_str(), ""}},
        {8, "Oper.UserPort.0.{}.SFPSerialNumber", kPorts, kRead, {"FNS0331A00000042", "AB  12          ", "                ", ""}},
    };
    return all;
}
// clang-format on

} // namespace

unsigned attributeWeight() {
    unsigned total = 0;
    for (const Attribute &attribute : attributes())
        total += attribute.weight;
    return total;
}

const Attribute &attributeAt(unsigned place) {
    const Attribute *found = attributes().data();
    for (; place >= found->weight; ++found)
        place -= found->weight;
    return *found;
}

} // namespace scenario
