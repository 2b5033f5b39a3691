#include "sim/model/Settings.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;
using simtest::linesOf;
using simtest::shown;

namespace {

constexpr const char *kIpv4Enable = "Config.System.IPv4Enable";
constexpr const char *kIpv4Address = "Oper.System.Eth.0.IPv4Address";
constexpr const char *kIpv6Feature = "Oper.Switch.IPv6Feature";
constexpr const char *kIpv6Enable = "Config.System.IPv6Enable";
constexpr const char *kIpv6Address = "Oper.System.Eth.0.IPv6Address.0";
constexpr const char *kOemVersion = "Oper.Switch.OemActiveVer";

using Codes = std::vector<int32_t>;

/// One attribute: what it starts as, what it can become, what it cannot, and what then is sent.
struct Attribute {
    const char *key;
    const char *initial;
    const char *changed;
    const char *refused;
    Codes notifications;
};

void PrintTo(const Attribute &attribute, std::ostream *out) {
    *out << attribute.key;
}

/// A switch that supports all of them.
class Settings : public testing::TestWithParam<Attribute> {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create("director-8");
    Client client;
};

constexpr const char *kFreeText = nullptr;

INSTANTIATE_TEST_SUITE_P(
    EveryAttribute, Settings,
    testing::Values(Attribute{"Config.Services.TelnetEnable", "True", "False", "true", {57}},
                    Attribute{"Config.Services.SSHEnable", "False", "True", "", {57}},
                    Attribute{"Config.Services.EmbeddedGUIEnable", "True", "False", "0", {57}},
                    Attribute{"Config.Services.SSLEnable", "False", "True", "Yes", {57}},
                    Attribute{"Config.Services.SNMPEnable", "True", "False", "Off", {57}},
                    Attribute{"Config.Snmp.ReadComm", "public", "monitors", "two words", {17}},
                    Attribute{
                        "Config.Snmp.SysDescr", "FC Switch, 64 Fibre Channel ports", "Row 3, rack 7", kFreeText, {17}},
                    Attribute{"Oper.Switch.IPv4Feature", "True", "False", "FALSE", {52, 68}},
                    Attribute{kIpv4Enable, "True", "False", "no", {16, 68}},
                    Attribute{kIpv4Address, "192.0.2.10", "192.0.2.11", "192.0.2.256", {68}},
                    Attribute{kIpv6Feature, "True", "False", "1", {52, 69}},
                    Attribute{kIpv6Enable, "True", "False", "off", {16, 69}},
                    Attribute{kIpv6Address, "2001:db8::a1b2", "fe80::1", "192.0.2.10", {69}},
                    Attribute{"Oper.Switch.ActiveVer", "8.0.4.2", "8.1.0", kFreeText, {}},
                    Attribute{kOemVersion, "3.1.0", "3.2.0", kFreeText, {}},
                    Attribute{"Oper.Switch.Type", "Director", "Blade Switch", kFreeText, {}}));

const std::initializer_list<int32_t> kCodes = {8, 9, 16, 17, 31, 32, 52, 57, 68, 69, 78};

bool isConfiguration(const std::string &key) {
    return key.rfind("Config.", 0) == 0;
}

} // namespace

