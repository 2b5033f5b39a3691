#include "sim/tree/Rules.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

namespace {

/// What the switch says when an attribute is given a value it cannot take.
std::string refusal(const char *key, const std::string &value) {
    const auto device = sim::create();
    try {
        device->set(key, value);
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "taken";
}

} // namespace

TEST(Rules, ARefusalSaysWhatIsAllowed) {
    EXPECT_EQ(refusal("Oper.Switch.FCOEFeature", "true"),
              "'Oper.Switch.FCOEFeature' cannot be 'true'; allowed: True, False");
    EXPECT_EQ(refusal("Oper.Switch.OperState", "Up"),
              "'Oper.Switch.OperState' cannot be 'Up'; allowed: Online, Offline, Diagnostics, Downed");
    EXPECT_EQ(refusal("Oper.Chassis.0.Fan.0", "Broken"),
              "'Oper.Chassis.0.Fan.0' cannot be 'Broken'; allowed: Good, Bad, NotInstalled");
    EXPECT_EQ(refusal("Oper.Switch.WWN", "0"), "'Oper.Switch.WWN' cannot be '0'; allowed: 16 hexadecimal digits");
    EXPECT_EQ(refusal("Oper.Switch.DomainID", "0"), "'Oper.Switch.DomainID' cannot be '0'; allowed: 1 to 239");
    EXPECT_EQ(refusal("Oper.Chassis.0.Fans", "256"), "'Oper.Chassis.0.Fans' cannot be '256'; allowed: 0 to 255");
    EXPECT_EQ(refusal("Oper.Zoning.ActiveChecksum", "0x1"),
              "'Oper.Zoning.ActiveChecksum' cannot be '0x1'; allowed: 1 to 8 hexadecimal digits");
    EXPECT_EQ(refusal("Oper.Switch.Nop", std::string(256, 'x')),
              "'Oper.Switch.Nop' cannot be '" + std::string(256, 'x') + "'; allowed: a text of at most 255 characters");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.OperState", "Up"),
              "'Oper.UserPort.0.0.OperState' cannot be 'Up'; allowed: Online, Offline, Diagnostics, Isolated, Down, "
              "Downed, NotInstalled, PoweredOff");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.AdminState", ""),
              "'Oper.UserPort.0.0.AdminState' cannot be ''; allowed: Online, Offline, Diagnostics, Down, Downed");
    EXPECT_EQ(refusal("Config.UserPort.0.0.Type", "g"),
              "'Config.UserPort.0.0.Type' cannot be 'g'; allowed: G, GL, E, F, FL, Donor, TH, TF, TR, PT");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.DDM.Supported", "Yes"),
              "'Oper.UserPort.0.0.DDM.Supported' cannot be 'Yes'; allowed: True, False, or nothing");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.SFPData0_31", "03"),
              "'Oper.UserPort.0.0.SFPData0_31' cannot be '03'; allowed: 64 hexadecimal digits, or nothing");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.SFPSerialNumber", "A1"),
              "'Oper.UserPort.0.0.SFPSerialNumber' cannot be 'A1'; allowed: 16 printing characters, or nothing");
    EXPECT_EQ(refusal("Oper.UserPort.0.0.WWN", "200000C0DD00A1B2"),
              "'Oper.UserPort.0.0.WWN' cannot be '200000C0DD00A1B2'; allowed: nothing; it follows from other "
              "attributes");
    EXPECT_EQ(refusal("Oper.Blade.0.OperState", "Isolated"),
              "'Oper.Blade.0.OperState' cannot be 'Isolated'; allowed: Online, Offline, Diagnostics, Pending, Down, "
              "Downed, NotInstalled, PoweredOff");
    EXPECT_EQ(refusal("Oper.Blade.0.AdminState", "Pending"),
              "'Oper.Blade.0.AdminState' cannot be 'Pending'; allowed: Online, Offline, Diagnostics, Down, Downed, "
              "PoweredOff, or nothing");
    EXPECT_EQ(refusal("Oper.Blade.0.DiagStatus", "Passed"),
              "'Oper.Blade.0.DiagStatus' cannot be 'Passed'; allowed: Good, Compromised, Failed, or nothing");
    EXPECT_EQ(refusal("Oper.Blade.0.Type", "io"),
              "'Oper.Blade.0.Type' cannot be 'io'; allowed: IO, CPU, PS, FAN, or nothing");
    EXPECT_EQ(refusal("Oper.Blade.0.TempSensors", "256"),
              "'Oper.Blade.0.TempSensors' cannot be '256'; allowed: 0 to 255, or nothing");
    EXPECT_EQ(refusal("Oper.System.Eth.0.IPv4Address", "::1"),
              "'Oper.System.Eth.0.IPv4Address' cannot be '::1'; allowed: an IPv4 address, or nothing");
    EXPECT_EQ(refusal("Oper.System.Eth.0.IPv6Address.0", "10.0.0.1"),
              "'Oper.System.Eth.0.IPv6Address.0' cannot be '10.0.0.1'; allowed: an IPv6 address, or nothing");
    EXPECT_EQ(refusal("Config.Snmp.ReadComm", ""),
              "'Config.Snmp.ReadComm' cannot be ''; allowed: 1 to 64 printing characters without blanks");
    EXPECT_EQ(refusal("Oper.Switch.Color", "red"), "the switch has no attribute 'Oper.Switch.Color'");
}

