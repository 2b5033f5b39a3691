#include "sim/model/Ports.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

namespace {

std::string keyOf(unsigned port, const std::string &attribute) {
    return "Oper.UserPort.0." + std::to_string(port) + "." + attribute;
}

constexpr const char *kMedia[] = {"DDM.Supported", "SFPData0_31", "SFPData32_63", "SFPSerialNumber"};

class Ports : public testing::Test {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;

    void SetUp() override { ASSERT_EQ(client.registerFor({14, 15, 76, 77}), 0); }

    /// The only notification that has come.
    zov_event_s onlyEvent() {
        EXPECT_EQ(client.codes(*device).size(), 1U);
        const std::vector<zov_event_s> events = client.events(1);
        return events.empty() ? zov_event_s{} : events[0];
    }
};

struct Change {
    const char *key;
    std::vector<const char *> values; ///< each another one than before
    int32_t notification;
};

void PrintTo(const Change &change, std::ostream *out) {
    *out << change.key;
}

class PortAttribute : public testing::TestWithParam<Change> {
protected:
    std::unique_ptr<sim::Simulator> device = sim::create();
    Client client;
};

constexpr const char *kSomeBytes = "00112233445566778899AABBCCDDEEFF00112233445566778899AABBCCDDEEFF";

INSTANTIATE_TEST_SUITE_P(
    Every, PortAttribute,
    testing::Values(
        Change{"Oper.UserPort.0.7.OperState",
               {"Offline", "Diagnostics", "Isolated", "Down", "Downed", "NotInstalled", "PoweredOff", "Online"},
               14},
        Change{"Oper.UserPort.0.7.AdminState", {"Offline", "Diagnostics", "Down", "Downed", "Online"}, 14},
        Change{"Config.UserPort.0.7.Type", {"G", "GL", "E", "FL", "Donor", "TH", "TF", "TR", "PT", "F"}, 15},
        Change{"Oper.UserPort.0.7.DDM.Supported", {"False", "", "True"}, 0},
        Change{"Oper.UserPort.0.7.SFPData0_31", {"", kSomeBytes}, 0},
        Change{"Oper.UserPort.0.7.SFPData32_63", {"", kSomeBytes}, 0},
        Change{"Oper.UserPort.0.7.SFPSerialNumber", {"", "A  1            "}, 0}));

} // namespace

TEST_P(PortAttribute, TakesEachOfItsValuesAndAnnouncesItWithItsPort) {
    ASSERT_EQ(client.registerFor({14, 15}), 0);
    std::vector<std::string> texts;
    for (const char *value : GetParam().values) {
        device->set(GetParam().key, value);
        EXPECT_EQ(client.get(GetParam().key).status, 0);
        EXPECT_EQ(client.get(GetParam().key).value, value);
        texts.push_back(std::string(GetParam().key) + " is now " + value);
    }
    const size_t count = GetParam().notification ? texts.size() : 0;
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>(count, GetParam().notification));
    const std::vector<zov_event_s> events = client.events(count);
    for (size_t i = 0; i < events.size(); ++i) {
        EXPECT_EQ(events[i].text, texts[i]);
        EXPECT_EQ(events[i].source.number[0], 0);
        EXPECT_EQ(events[i].source.number[1], 0);
        EXPECT_EQ(events[i].source.number[2], 7);
    }
}

TEST_P(PortAttribute, BelongsToItsPortAlone) {
    std::string neighbour = GetParam().key;
    neighbour.replace(neighbour.find(".7."), 3, ".8.");
    const std::string before = device->get(neighbour);
    device->set(GetParam().key, GetParam().values[0]);
    EXPECT_EQ(device->get(neighbour), before);
    EXPECT_EQ(device->get(GetParam().key), GetParam().values[0]);
}

