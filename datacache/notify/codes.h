/*
 * The switch's notification codes: one row per code that has a name or is registered for. Internal.
 */
#ifndef DATACACHE_NOTIFY_CODES_H
#define DATACACHE_NOTIFY_CODES_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/zovlib.h"

namespace codes {

constexpr const char *kOtherName = "ZOV_EVENT_OTHER";
constexpr int kNotRegistered = 0;
constexpr std::size_t kRegisteredCount = 28;

struct Code {
    int32_t number;
    const char *name;
    int place;    ///< in the registration list, from 1
    bool handled; ///< queued for dispatch; any other is only logged
};

// Code 70, updates of the user log, is registered for and dropped: it announces every line of a busy log.
constexpr std::array<Code, 77> kCodes{{
    {1, "ZOV_EVENT_FABRIC_CHANGE", 26, true},
    {2, "ZOV_EVENT_SWITCHTOPO_CHANGE", kNotRegistered, false},
    {3, "ZOV_EVENT_ZONE_CHANGE", 25, true},
    {4, "ZOV_EVENT_ZONE_MODE_CHANGE", kNotRegistered, false},
    {5, "ZOV_EVENT_ZONEDB_MERGE", kNotRegistered, false},
    {6, "ZOV_EVENT_NS_CHANGE", kNotRegistered, false},
    {7, "ZOV_EVENT_LSDB_CHANGE", 27, true},
    {8, "ZOV_EVENT_SWITCH_ATTR_CHANGE", kNotRegistered, false},
    {9, "ZOV_EVENT_SWITCH_CFG_CHANGE", kNotRegistered, false},
    {10, "ZOV_EVENT_SWITCH_RESET", kNotRegistered, false},
    {11, "ZOV_EVENT_CHASSIS_ATTR_CHANGE", kNotRegistered, false},
    {12, "ZOV_EVENT_BLADE_ATTR_CHANGE", kNotRegistered, false},
    {13, "ZOV_EVENT_PORT_STATE_CHANGE", kNotRegistered, false},
    {14, "ZOV_EVENT_PORT_ATTR_CHANGE", 9, true},
    {15, "ZOV_EVENT_PORT_CFG_CHANGE", 10, true},
    {16, "ZOV_EVENT_NETWORK_CFG_CHANGE", 20, true},
    {17, "ZOV_EVENT_SNMP_CFG_CHANGE", kNotRegistered, false},
    {19, "ZOV_EVENT_PORT_TEST_COMPLETE", kNotRegistered, false},
    {20, "ZOV_EVENT_PORT_TOPO_CHANGE", kNotRegistered, false},
    {21, "ZOV_EVENT_ZONEDB_MERGE_FAILED", kNotRegistered, false},
    {22, "ZOV_EVENT_EPORT_CONVERGE_ALARM", kNotRegistered, false},
    {23, "ZOV_EVENT_SWITCH_ACCESS_ALARM", kNotRegistered, false},
    {24, "ZOV_EVENT_FABRIC_NS_CHANGE", kNotRegistered, false},
    {25, "ZOV_EVENT_GENERIC_ALARM", kNotRegistered, false},
    {26, "ZOV_EVENT_GENERIC_USER_EVENT", kNotRegistered, false},
    {27, "ZOV_EVENT_BLADE_CFG_CHANGE", kNotRegistered, false},
    {28, "ZOV_EVENT_BLADE_INSERTED", 4, true},
    {29, "ZOV_EVENT_BLADE_REMOVED", 6, true},
    {30, "ZOV_EVENT_PORT_COUNTERS_ZERO", kNotRegistered, false},
    {31, "ZOV_EVENT_SWITCH_OPERCHANGE", kNotRegistered, false},
    {32, "ZOV_EVENT_SWITCH_STATE_CHANGE", 1, true},
    {33, "ZOV_EVENT_CHASSIS_OPERCHANGE", 13, true},
    {34, "ZOV_EVENT_PWR_SPLY_BAD_ALARM", kNotRegistered, false},
    {35, "ZOV_EVENT_PWR_SPLY_OK_ALARM", kNotRegistered, false},
    {36, "ZOV_EVENT_FAN_BAD_ALARM", kNotRegistered, false},
    {37, "ZOV_EVENT_FAN_OK_ALARM", kNotRegistered, false},
    {38, "ZOV_EVENT_BLADE_OPERCHANGE", kNotRegistered, false},
    {39, "ZOV_EVENT_BLADE_STATE_CHANGE", 5, true},
    {40, "ZOV_EVENT_OVERHEAT_ALARM", 14, true},
    {41, "ZOV_EVENT_OVERWARM_ALARM", kNotRegistered, false},
    {42, "ZOV_EVENT_TEMP_OK_ALARM", kNotRegistered, false},
    {43, "ZOV_EVENT_SECURITY_CHANGE", kNotRegistered, false},
    {44, "ZOV_EVENT_SECURITY_CFG_CHANGE", kNotRegistered, false},
    {45, "ZOV_EVENT_FDMI_CLEARED", kNotRegistered, false},
    {46, "ZOV_EVENT_FDMI_HBA_ADD", kNotRegistered, false},
    {47, "ZOV_EVENT_FDMI_HBA_MODIFY", kNotRegistered, false},
    {48, "ZOV_EVENT_FDMI_HBA_DELETE", kNotRegistered, false},
    {49, "ZOV_EVENT_DOMAINID_CHANGE", kNotRegistered, false},
    {50, "ZOV_EVENT_USER_ACL_CHANGE", 8, true},
    {51, "ZOV_EVENT_TIMEZONE_CHANGE", kNotRegistered, false},
    {52, "ZOV_EVENT_FEATURE_CHANGE", 2, true},
    {53, "ZOV_EVENT_CLI_COMMAND_DONE", kNotRegistered, false},
    {54, "ZOV_EVENT_CREATE_SUPPORT_DONE", kNotRegistered, false},
    {55, "ZOV_EVENT_MEDIA_SPEED_ALARM", kNotRegistered, false},
    {56, "ZOV_EVENT_RADIUS_CFG_CHANGE", kNotRegistered, false},
    {57, "ZOV_EVENT_SERVICES_CFG_CHANGE", 3, true},
    {60, "ZOV_EVENT_PORT_TEST_COMPLETE_2", kNotRegistered, false},
    {61, "ZOV_EVENT_BLADE_TEST_COMPLETE", kNotRegistered, false},
    {62, "ZOV_EVENT_SWITCH_TEST_COMPLETE", kNotRegistered, false},
    {66, "ZOV_EVENT_CPU_SWITCHOVER", kNotRegistered, false},
    {67, "ZOV_EVENT_SWITCH_FAULT", kNotRegistered, false},
    {68, "ZOV_EVENT_IP_ADDRESS_CHANGE", 21, true},
    {69, "ZOV_EVENT_IPV6_ADDRESS_CHANGE", 22, true},
    {70, "ZOV_EVENT_USERLOG_UPDATE", 28, false},
    {72, "ZOV_EVENT_USER_PASSWORD_CHANGED", 11, true},
    {73, "ZOV_EVENT_USER_LOGIN_FAILURE", 12, true},
    {74, kOtherName, 15, true}, // power-supply voltage high
    {75, kOtherName, 16, true}, // power-supply voltage low
    {76, kOtherName, 17, true}, // port media inserted
    {77, kOtherName, 18, true}, // port media removed
    {78, "ZOV_EVENT_CIM_CFG_CHANGE", 19, true},
    {79, "ZOV_EVENT_NS_ENTRYADDED", 23, true},
    {80, "ZOV_EVENT_NS_ENTRYDELETED", 24, true},
    {81, "ZOV_EVENT_BLADE_STATUS_CHANGE", kNotRegistered, false},
    {82, "ZOV_EVENT_SWITCH_FAULT_CHANGE", 7, true},
    {253, "ZOV_EVENT_CONNECTION_LOST", kNotRegistered, false},
    {254, "ZOV_EVENT_CONNECTION_RESTORED", kNotRegistered, false},
}};

/// The row of a code, null for a code without one.
constexpr const Code *find(int32_t number) {
    for (const Code &code : kCodes) {
        if (code.number == number)
            return &code;
    }
    return nullptr;
}

constexpr bool isHandled(int32_t number) {
    const Code *code = find(number);
    return code != nullptr && code->handled;
}

using RegistrationList = std::array<zov_eventreg_s, kRegisteredCount>;

/// The codes to register for, in their order, results preset to 0.
constexpr RegistrationList registrationList() {
    RegistrationList list{};
    for (const Code &code : kCodes) {
        if (code.place != kNotRegistered)
            list[static_cast<std::size_t>(code.place) - 1].code = code.number;
    }
    return list;
}

/// Rows ascend, every place of the registration list is taken once, and what is handled is registered for.
constexpr bool isSound() {
    std::size_t registered = 0;
    for (std::size_t i = 0; i < kCodes.size(); ++i) {
        if (i > 0 && kCodes[i - 1].number >= kCodes[i].number)
            return false;
        if (kCodes[i].handled && kCodes[i].place == kNotRegistered)
            return false;
        if (kCodes[i].place != kNotRegistered)
            ++registered;
    }
    for (const zov_eventreg_s &entry : registrationList()) {
        if (entry.code == 0)
            return false;
    }
    return registered == kRegisteredCount;
}

static_assert(isSound(), "the table of notification codes");

} // namespace codes

#endif // DATACACHE_NOTIFY_CODES_H