TEST_P(Settings, IsReadByClientsAndThroughTheControlInterface) {
    EXPECT_EQ(client.get(GetParam().key).status, 0);
    EXPECT_EQ(client.get(GetParam().key).value, GetParam().initial);
    EXPECT_STREQ(client.getBatch({GetParam().key})[0].value, GetParam().initial);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST_P(Settings, ChangesAndSaysSoOnce) {
    ASSERT_EQ(client.registerFor(kCodes), 0);
    device->set(GetParam().key, GetParam().changed);
    EXPECT_EQ(client.get(GetParam().key).value, GetParam().changed);
    device->set(GetParam().key, GetParam().changed); // no change, nothing to say
    EXPECT_EQ(client.codes(*device), GetParam().notifications);
}

TEST_P(Settings, ChangesInSilenceWhenAsked) {
    ASSERT_EQ(client.registerFor(kCodes), 0);
    device->set(GetParam().key, GetParam().changed, sim::Notify::no);
    EXPECT_EQ(device->get(GetParam().key), GetParam().changed);
    EXPECT_EQ(client.codes(*device), Codes());
}

TEST_P(Settings, RefusesWhatItCannotBeAndStaysAsItWas) {
    const std::string refused = GetParam().refused ? GetParam().refused : std::string(256, 'x');
    EXPECT_THROW(device->set(GetParam().key, refused), std::invalid_argument);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST_P(Settings, IsSetByClientsInAnEditOnlyIfItIsConfiguration) {
    ASSERT_EQ(client.registerFor(kCodes), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(GetParam().key, GetParam().changed), isConfiguration(GetParam().key) ? 0 : simtest::kReadOnly);
    EXPECT_EQ(client.get(GetParam().key).value, GetParam().initial);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    const bool isSet = isConfiguration(GetParam().key);
    EXPECT_EQ(client.get(GetParam().key).value, isSet ? GetParam().changed : GetParam().initial);
    EXPECT_EQ(client.codes(*device), isSet ? GetParam().notifications : Codes());
}

TEST_P(Settings, RefusesToClientsWhatItCannotBe) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Cim.EditConfig"), 0);
    const std::string refused = GetParam().refused ? GetParam().refused : std::string(256, 'x');
    EXPECT_EQ(client.set(GetParam().key, refused),
              isConfiguration(GetParam().key) ? simtest::kBadValue : simtest::kReadOnly);
    ASSERT_EQ(client.set("Cmd.Cim.SaveConfig"), 0);
    EXPECT_EQ(device->get(GetParam().key), GetParam().initial);
}

TEST(SettingsOfASwitch, AreNotMixedUp) {
    const auto device = sim::create("director-8");
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"Config.Snmp.ReadComm", "a"},  {"Config.Snmp.SysDescr", "b"},
        {"Oper.Switch.ActiveVer", "c"}, {kOemVersion, "d"},
        {"Oper.Switch.Type", "e"},      {kIpv4Address, "10.0.0.1"},
        {kIpv6Address, "fe80::1"}};
    for (const auto &[key, value] : texts)
        device->set(key, value);
    for (const auto &[key, value] : texts)
        EXPECT_EQ(device->get(key), value) << key;
    const std::vector<std::string> flags = {"Config.Services.TelnetEnable",
                                            "Config.Services.SSHEnable",
                                            "Config.Services.EmbeddedGUIEnable",
                                            "Config.Services.SSLEnable",
                                            "Config.Services.SNMPEnable",
                                            "Oper.Switch.IPv4Feature",
                                            kIpv4Enable,
                                            kIpv6Feature,
                                            kIpv6Enable};
    for (const std::string &raised : flags) {
        for (const std::string &flag : flags)
            device->set(flag, flag == raised ? "True" : "False");
        for (const std::string &flag : flags)
            EXPECT_EQ(device->get(flag), flag == raised ? "True" : "False") << flag << " beside " << raised;
    }
}

TEST(SettingsOfASwitch, FitItsProfile) {
    const auto description = [](const char *profile) { return sim::create(profile)->get("Config.Snmp.SysDescr"); };
    EXPECT_EQ(description("fixed-24"), "FC Switch, 24 Fibre Channel ports");
    EXPECT_EQ(description("fixed-128"), "FC Switch, 128 Fibre Channel ports");
    EXPECT_EQ(description("director-8"), "FC Switch, 64 Fibre Channel ports");
    EXPECT_EQ(sim::create("fixed-24")->get("Oper.Switch.Type"), "Fixed-Port Switch");
    EXPECT_EQ(sim::create("fabric-60")->get("Oper.Switch.Type"), "Fixed-Port Switch");
    EXPECT_EQ(sim::create("fixed-24")->get(kIpv6Enable), "False");
    EXPECT_EQ(sim::create("director-8")->get(kIpv6Enable), "True");
    EXPECT_EQ(sim::create("fixed-24")->get(kIpv6Feature), "True");
    EXPECT_EQ(sim::create("second-naming")->get(kIpv6Feature), "False");
}

TEST(OemVersion, IsNotSupportedWhereThereIsNone) {
    const auto device = sim::create();
    const Client client;
    device->clearRecords();
    EXPECT_EQ(client.get(kOemVersion).status, simtest::kNotSupported);
    EXPECT_EQ(client.getBatch({kOemVersion})[0].status, simtest::kNotSupported);
    EXPECT_EQ(linesOf(*device).front(),
              "zov_smlGet(" + std::to_string(client.handle) + ") = 103: Oper.Switch.OemActiveVer=\"\" status 103");
    EXPECT_EQ(device->get(kOemVersion), "");
    device->set(kOemVersion, "1.0");
    EXPECT_EQ(client.get(kOemVersion).value, "1.0");
}