TEST_F(Ports, KeysOfAPortThatIsNotThereAreUnknown) {
    for (const char *key : {"Oper.UserPort.0.24.OperState", "Oper.UserPort.0.24.WWN", "Config.UserPort.0.24.Type",
                            "Oper.UserPort.0.255.SFPData0_31", "Oper.UserPort.0.-1.OperState"}) {
        EXPECT_EQ(client.get(key).status, simtest::kNoSuchKey) << key;
        EXPECT_THROW(device->set(key, "Online"), std::invalid_argument) << key;
    }
}

TEST_F(Ports, ClientsSetTheTypeInAnEditAndNothingElse) {
    ASSERT_EQ(client.set("Cmd.Switch.ReqAdmin"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.EditConfig"), 0);
    for (const char *attribute :
         {"OperState", "AdminState", "DDM.Supported", "SFPData0_31", "SFPData32_63", "SFPSerialNumber", "WWN"})
        EXPECT_EQ(client.set(keyOf(3, attribute), "Online"), simtest::kReadOnly) << attribute;
    EXPECT_EQ(client.set("Oper.Switch.MaxPorts", "8"), simtest::kReadOnly);
    EXPECT_EQ(client.set("Config.UserPort.0.3.Type", "X"), simtest::kBadValue);
    EXPECT_EQ(client.set("Config.UserPort.0.24.Type", "G"), simtest::kNoSuchKey);
    ASSERT_EQ(client.set("Config.UserPort.0.3.Type", "Donor"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    EXPECT_EQ(device->get("Config.UserPort.0.3.Type"), "F");
    ASSERT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(device->get("Config.UserPort.0.3.Type"), "Donor");
    const zov_event_s event = onlyEvent();
    EXPECT_EQ(event.code, 15);
    EXPECT_EQ(event.source.number[2], 3);
}

TEST_F(Ports, AnEditOfAPortThatIsGoneWhenItIsActivatedDoesNothing) {
    for (const char *command : {"Cmd.Switch.ReqAdmin", "Cmd.Switch.EditConfig"})
        ASSERT_EQ(client.set(command), 0);
    ASSERT_EQ(client.set("Config.UserPort.0.20.Type", "G"), 0);
    ASSERT_EQ(client.set("Config.UserPort.0.4.Type", "G"), 0);
    ASSERT_EQ(client.set("Cmd.Switch.SaveConfig"), 0);
    device->set("Oper.Switch.MaxPorts", "12");
    EXPECT_EQ(client.set("Cmd.Switch.ActConfig"), 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>{15});
    EXPECT_EQ(device->get("Config.UserPort.0.4.Type"), "G");
}

// ---- how many ports there are ------------------------------------------------------------------------------------

TEST_F(Ports, PortsThatComeAreOfflineAndEmpty) {
    device->set("Oper.Switch.MaxPorts", "200");
    EXPECT_EQ(client.get("Oper.Switch.MaxPorts").value, "200");
    for (const unsigned port : {24U, 199U}) {
        EXPECT_EQ(client.get(keyOf(port, "OperState")).value, "Offline");
        EXPECT_EQ(client.get(keyOf(port, "AdminState")).value, "Online");
        for (const char *attribute : kMedia) {
            EXPECT_EQ(client.get(keyOf(port, attribute)).status, 0) << attribute;
            EXPECT_EQ(client.get(keyOf(port, attribute)).value, "") << attribute;
        }
    }
    EXPECT_EQ(client.get(keyOf(200, "OperState")).status, simtest::kNoSuchKey);
    EXPECT_EQ(client.get(keyOf(23, "OperState")).status, 0);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(Ports, PortsThatGoLoseWhatTheyWere) {
    device->set(keyOf(23, "OperState"), "Isolated", sim::Notify::no);
    device->set("Oper.Switch.MaxPorts", "23");
    EXPECT_EQ(client.get(keyOf(23, "OperState")).status, simtest::kNoSuchKey);
    EXPECT_EQ(client.get(keyOf(22, "OperState")).status, 0);
    device->set("Oper.Switch.MaxPorts", "24");
    EXPECT_EQ(client.get(keyOf(23, "OperState")).value, "Offline");
}

TEST_F(Ports, ThereAre255AtMost) {
    device->set("Oper.Switch.MaxPorts", "255");
    EXPECT_EQ(client.get(keyOf(254, "OperState")).status, 0);
    for (const char *refused : {"256", "-1", "", "many"})
        EXPECT_THROW(device->set("Oper.Switch.MaxPorts", refused), std::invalid_argument) << refused;
    device->set("Oper.Switch.MaxPorts", "0");
    EXPECT_EQ(client.get("Oper.Switch.MaxPorts").value, "0");
    EXPECT_EQ(client.get(keyOf(0, "OperState")).status, simtest::kNoSuchKey);
}

// ---- names -------------------------------------------------------------------------------------------------------

TEST_F(Ports, NamesHaveThePortInTheTwelveBitsAfterTheFormat) {
    device->set("Oper.Switch.MaxPorts", "255");
    EXPECT_EQ(client.get(keyOf(0, "WWN")).value, "200000C0DD00A1B2");
    EXPECT_EQ(client.get(keyOf(5, "WWN")).value, "200500C0DD00A1B2");
    EXPECT_EQ(client.get(keyOf(254, "WWN")).value, "20FE00C0DD00A1B2");
}

TEST_F(Ports, NamesFollowTheNameOfTheSwitch) {
    const struct {
        const char *switchName;
        const char *portThree;
    } rows[] = {
        {"100000c0dd00beef", "200300C0DD00BEEF"}, {"1FFF000BEC123456", "2003000BEC123456"},
        {"2000000BEC123456", "2003000BEC123456"}, {"2000000DEC123456", "2004000DEC123456"},
        {"1000000DEC123456", "2004000DEC123456"}, {"2000010DEC123456", "2003010DEC123456"},
        {"20000000EC123456", "20030000EC123456"}, {"2000000D0C123456", "2003000D0C123456"},
        {"500000C0DD00A1B2", "500000C0DD00A1B2"}, {"0000000000000000", "0000000000000000"},
    };
    for (const auto &row : rows) {
        device->set("Oper.Switch.WWN", row.switchName);
        EXPECT_EQ(device->get(keyOf(3, "WWN")), row.portThree) << row.switchName;
    }
}

TEST_F(Ports, ASwitchOfTheSecondNamingNumbersItsPortsFromOne) {
    const auto second = sim::create("second-naming");
    const Client visitor;
    EXPECT_EQ(visitor.get("Oper.Switch.WWN").value, "2000000DEC00A1B2");
    EXPECT_EQ(visitor.get(keyOf(0, "WWN")).value, "2001000DEC00A1B2");
    EXPECT_EQ(visitor.get(keyOf(23, "WWN")).value, "2018000DEC00A1B2");
    second->set("Oper.Switch.MaxPorts", "255");
    EXPECT_EQ(visitor.get(keyOf(254, "WWN")).value, "20FF000DEC00A1B2");
}

// ---- transceivers ------------------------------------------------------------------------------------------------

TEST_F(Ports, APulledTransceiverLeavesEmptyTextsBehind) {
    device->pullTransceiver(3);
    for (const char *attribute : kMedia) {
        EXPECT_EQ(client.get(keyOf(3, attribute)).status, 0) << attribute;
        EXPECT_EQ(client.get(keyOf(3, attribute)).value, "") << attribute;
        EXPECT_NE(client.get(keyOf(4, attribute)).value, "") << attribute;
    }
    EXPECT_EQ(client.get(keyOf(3, "OperState")).value, "Online");
    const zov_event_s event = onlyEvent();
    EXPECT_EQ(event.code, 77);
    EXPECT_STREQ(event.text, "0;0;0;3");
    EXPECT_EQ(event.source.number[0], 0);
    EXPECT_EQ(event.source.number[1], 0);
    EXPECT_EQ(event.source.number[2], 3);
}

TEST_F(Ports, APluggedTransceiverIsReadAndAnnounced) {
    sim::Transceiver transceiver;
    transceiver.vendorOui = 0x00176A;
    transceiver.serialNumber = "AD0831E00123-456";
    transceiver.diagnostics = false;
    device->plugTransceiver(21, transceiver);
    EXPECT_EQ(client.get(keyOf(21, "DDM.Supported")).value, "False");
    EXPECT_EQ(client.get(keyOf(21, "SFPData0_31")).value.substr(0, 2), "03");
    EXPECT_EQ(client.get(keyOf(21, "SFPData32_63")).value.substr(10, 6), "00176A");
    EXPECT_EQ(client.get(keyOf(21, "SFPSerialNumber")).value, "AD0831E00123-456");
    EXPECT_EQ(client.get(keyOf(21, "OperState")).value, "Offline");
    const zov_event_s event = onlyEvent();
    EXPECT_EQ(event.code, 76);
    EXPECT_STREQ(event.text, "0;0;0;21;1;5994;AD0831E00123-456;0");
    EXPECT_EQ(event.source.number[0], 0);
    EXPECT_EQ(event.source.number[1], 0);
    EXPECT_EQ(event.source.number[2], 21);
}

TEST_F(Ports, TheNotificationSaysWhatFormATransceiverIsOf) {
    const std::pair<uint8_t, std::string> forms[] = {{0x03, "0"}, {0x00, "2"}, {0x0D, "1"}, {0x11, "1"}};
    for (const auto &[identifier, format] : forms) {
        sim::Transceiver transceiver;
        transceiver.identifier = identifier;
        device->plugTransceiver(20, transceiver);
        device->pullTransceiver(20, sim::Notify::no);
    }
    ASSERT_TRUE(device->waitUntilQuiet(simtest::kPatience));
    const std::vector<zov_event_s> events = client.events(4);
    ASSERT_EQ(events.size(), 4U);
    for (size_t i = 0; i < events.size(); ++i)
        EXPECT_EQ(events[i].text, "0;0;0;20;1;36965;FNS0331A00000001;" + forms[i].second);
}

TEST_F(Ports, AShortSerialNumberKeepsTheBlanksItIsStoredWith) {
    sim::Transceiver transceiver;
    transceiver.serialNumber = "A 1";
    device->plugTransceiver(20, transceiver);
    EXPECT_EQ(client.get(keyOf(20, "SFPSerialNumber")).value, "A 1             ");
    EXPECT_STREQ(onlyEvent().text, "0;0;0;20;1;36965;A 1             ;0");
}

TEST_F(Ports, TransceiversComeAndGoInSilenceWhenAsked) {
    device->pullTransceiver(0, sim::Notify::no);
    device->plugTransceiver(0, {}, sim::Notify::no);
    EXPECT_EQ(client.get(keyOf(0, "SFPSerialNumber")).value, "FNS0331A00000001");
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(Ports, ACageHoldsOneTransceiverAndOnlyWhatItHoldsCanBePulled) {
    const std::string before = device->get(keyOf(19, "SFPSerialNumber"));
    EXPECT_THROW(device->plugTransceiver(19, {}), std::invalid_argument);
    EXPECT_EQ(device->get(keyOf(19, "SFPSerialNumber")), before);
    EXPECT_THROW(device->pullTransceiver(20), std::invalid_argument);
    EXPECT_THROW(device->pullTransceiver(24), std::invalid_argument);
    EXPECT_THROW(device->plugTransceiver(24, {}), std::invalid_argument);
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}

TEST_F(Ports, ARefusedTransceiverLeavesTheCageEmpty) {
    sim::Transceiver transceiver;
    transceiver.serialNumber = "01234567890123456";
    EXPECT_THROW(device->plugTransceiver(20, transceiver), std::invalid_argument);
    for (const char *attribute : kMedia)
        EXPECT_EQ(device->get(keyOf(20, attribute)), "") << attribute;
    EXPECT_EQ(client.codes(*device), std::vector<int32_t>());
}
