#include "sim/model/Profile.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

TEST(Profile, DefaultIsAHealthySwitchOf24PortsAloneInItsFabric) {
    const auto device = sim::create();
    EXPECT_EQ(device->get("Oper.Switch.MaxPorts"), "24");
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), device->get("Oper.Switch.WWN"));
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_EQ(sim::create("fixed-24")->keys(), device->keys());
}

TEST(Profile, PortsAreInUseAtTheFrontAndEmptyAtTheBack) {
    const auto device = sim::create();
    for (unsigned port = 0; port < 24; ++port) {
        const std::string key = "Oper.UserPort.0." + std::to_string(port);
        EXPECT_EQ(device->get(key + ".OperState"), port < 16 ? "Online" : "Offline") << port;
        EXPECT_EQ(device->get(key + ".AdminState"), "Online") << port;
        EXPECT_EQ(device->get("Config.UserPort.0." + std::to_string(port) + ".Type"), port < 16    ? "F"
                                                                                      : port == 16 ? "E"
                                                                                                   : "GL")
            << port;
        EXPECT_EQ(device->get(key + ".DDM.Supported"), port < 20 ? "True" : "") << port;
        EXPECT_EQ(device->get(key + ".SFPData0_31").empty(), port >= 20) << port;
    }
    EXPECT_EQ(device->get("Oper.UserPort.0.0.SFPSerialNumber"), "FNS0331A00000001");
    EXPECT_EQ(device->get("Oper.UserPort.0.19.SFPSerialNumber"), "FNS0331A00000020");
}

TEST(Profile, TheLinkHasLongWaveOpticsAndTheOthersShort) {
    const auto device = sim::create();
    EXPECT_EQ(device->get("Oper.UserPort.0.15.SFPData32_63").substr(56, 4), "0352"); // 850 nm
    EXPECT_EQ(device->get("Oper.UserPort.0.16.SFPData32_63").substr(56, 4), "051E"); // 1310 nm
    EXPECT_EQ(device->get("Oper.UserPort.0.17.SFPData32_63").substr(56, 4), "0352");
}

namespace {

struct Kind {
    const char *name;
    const char *wwn;
    const char *ports;
    const char *slots;
};

void PrintTo(const Kind &kind, std::ostream *out) {
    *out << kind.name;
}

class EveryProfile : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(All, EveryProfile,
                         testing::Values(Kind{"fixed-24", "100000C0DD00A1B2", "24", "1"},
                                         Kind{"director-8", "100000C0DD00A800", "64", "8"},
                                         Kind{"fixed-128", "100000C0DD00A128", "128", "1"},
                                         Kind{"claims-200", "100000C0DD00A200", "200", "1"},
                                         Kind{"second-naming", "2000000DEC00A1B2", "24", "1"}));

} // namespace

TEST_P(EveryProfile, IsHealthyAndAloneInItsFabric) {
    const auto device = sim::create(GetParam().name);
    EXPECT_EQ(device->get("Oper.Switch.WWN"), GetParam().wwn);
    EXPECT_EQ(device->get("Oper.Switch.WhoIsPrincipal"), GetParam().wwn);
    EXPECT_EQ(device->get("Oper.Switch.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.Switch.FaultList"), "");
    EXPECT_EQ(device->get("Oper.Switch.Nop"), "GL");
    EXPECT_EQ(device->get("Oper.Switch.MaxPorts"), GetParam().ports);
    EXPECT_EQ(device->get("Oper.Chassis.0.PowerSupplies"), "2");
    EXPECT_EQ(device->get("Oper.Chassis.0.Fans"), "3");
    EXPECT_EQ(device->get("Oper.Chassis.0.MaxSlots"), GetParam().slots);
    for (int slot = 0; slot < std::stoi(GetParam().slots); ++slot) {
        const std::string key = "Oper.Blade." + std::to_string(slot);
        EXPECT_EQ(device->get(key + ".OperState"), "Online") << slot;
        EXPECT_EQ(device->get(key + ".DiagStatus"), "Good") << slot;
        EXPECT_NE(device->get(key + ".BoardSerialNum"), "") << slot;
    }
    EXPECT_EQ(device->get("Oper.UserPort.0.0.OperState"), "Online");
    EXPECT_EQ(device->get("Oper.UserPort.0." + std::to_string(std::stoi(GetParam().ports) - 1) + ".OperState"),
              "Offline");
    EXPECT_EQ(device->get("Oper.Switch.FirstPotentialUser"), "admin");
    EXPECT_EQ(device->get("Oper.Eport.LsdbRecordList.255"), "1");
    EXPECT_TRUE(device->peers().empty());
    EXPECT_TRUE(device->links().empty());
    EXPECT_EQ(device->nameServer().size(), static_cast<size_t>(std::stoi(GetParam().ports) * 2 / 3));
}

TEST(Profile, DirectorHasItsBladesInTheirSlotsAnIoBladeLast) {
    const auto device = sim::create("director-8");
    std::vector<std::string> types;
    for (int slot = 0; slot < 8; ++slot)
        types.push_back(device->get("Oper.Blade." + std::to_string(slot) + ".Type"));
    EXPECT_EQ(types, (std::vector<std::string>{"CPU", "IO", "IO", "IO", "PS", "PS", "FAN", "IO"}));
}

TEST(Profile, UnknownOneIsRefusedNamingTheKnown) {
    try {
        const auto device = sim::create("director");
        FAIL() << "made a switch of an unknown profile";
    } catch (const std::invalid_argument &error) {
        EXPECT_STREQ(error.what(),
                     "no switch profile 'director'; there are: fixed-24 director-8 fixed-128 claims-200 second-naming "
                     "fabric-2 fabric-12 fabric-60 fabric-239");
    }
    EXPECT_THROW(sim::create(nullptr), std::invalid_argument);
    EXPECT_THROW(sim::create(""), std::invalid_argument);
}
