#include "tools/dcache/config/edit.h"

#include <gmock/gmock.h>

#include "tools/dcache/failure.h"

using namespace dcache;
using testing::HasSubstr;

namespace {

std::string misuseOf(const std::vector<std::string> &texts) {
    try {
        parseEdits(texts);
    } catch (const Misuse &misuse) {
        return misuse.what();
    }
    return "none";
}

} // namespace

TEST(ConfigEdits, TheFirstEqualsSignEndsTheKey) {
    const auto edits = parseEdits({"Config.A=1", "Config.B=x=y=", "Config.C="});
    ASSERT_EQ(edits.size(), 3u);
    EXPECT_EQ(edits[0].key, "Config.A");
    EXPECT_EQ(edits[0].value, "1");
    EXPECT_EQ(edits[1].key, "Config.B");
    EXPECT_EQ(edits[1].value, "x=y=");
    EXPECT_EQ(edits[2].value, "");
}

TEST(ConfigEdits, WhatIsNoEditIsMisuse) {
    EXPECT_EQ(misuseOf({"Config.A"}), "\"Config.A\" is no KEY=VALUE");
    EXPECT_EQ(misuseOf({""}), "\"\" is no KEY=VALUE");
    EXPECT_EQ(misuseOf({"=1"}), "\"=1\" has no key");
    EXPECT_EQ(misuseOf({"Config.A=1", "Config.B=1", "Config.A=2"}), "Config.A is there twice");
}

TEST(ConfigEdits, ACommandIsNoSetting) {
    EXPECT_EQ(misuseOf({"Cmd.Switch.Reset="}), "Cmd.Switch.Reset is a command, not a setting");
    EXPECT_EQ(misuseOf({"Cmdr.Switch="}), "none");
}

TEST(ConfigEdits, KeysAndValuesAreAsLongAsTheSwitchTakesThem) {
    const std::string longest(255, 'k');
    EXPECT_EQ(misuseOf({longest + "=" + longest}), "none");
    EXPECT_EQ(misuseOf({longest + "k=1"}), "a key of 256 characters is too long: the switch takes 255");
    EXPECT_EQ(misuseOf({"Config.A=" + longest + "v"}),
              "the value of Config.A has 256 characters, and the switch takes 255");
}

TEST(ConfigEdits, SecretsAreKnownByTheEndOfTheKey) {
    for (const char *key : {"Config.Snmp.ReadComm", "Config.Snmp.WriteComm", "Config.User.admin.Password"})
        EXPECT_TRUE(isSecretKey(key)) << key;
    for (const char *key : {"Config.Services.TelnetEnable", "Config.Snmp.ReadCommX", "Comm.X", ""})
        EXPECT_FALSE(isSecretKey(key)) << key;
}