TEST(IpVersion, WithoutItsFeatureIsNotSupported) {
    for (const char *version : {"4", "6"}) {
        const auto device = sim::create("director-8");
        const Client client;
        const std::string number = version;
        device->set("Oper.Switch.IPv" + number + "Feature", "False");
        const std::string other = number == "4" ? "6" : "4";
        const auto addressOf = [](const std::string &which) {
            return "Oper.System.Eth.0.IPv" + which + "Address" + (which == "6" ? ".0" : "");
        };
        EXPECT_EQ(client.get("Config.System.IPv" + number + "Enable").status, simtest::kNotSupported);
        EXPECT_EQ(client.get(addressOf(number)).status, simtest::kNotSupported);
        EXPECT_EQ(client.get("Oper.Switch.IPv" + number + "Feature").value, "False");
        EXPECT_EQ(client.get("Config.System.IPv" + other + "Enable").value, "True");
        EXPECT_EQ(client.get(addressOf(other)).status, 0);
        device->set("Oper.Switch.IPv" + number + "Feature", "True");
        EXPECT_EQ(client.get("Config.System.IPv" + number + "Enable").value, "True");
        EXPECT_NE(client.get(addressOf(number)).value, "");
    }
}

TEST(IpVersion, WithoutItsFeatureIsNotConfigured) {
    const auto device = sim::create("second-naming");
    const Client client;
    EXPECT_EQ(client.get(kIpv6Address).status, simtest::kNotSupported);
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    EXPECT_EQ(client.set(kIpv6Enable, "True"), simtest::kNotSupported);
    EXPECT_EQ(client.set(kIpv4Enable, "True"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get(kIpv6Enable), "False");
}

TEST(IpVersion, HasAnAddressWhileItIsEnabled) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({16, 52, 69}), 0);
    EXPECT_EQ(client.get(kIpv6Address).status, 0);
    EXPECT_EQ(client.get(kIpv6Address).value, "");
    device->set(kIpv6Enable, "True");
    EXPECT_EQ(client.get(kIpv6Address).value, "2001:db8::a1b2");
    device->set(kIpv6Enable, "False");
    EXPECT_EQ(client.get(kIpv6Address).value, "");
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    EXPECT_EQ(shown(client.events(0)),
              (std::vector<std::string>{
                  "16 Config.System.IPv6Enable is now True", "69 Oper.System.Eth.0.IPv6Address.0 is now 2001:db8::a1b2",
                  "16 Config.System.IPv6Enable is now False", "69 Oper.System.Eth.0.IPv6Address.0 is now "}));
}

TEST(IpVersion, ShowsAndTellsAnAddressGivenMeanwhileAsSoonAsItIsInUse) {
    const auto device = sim::create();
    Client client;
    ASSERT_EQ(client.registerFor({16, 52, 69}), 0);
    device->set(kIpv6Address, "fe80::7");
    EXPECT_EQ(device->get(kIpv6Address), "");
    device->set(kIpv6Feature, "False"); // not enabled: no address goes
    device->set(kIpv6Enable, "True");   // no feature: none comes
    EXPECT_EQ(device->get(kIpv6Address), "");
    EXPECT_EQ(client.codes(*device), (Codes{52, 16}));
    device->set(kIpv6Feature, "True");
    EXPECT_EQ(device->get(kIpv6Address), "fe80::7");
    EXPECT_EQ(client.codes(*device), (Codes{52, 16, 52, 69}));
}

TEST(IpVersion, WithoutAnAddressComesAndGoesWithoutOne) {
    const auto device = sim::create("director-8");
    Client client;
    device->set(kIpv4Address, "");
    EXPECT_EQ(client.get(kIpv4Address).status, 0);
    ASSERT_EQ(client.registerFor({16, 52, 68}), 0);
    device->set(kIpv4Enable, "False");
    device->set("Oper.Switch.IPv4Feature", "False");
    EXPECT_EQ(client.codes(*device), (Codes{16, 52}));
}

TEST(Settings, AnAddressOfAVersionThatIsOffIsStored) {
    const auto device = sim::create();
    device->set("Oper.System.Eth.0.IPv6Address.0", "2001:db8::7");
    EXPECT_EQ(device->get("Oper.System.Eth.0.IPv6Address.0"), "");
    EXPECT_EQ(device->stored("Oper.System.Eth.0.IPv6Address.0"), "2001:db8::7");
    EXPECT_EQ(device->stored("Oper.Switch.MaxPorts"), "24");
    EXPECT_THROW(device->stored("Oper.X"), std::invalid_argument);
}
