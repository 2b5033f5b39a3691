// The records that are exchanged with the switch library, as C and C++ see them.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "platform/zovlib.h"
#include "tests/support/Uptime.h"

extern "C" {
extern const uint32_t zovlib_layout_in_c[];
int32_t through_event_code_in_c(int32_t number);
int32_t through_member_type_in_c(int32_t number);
int32_t through_zone_type_in_c(int32_t number);
long uptime_in_c();
}

namespace {

struct Row {
    const char *what;
    size_t here;
    size_t wanted;
};

// The switch library was compiled with these numbers. (The C side has the same rows.)
constexpr Row kLayout[] = {
    {"zov_handle_t", sizeof(zov_handle_t), 4},
    {"SmlMessage", sizeof(SmlMessage), 516},
    {"SmlMessage.key", offsetof(SmlMessage, key), 0},
    {"SmlMessage.value", offsetof(SmlMessage, value), 256},
    {"SmlMessage.status", offsetof(SmlMessage, status), 512},
    {"zov_eventsource_s", sizeof(zov_eventsource_s), 12},
    {"zov_event_s", sizeof(zov_event_s), 1416},
    {"zov_event_s.code", offsetof(zov_event_s, code), 0},
    {"zov_event_s.source", offsetof(zov_event_s, source), 4},
    {"zov_event_s.text", offsetof(zov_event_s, text), 16},
    {"zov_event_s.rest", offsetof(zov_event_s, rest), 1412},
    {"zov_eventreg_s", sizeof(zov_eventreg_s), 8},
    {"zov_eventreg_s.code", offsetof(zov_eventreg_s, code), 0},
    {"zov_eventreg_s.result", offsetof(zov_eventreg_s, result), 4},
    {"zov_fzs_zoninglimits_s", sizeof(zov_fzs_zoninglimits_s), 28},
    {"zov_fzs_zoninglimits_s.zonesets", offsetof(zov_fzs_zoninglimits_s, zonesets), 0},
    {"zov_fzs_zoninglimits_s.zones", offsetof(zov_fzs_zoninglimits_s, zones), 4},
    {"zov_fzs_zoninglimits_s.members", offsetof(zov_fzs_zoninglimits_s, members), 8},
    {"zov_fzs_zoninglimits_s.zonesPerZoneset", offsetof(zov_fzs_zoninglimits_s, zonesPerZoneset), 12},
    {"zov_fzs_zoninglimits_s.membersPerZone", offsetof(zov_fzs_zoninglimits_s, membersPerZone), 16},
    {"zov_fzs_zoninglimits_s.aliases", offsetof(zov_fzs_zoninglimits_s, aliases), 20},
    {"zov_fzs_zoninglimits_s.membersPerAlias", offsetof(zov_fzs_zoninglimits_s, membersPerAlias), 24},
    {"zov_fzs_memberid_s", sizeof(zov_fzs_memberid_s), 68},
    {"zov_fzs_memberid_s.u", offsetof(zov_fzs_memberid_s, u), 0},
    {"zov_eventcode_e", sizeof(zov_eventcode_e), 4},
    {"zov_fzs_zonemember_type_e", sizeof(zov_fzs_zonemember_type_e), 4},
    {"zov_fzs_zone_type_e", sizeof(zov_fzs_zone_type_e), 4},
};

TEST(Zovlib, RecordsHaveTheLayoutOfTheSwitchLibraryInCAndCpp) {
    for (size_t row = 0; row < std::size(kLayout); ++row) {
        EXPECT_EQ(kLayout[row].here, kLayout[row].wanted) << kLayout[row].what << " in C++";
        EXPECT_EQ(zovlib_layout_in_c[row], kLayout[row].wanted) << kLayout[row].what << " in C";
    }
}

TEST(Zovlib, ArraysOfMessagesHaveAStrideOf516) {
    std::array<SmlMessage, 3> messages{};
    const auto *bytes = reinterpret_cast<const char *>(messages.data());
    EXPECT_EQ(messages[1].key, bytes + 516);
    EXPECT_EQ(messages[2].value, bytes + 1288);
}

TEST(Zovlib, FieldsHaveTheirTypes) {
    EXPECT_TRUE((std::is_same_v<decltype(SmlMessage::key), char[256]>));
    EXPECT_TRUE((std::is_same_v<decltype(SmlMessage::value), char[256]>));
    EXPECT_TRUE((std::is_same_v<decltype(SmlMessage::status), int32_t>));
    EXPECT_TRUE((std::is_same_v<decltype(zov_eventsource_s::number), int32_t[3]>));
    EXPECT_TRUE((std::is_same_v<decltype(zov_event_s::text), char[1396]>));
    EXPECT_TRUE((std::is_same_v<zov_handle_t, uint32_t>));
}

TEST(Zovlib, WordsAndBytesOfAMemberIdentifierAreTheSameStorage) {
    zov_fzs_memberid_s id = {};
    id.u.word[16] = 0x01020304;
    std::array<uint8_t, 4> word{};
    std::memcpy(word.data(), &id.u.word[16], sizeof(word));
    for (size_t i = 0; i < word.size(); ++i)
        EXPECT_EQ(id.u.byte[64 + i], word[i]);
}

TEST(Zovlib, EnumerationsHoldEvery32BitNumber) {
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<zov_eventcode_e>, int32_t>));
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<zov_fzs_zonemember_type_e>, int32_t>));
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<zov_fzs_zone_type_e>, int32_t>));
    for (const int32_t number : {INT32_MIN, INT32_MIN + 1, -1, 0, 6, 255, 256, 65536, INT32_MAX - 1, INT32_MAX}) {
        EXPECT_EQ(static_cast<int32_t>(static_cast<zov_eventcode_e>(number)), number);
        EXPECT_EQ(static_cast<int32_t>(static_cast<zov_fzs_zonemember_type_e>(number)), number);
        EXPECT_EQ(static_cast<int32_t>(static_cast<zov_fzs_zone_type_e>(number)), number);
        EXPECT_EQ(through_event_code_in_c(number), number);
        EXPECT_EQ(through_member_type_in_c(number), number);
        EXPECT_EQ(through_zone_type_in_c(number), number);
    }
}

