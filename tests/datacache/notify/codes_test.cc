// The table of notification codes, compared row by row with what the switch library documents.
#include "datacache/notify/codes.h"

#include <climits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "datacache/DataCache.h"

namespace {

const std::map<int, std::string> &names() {
    static const std::map<int, std::string> table = {
        {1, "ZOV_EVENT_FABRIC_CHANGE"},
        {2, "ZOV_EVENT_SWITCHTOPO_CHANGE"},
        {3, "ZOV_EVENT_ZONE_CHANGE"},
        {4, "ZOV_EVENT_ZONE_MODE_CHANGE"},
        {5, "ZOV_EVENT_ZONEDB_MERGE"},
        {6, "ZOV_EVENT_NS_CHANGE"},
        {7, "ZOV_EVENT_LSDB_CHANGE"},
        {8, "ZOV_EVENT_SWITCH_ATTR_CHANGE"},
        {9, "ZOV_EVENT_SWITCH_CFG_CHANGE"},
        {10, "ZOV_EVENT_SWITCH_RESET"},
        {11, "ZOV_EVENT_CHASSIS_ATTR_CHANGE"},
        {12, "ZOV_EVENT_BLADE_ATTR_CHANGE"},
        {13, "ZOV_EVENT_PORT_STATE_CHANGE"},
        {14, "ZOV_EVENT_PORT_ATTR_CHANGE"},
        {15, "ZOV_EVENT_PORT_CFG_CHANGE"},
        {16, "ZOV_EVENT_NETWORK_CFG_CHANGE"},
        {17, "ZOV_EVENT_SNMP_CFG_CHANGE"},
        {19, "ZOV_EVENT_PORT_TEST_COMPLETE"},
        {20, "ZOV_EVENT_PORT_TOPO_CHANGE"},
        {21, "ZOV_EVENT_ZONEDB_MERGE_FAILED"},
        {22, "ZOV_EVENT_EPORT_CONVERGE_ALARM"},
        {23, "ZOV_EVENT_SWITCH_ACCESS_ALARM"},
        {24, "ZOV_EVENT_FABRIC_NS_CHANGE"},
        {25, "ZOV_EVENT_GENERIC_ALARM"},
        {26, "ZOV_EVENT_GENERIC_USER_EVENT"},
        {27, "ZOV_EVENT_BLADE_CFG_CHANGE"},
        {28, "ZOV_EVENT_BLADE_INSERTED"},
        {29, "ZOV_EVENT_BLADE_REMOVED"},
        {30, "ZOV_EVENT_PORT_COUNTERS_ZERO"},
        {31, "ZOV_EVENT_SWITCH_OPERCHANGE"},
        {32, "ZOV_EVENT_SWITCH_STATE_CHANGE"},
        {33, "ZOV_EVENT_CHASSIS_OPERCHANGE"},
        {34, "ZOV_EVENT_PWR_SPLY_BAD_ALARM"},
        {35, "ZOV_EVENT_PWR_SPLY_OK_ALARM"},
        {36, "ZOV_EVENT_FAN_BAD_ALARM"},
        {37, "ZOV_EVENT_FAN_OK_ALARM"},
        {38, "ZOV_EVENT_BLADE_OPERCHANGE"},
        {39, "ZOV_EVENT_BLADE_STATE_CHANGE"},
        {40, "ZOV_EVENT_OVERHEAT_ALARM"},
        {41, "ZOV_EVENT_OVERWARM_ALARM"},
        {42, "ZOV_EVENT_TEMP_OK_ALARM"},
        {43, "ZOV_EVENT_SECURITY_CHANGE"},
        {44, "ZOV_EVENT_SECURITY_CFG_CHANGE"},
        {45, "ZOV_EVENT_FDMI_CLEARED"},
        {46, "ZOV_EVENT_FDMI_HBA_ADD"},
        {47, "ZOV_EVENT_FDMI_HBA_MODIFY"},
        {48, "ZOV_EVENT_FDMI_HBA_DELETE"},
        {49, "ZOV_EVENT_DOMAINID_CHANGE"},
        {50, "ZOV_EVENT_USER_ACL_CHANGE"},
        {51, "ZOV_EVENT_TIMEZONE_CHANGE"},
        {52, "ZOV_EVENT_FEATURE_CHANGE"},
        {53, "ZOV_EVENT_CLI_COMMAND_DONE"},
        {54, "ZOV_EVENT_CREATE_SUPPORT_DONE"},
        {55, "ZOV_EVENT_MEDIA_SPEED_ALARM"},
        {56, "ZOV_EVENT_RADIUS_CFG_CHANGE"},
        {57, "ZOV_EVENT_SERVICES_CFG_CHANGE"},
        {60, "ZOV_EVENT_PORT_TEST_COMPLETE_2"},
        {61, "ZOV_EVENT_BLADE_TEST_COMPLETE"},
        {62, "ZOV_EVENT_SWITCH_TEST_COMPLETE"},
        {66, "ZOV_EVENT_CPU_SWITCHOVER"},
        {67, "ZOV_EVENT_SWITCH_FAULT"},
        {68, "ZOV_EVENT_IP_ADDRESS_CHANGE"},
        {69, "ZOV_EVENT_IPV6_ADDRESS_CHANGE"},
        {70, "ZOV_EVENT_USERLOG_UPDATE"},
        {72, "ZOV_EVENT_USER_PASSWORD_CHANGED"},
        {73, "ZOV_EVENT_USER_LOGIN_FAILURE"},
        {78, "ZOV_EVENT_CIM_CFG_CHANGE"},
        {79, "ZOV_EVENT_NS_ENTRYADDED"},
        {80, "ZOV_EVENT_NS_ENTRYDELETED"},
        {81, "ZOV_EVENT_BLADE_STATUS_CHANGE"},
        {82, "ZOV_EVENT_SWITCH_FAULT_CHANGE"},
        {253, "ZOV_EVENT_CONNECTION_LOST"},
        {254, "ZOV_EVENT_CONNECTION_RESTORED"},
    };
    return table;
}

const std::set<int> &handled() {
    static const std::set<int> codes = {1,  3,  7,  14, 15, 16, 28, 29, 32, 33, 39, 40, 50, 52,
                                        57, 68, 69, 72, 73, 74, 75, 76, 77, 78, 79, 80, 82};
    return codes;
}

/// Every code there can be around the table, and far from it.
std::vector<int> codesToTry() {
    std::vector<int> codes = {INT_MIN, INT_MIN + 1, -1000, -255, INT_MAX - 1, INT_MAX, 65535, 65536 + 32};
    for (int code = -2; code <= 520; ++code)
        codes.push_back(code);
    return codes;
}

TEST(Codes, EveryCodeHasItsName) {
    for (const int code : codesToTry()) {
        const auto row = names().find(code);
        EXPECT_STREQ(DataCache::_tagToString(code), row != names().end() ? row->second.c_str() : "ZOV_EVENT_OTHER")
            << code;
    }
    EXPECT_STREQ(DataCache::_tagToString(255), "ZOV_EVENT_OTHER");
    EXPECT_STREQ(DataCache::_tagToString(-1), "ZOV_EVENT_OTHER");
}

TEST(Codes, TheHeaderOfTheSwitchLibraryUsesTheSameNumbers) {
    EXPECT_STREQ(DataCache::_tagToString(ZOV_EVENT_FABRIC_CHANGE), "ZOV_EVENT_FABRIC_CHANGE");
    EXPECT_STREQ(DataCache::_tagToString(ZOV_EVENT_SWITCH_STATE_CHANGE), "ZOV_EVENT_SWITCH_STATE_CHANGE");
    EXPECT_STREQ(DataCache::_tagToString(ZOV_EVENT_SWITCH_FAULT_CHANGE), "ZOV_EVENT_SWITCH_FAULT_CHANGE");
    EXPECT_STREQ(DataCache::_tagToString(ZOV_EVENT_CONNECTION_RESTORED), "ZOV_EVENT_CONNECTION_RESTORED");
}

TEST(Codes, TwentySevenCodesAreHandled) {
    EXPECT_EQ(handled().size(), 27U);
    for (const int code : codesToTry())
        EXPECT_EQ(codes::isHandled(code), handled().count(code) != 0) << code;
}

TEST(Codes, AreRegisteredForInTheirOrder) {
    std::vector<int32_t> order;
    for (const zov_eventreg_s &entry : codes::registrationList()) {
        order.push_back(entry.code);
        EXPECT_EQ(entry.result, 0) << entry.code;
    }
    EXPECT_THAT(order, testing::ElementsAre(32, 52, 57, 28, 39, 29, 82, 50, 14, 15, 72, 73, 33, 40, 74, 75, 76, 77, 78,
                                            16, 68, 69, 79, 80, 3, 1, 7, 70));
}

TEST(Codes, WhatIsHandledIsRegisteredForAndTheUserLogIsNotHandled) {
    std::set<int> registered;
    for (const zov_eventreg_s &entry : codes::registrationList())
        registered.insert(entry.code);
    EXPECT_EQ(registered.erase(70), 1U);
    EXPECT_EQ(registered, handled());
}

TEST(Codes, RowsThatAreNotThereAreNotFound) {
    for (const int code : {INT_MIN, -1, 0, 18, 58, 59, 63, 64, 65, 71, 83, 252, 255, 256, INT_MAX})
        EXPECT_EQ(codes::find(code), nullptr) << code;
    for (const int code : {1, 17, 19, 57, 60, 74, 77, 82, 253, 254}) {
        ASSERT_NE(codes::find(code), nullptr) << code;
        EXPECT_EQ(codes::find(code)->number, code);
    }
}

} // namespace
