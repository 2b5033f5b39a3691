// `dcache settings`: settings.cc and commands/settings.cc, and the command line around them.
#include "tools/dcache/settings.h"

#include <gmock/gmock.h>
#include <set>

#include "sim/Simulator.h"
#include "tests/tools/Json.h"
#include "tests/tools/RunDcache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"

using namespace dcache;
using support::runDcache;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class SettingsTest : public testing::Test {
protected:
    void set(const char *key, const char *value) { _switch->set(key, value, sim::Notify::no); }

    /// Every read of keys of this pattern, here and in batches, has this answer.
    void answer(const char *key, std::optional<int32_t> status, std::optional<std::string> value = std::nullopt) {
        sim::Fault fault;
        fault.key = key;
        fault.status = status;
        fault.value = std::move(value);
        fault.times = -1;
        _switch->addFault(fault);
    }

    static nlohmann::json json(bool secrets = false) { return jsonOf(showSettings(secrets)); }
    static std::string table(bool secrets = false) { return render(showSettings(secrets), Format::table, false); }

    std::unique_ptr<sim::Simulator> _switch = sim::create();
};

Setting made(SettingKind kind) {
    return {nullptr, "key", "label", kind, nullptr};
}

} // namespace

TEST_F(SettingsTest, AreShownInGroupsForPeople) {
    set("Config.Services.SSHEnable", "False");
    set("Config.Services.TelnetEnable", "True");
    set("Oper.System.Eth.0.IPv4Address", "192.0.2.77");
    const std::string text = table();
    EXPECT_THAT(text, testing::StartsWith("Services\n"
                                          "Telnet                 on\n"
                                          "SSH                    off\n"));
    EXPECT_THAT(text, HasSubstr("\n\nNetwork\n"
                                "IPv4 supported         yes\n"));
    EXPECT_THAT(text, HasSubstr("IPv4 address           192.0.2.77\n"));
    EXPECT_THAT(text, HasSubstr("\n\nVersions\n"));
    EXPECT_THAT(text, HasSubstr("\n\nManufacturing\n"));
    EXPECT_THAT(text, HasSubstr("\n\nFabric\n"
                                "domain ID              1\n"
                                "WWN                    10:00:00:C0:DD:00:A1:B2\n"));
    EXPECT_THAT(text, HasSubstr("\n\nProduct\nproduct description    "));
    for (const std::string &line : support::lines(text))
        EXPECT_LE(line.size(), 80u) << line;
}

TEST_F(SettingsTest, EveryOneOfThemComesFromTheKeyItIsNamedAfter) {
    struct Row {
        const char *key;
        const char *name;
        const char *value; ///< that the switch answers
        nlohmann::json shown;
    };
    const std::vector<Row> rows = {
        {"Config.Services.TelnetEnable", "telnet", "True", true},
        {"Config.Services.SSHEnable", "ssh", "False", false},
        {"Config.Services.EmbeddedGUIEnable", "embeddedGui", "True", true},
        {"Config.Services.SSLEnable", "ssl", "False", false},
        {"Config.Services.SNMPEnable", "snmp", "maybe", "maybe"},
        {"Config.Snmp.ReadComm", "snmpReadCommunity", "geheim", "geheim"},
        {"Oper.Switch.IPv4Feature", "ipv4Supported", "False", false},
        {"Config.System.IPv4Enable", "ipv4", "True", true},
        {"Oper.System.Eth.0.IPv4Address", "ipv4Address", "192.0.2.9", "192.0.2.9"},
        {"Oper.Switch.IPv6Feature", "ipv6Supported", "True", true},
        {"Config.System.IPv6Enable", "ipv6", "False", false},
        {"Oper.System.Eth.0.IPv6Address.0", "ipv6Address", "2001:db8::9", "2001:db8::9"},
        {"Oper.Switch.ActiveVer", "activeVersion", "1.2", "1.2"},
        {"Oper.Switch.OemActiveVer", "oemActiveVersion", "3.4", "3.4"},
        {"Config.Mfg.BrandName", "brandName", "Oak", "Oak"},
        {"Oper.Switch.Type", "type", "Ash", "Ash"},
        {"Config.Mfg.ChassisSerialNum", "chassisSerialNumber", "S1", "S1"},
        {"Config.Mfg.ChassisPartNum", "chassisPartNumber", "P2", "P2"},
        {"Config.Mfg.PlanarPartNum", "planarPartNumber", "P3", "P3"},
        {"Oper.Switch.DomainID", "domain", "77", 77},
        {"Oper.Switch.WWN", "wwn", "100000c0dd001234", "10:00:00:C0:DD:00:12:34"},
        {"Oper.Switch.WhoIsPrincipal", "principalWwn", "100000c0dd00abcd", "10:00:00:C0:DD:00:AB:CD"},
        {"Config.Snmp.SysDescr", "productDescription", "a switch", "a switch"},
    };
    nlohmann::json expected = {{"snmpReadCommunitySet", true}};
    for (const Row &row : rows) {
        answer(row.key, std::nullopt, row.value);
        expected[row.name] = row.shown;
    }
    EXPECT_EQ(json(true), expected);
}