TEST(Zovlib, ZoneAndMemberTypesHaveTheNumbersOfTheSwitchLibrary) {
    EXPECT_EQ(ZOV_ZMT_UNKNOWN, 0);
    EXPECT_EQ(ZOV_ZMT_PORTWWN, 1);
    EXPECT_EQ(ZOV_ZMT_DOMAINPORT, 2);
    EXPECT_EQ(ZOV_ZMT_FCADDRESS, 3);
    EXPECT_EQ(ZOV_ZMT_NODENAME, 4);
    EXPECT_EQ(ZOV_ZMT_ALIAS, 5);
    EXPECT_EQ(ZOV_ZT_INVALID, 0);
    EXPECT_EQ(ZOV_ZT_SOFT, 1);
    EXPECT_EQ(ZOV_ZT_HARDVPF, 2);
    EXPECT_EQ(ZOV_ZT_HARDACL, 3);
}

struct Code {
    zov_eventcode_e code;
    int32_t number;
};

// clang-format off
constexpr Code kCodes[] = {
    {ZOV_EVENT_FABRIC_CHANGE, 1}, {ZOV_EVENT_SWITCHTOPO_CHANGE, 2}, {ZOV_EVENT_ZONE_CHANGE, 3},
    {ZOV_EVENT_ZONE_MODE_CHANGE, 4}, {ZOV_EVENT_ZONEDB_MERGE, 5}, {ZOV_EVENT_NS_CHANGE, 6},
    {ZOV_EVENT_LSDB_CHANGE, 7}, {ZOV_EVENT_SWITCH_ATTR_CHANGE, 8}, {ZOV_EVENT_SWITCH_CFG_CHANGE, 9},
    {ZOV_EVENT_SWITCH_RESET, 10}, {ZOV_EVENT_CHASSIS_ATTR_CHANGE, 11}, {ZOV_EVENT_BLADE_ATTR_CHANGE, 12},
    {ZOV_EVENT_PORT_STATE_CHANGE, 13}, {ZOV_EVENT_PORT_ATTR_CHANGE, 14}, {ZOV_EVENT_PORT_CFG_CHANGE, 15},
    {ZOV_EVENT_NETWORK_CFG_CHANGE, 16}, {ZOV_EVENT_SNMP_CFG_CHANGE, 17}, {ZOV_EVENT_PORT_TEST_COMPLETE, 19},
    {ZOV_EVENT_PORT_TOPO_CHANGE, 20}, {ZOV_EVENT_ZONEDB_MERGE_FAILED, 21}, {ZOV_EVENT_EPORT_CONVERGE_ALARM, 22},
    {ZOV_EVENT_SWITCH_ACCESS_ALARM, 23}, {ZOV_EVENT_FABRIC_NS_CHANGE, 24}, {ZOV_EVENT_GENERIC_ALARM, 25},
    {ZOV_EVENT_GENERIC_USER_EVENT, 26}, {ZOV_EVENT_BLADE_CFG_CHANGE, 27}, {ZOV_EVENT_BLADE_INSERTED, 28},
    {ZOV_EVENT_BLADE_REMOVED, 29}, {ZOV_EVENT_PORT_COUNTERS_ZERO, 30}, {ZOV_EVENT_SWITCH_OPERCHANGE, 31},
    {ZOV_EVENT_SWITCH_STATE_CHANGE, 32}, {ZOV_EVENT_CHASSIS_OPERCHANGE, 33}, {ZOV_EVENT_PWR_SPLY_BAD_ALARM, 34},
    {ZOV_EVENT_PWR_SPLY_OK_ALARM, 35}, {ZOV_EVENT_FAN_BAD_ALARM, 36}, {ZOV_EVENT_FAN_OK_ALARM, 37},
    {ZOV_EVENT_BLADE_OPERCHANGE, 38}, {ZOV_EVENT_BLADE_STATE_CHANGE, 39}, {ZOV_EVENT_OVERHEAT_ALARM, 40},
    {ZOV_EVENT_OVERWARM_ALARM, 41}, {ZOV_EVENT_TEMP_OK_ALARM, 42}, {ZOV_EVENT_SECURITY_CHANGE, 43},
    {ZOV_EVENT_SECURITY_CFG_CHANGE, 44}, {ZOV_EVENT_FDMI_CLEARED, 45}, {ZOV_EVENT_FDMI_HBA_ADD, 46},
    {ZOV_EVENT_FDMI_HBA_MODIFY, 47}, {ZOV_EVENT_FDMI_HBA_DELETE, 48}, {ZOV_EVENT_DOMAINID_CHANGE, 49},
    {ZOV_EVENT_USER_ACL_CHANGE, 50}, {ZOV_EVENT_TIMEZONE_CHANGE, 51}, {ZOV_EVENT_FEATURE_CHANGE, 52},
    {ZOV_EVENT_CLI_COMMAND_DONE, 53}, {ZOV_EVENT_CREATE_SUPPORT_DONE, 54}, {ZOV_EVENT_MEDIA_SPEED_ALARM, 55},
    {ZOV_EVENT_RADIUS_CFG_CHANGE, 56}, {ZOV_EVENT_SERVICES_CFG_CHANGE, 57}, {ZOV_EVENT_PORT_TEST_COMPLETE_2, 60},
    {ZOV_EVENT_BLADE_TEST_COMPLETE, 61}, {ZOV_EVENT_SWITCH_TEST_COMPLETE, 62}, {ZOV_EVENT_CPU_SWITCHOVER, 66},
    {ZOV_EVENT_SWITCH_FAULT, 67}, {ZOV_EVENT_IP_ADDRESS_CHANGE, 68}, {ZOV_EVENT_IPV6_ADDRESS_CHANGE, 69},
    {ZOV_EVENT_USERLOG_UPDATE, 70}, {ZOV_EVENT_USER_PASSWORD_CHANGED, 72}, {ZOV_EVENT_USER_LOGIN_FAILURE, 73},
    {ZOV_EVENT_CIM_CFG_CHANGE, 78}, {ZOV_EVENT_NS_ENTRYADDED, 79}, {ZOV_EVENT_NS_ENTRYDELETED, 80},
    {ZOV_EVENT_BLADE_STATUS_CHANGE, 81}, {ZOV_EVENT_SWITCH_FAULT_CHANGE, 82}, {ZOV_EVENT_CONNECTION_LOST, 253},
    {ZOV_EVENT_CONNECTION_RESTORED, 254},
};
// clang-format on

TEST(Zovlib, EventCodesHaveTheNumbersOfTheSwitchLibrary) {
    for (const Code &row : kCodes)
        EXPECT_EQ(row.code, row.number);
}

TEST(Zovlib, TheHostsUptimeIsCalledFromC) {
    support::setUptime(86400);
    EXPECT_EQ(uptime_in_c(), 86400);
}

} // namespace