TEST(Rules, WwnsHaveSixteenDigitsOfEitherCase) {
    EXPECT_EQ(refusal("Oper.Switch.WWN", "0123456789abcDEF"), "taken");
    EXPECT_EQ(refusal("Oper.Switch.WWN", "0000000000000000"), "taken");
    for (const char *value :
         {"0123456789abcde", "0123456789abcdef0", "0123456789abcde/", "0123456789abcde:", "0123456789abcde@",
          "0123456789abcdeG", "0123456789abcde`", "0123456789abcdeg", "10:00:00:C0:DD:00", "0123456789abcde\xE9"})
        EXPECT_NE(refusal("Oper.Switch.WWN", value), "taken") << value;
}

TEST(Rules, NumbersArePlainAndWithinTheirRange) {
    for (const char *value : {"1", "9", "10", "239"})
        EXPECT_EQ(refusal("Oper.Switch.DomainID", value), "taken") << value;
    for (const char *value : {"0", "240", "01", "+1", "-1", "1.0", " 1", "0x1", "", "9999999999"})
        EXPECT_NE(refusal("Oper.Switch.DomainID", value), "taken") << value;
}

TEST(Rules, IdentificationHasSixtyFourDigitsOrNone) {
    constexpr const char *key = "Oper.UserPort.0.0.SFPData32_63";
    EXPECT_EQ(refusal(key, std::string(64, 'a')), "taken");
    EXPECT_EQ(refusal(key, ""), "taken");
    EXPECT_NE(refusal(key, std::string(63, '0')), "taken");
    EXPECT_NE(refusal(key, std::string(65, '0')), "taken");
    EXPECT_NE(refusal(key, std::string(63, '0') + "x"), "taken");
}

TEST(Rules, SerialNumbersOfTransceiversPrintFromTheBlankToTheTilde) {
    constexpr const char *key = "Oper.UserPort.0.0.SFPSerialNumber";
    EXPECT_EQ(refusal(key, " AB  12        ~"), "taken");
    EXPECT_EQ(refusal(key, ""), "taken");
    for (const char *value :
         {"0123456789ABCDE", "0123456789ABCDEF0", "0123456789ABCDE\x1F", "0123456789ABCDE\x7F", "0123456789ABCDE\xE9"})
        EXPECT_NE(refusal(key, value), "taken") << value;
}

TEST(Rules, AddressesAreThoseOfTheirIpVersion) {
    constexpr const char *ipv4 = "Oper.System.Eth.0.IPv4Address";
    for (const char *value : {"0.0.0.0", "255.255.255.255", "10.1.2.3", ""})
        EXPECT_EQ(refusal(ipv4, value), "taken") << value;
    for (const char *value :
         {"10.1.2", "10.1.2.256", "10.1.2.3.4", " 10.1.2.3", "10.1.2.3 ", "10.1.2.3/24", "0x0A.1.2.3"})
        EXPECT_NE(refusal(ipv4, value), "taken") << value;
    EXPECT_NE(refusal(ipv4, std::string("10.1.2.3\0", 9)), "taken");
    constexpr const char *ipv6 = "Oper.System.Eth.0.IPv6Address.0";
    for (const char *value : {"::", "fe80::1", "2001:DB8:0:0:0:0:0:1", "::ffff:10.1.2.3", ""})
        EXPECT_EQ(refusal(ipv6, value), "taken") << value;
    for (const char *value : {"fe80", "1::2::3", "1:2:3:4:5:6:7", "fe80::1%eth0", "2001:db8::/32", "[::1]", "g::1"})
        EXPECT_NE(refusal(ipv6, value), "taken") << value;
    EXPECT_NE(refusal(ipv6, std::string("::1\0", 4)), "taken");
}

TEST(Rules, CommunitiesPrintWithoutBlanks) {
    constexpr const char *key = "Config.Snmp.ReadComm";
    for (const std::string &value : {std::string("p"), std::string("!~"), std::string(64, 'c')})
        EXPECT_EQ(refusal(key, value), "taken") << value;
    for (const std::string &value : {std::string(65, 'c'), std::string(" public"), std::string("pub lic"),
                                     std::string("public\x7F"), std::string("public\n"), std::string("public\0", 7)})
        EXPECT_NE(refusal(key, value), "taken") << value;
}