TEST_F(SettingsTest, WhatTheSwitchDoesNotHaveIsASignForPeopleAndNullForPrograms) {
    for (const char *key : {"Oper.Switch.OemActiveVer", "Config.Snmp.ReadComm", "Config.Snmp.SysDescr"})
        answer(key, 103);
    answer("Oper.Switch.DomainID", 5);
    const auto values = json();
    for (const char *name : {"oemActiveVersion", "snmpReadCommunitySet", "productDescription", "domain"})
        EXPECT_TRUE(values.at(name).is_null()) << name;
    EXPECT_EQ(values.at("brandName"), "FC Switch");
    EXPECT_THAT(table(), HasSubstr("OEM active version     -\n"));
    EXPECT_THAT(table(), HasSubstr("SNMP read community    -\n"));
}

TEST_F(SettingsTest, TheCommunityIsShownOnlyWhenItIsAskedFor) {
    answer("Config.Snmp.ReadComm", std::nullopt, "geheim");
    EXPECT_THAT(table(), HasSubstr("SNMP read community    (set)\n"));
    EXPECT_THAT(table(), Not(HasSubstr("geheim")));
    EXPECT_EQ(json().at("snmpReadCommunitySet"), true);
    EXPECT_FALSE(json().contains("snmpReadCommunity"));
    EXPECT_THAT(table(true), HasSubstr("SNMP read community    geheim\n"));
    EXPECT_EQ(json(true).at("snmpReadCommunity"), "geheim");
}

TEST_F(SettingsTest, AnEmptyCommunityIsNone) {
    answer("Config.Snmp.ReadComm", std::nullopt, "");
    EXPECT_THAT(table(), HasSubstr("SNMP read community    (none)\n"));
    EXPECT_EQ(json().at("snmpReadCommunitySet"), false);
}

TEST_F(SettingsTest, TextsCannotReachATerminalUnprinted) {
    answer("Oper.Switch.Type", std::nullopt, "a\x1b[2Jb");
    EXPECT_THAT(table(), HasSubstr("type                   a\\x1B[2Jb\n"));
    EXPECT_EQ(json().at("type"), "a\x1b[2Jb");
}

TEST_F(SettingsTest, TakeTheConnectionAndNothingMore) {
    table();
    const auto records = _switch->records();
    EXPECT_TRUE(std::none_of(records.begin(), records.end(), [](const sim::Record &record) {
        return record.call == "zov_smlGetBatch" || record.call == "zov_enRegisterForEventList";
    })) << "the cache is neither loaded nor registered";
}

TEST_F(SettingsTest, ASwitchThatTellsNoneOfThemIsAFailure) {
    answer("*", 5);
    EXPECT_THAT([] { showSettings(false); },
                testing::ThrowsMessage<Failure>(HasSubstr("the switch tells none of its settings")));
}

TEST(Settings, HaveNamesOfTheirOwn) {
    std::set<std::string> keys;
    std::set<std::string> labels;
    for (const Setting &setting : allSettings()) {
        keys.insert(setting.key);
        labels.insert(setting.label);
    }
    EXPECT_EQ(keys.size(), allSettings().size());
    EXPECT_EQ(labels.size(), allSettings().size());
}

TEST(Settings, ATextThatIsNotOfItsKindIsShownAsItIs) {
    EXPECT_EQ(settingCell(made(SettingKind::onOff), "true", false).text, "true");
    EXPECT_EQ(settingCell(made(SettingKind::yesNo), "", false).text, "none");
    EXPECT_EQ(settingCell(made(SettingKind::number), "7 or so", false).value, "7 or so");
    EXPECT_EQ(settingCell(made(SettingKind::number), "", false).value, "");
    EXPECT_EQ(settingCell(made(SettingKind::wwn), "10", false).text, "10");
    EXPECT_EQ(settingCell(made(SettingKind::wwn), "100000C0DD00A1B2", false).text, "10:00:00:C0:DD:00:A1:B2");
}

TEST(SettingsCommandLine, AllThreeFormsAndBothWaysToAsk) {
    const auto shown = runDcache({"settings"});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_THAT(shown.err, IsEmpty());
    EXPECT_EQ(runDcache({"settings", "show"}).out, shown.out);
    const auto values = support::parseJson(runDcache({"settings", "-o", "json"}).out);
    EXPECT_EQ(values.size(), allSettings().size() + 1) << "and the description";
    EXPECT_THAT(runDcache({"settings", "-o", "terse"}).out, HasSubstr("\nsnmpReadCommunitySet=true\n"));
    EXPECT_THAT(runDcache({"settings", "show", "--secrets", "-o", "terse"}).out,
                HasSubstr("\nsnmpReadCommunity=public\n"));
}
