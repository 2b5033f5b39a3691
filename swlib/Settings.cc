// The switch's settings, one key a call, and what the product is.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "swlib/messages.h"

namespace {

enum class Letters { asTheyAre, capitals };

/// What is said of a read that failed, beyond what zov_smlGetV() says of it.
enum class OnFailure { silent, logged };

/// A setting: the function that reads it, its key, its line in the log, and what is done with the text.
struct Setting {
    const char *function;
    const char *key;
    const char *line;
    Letters letters;
    OnFailure onFailure;
};

char *read(const Setting &setting) {
    char *value = nullptr;
    uint32_t size = 0;
    const int32_t result = zov_smlGetV(hSwitch, &value, &size, "%s", setting.key);
    if (result != 0) {
        if (setting.onFailure == OnFailure::logged)
            cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] zov_smlGet returned error code = %d\n", swlib::kSourceName,
                    setting.function, __LINE__, static_cast<int>(result));
        return nullptr;
    }
    if (value == nullptr) // a success without a text: there is nothing to show
        return nullptr;
    if (setting.letters == Letters::capitals)
        toUpper(value);
    cim_log(CIM_LOG_INFO, setting.line, value);
    return value;
}

/// A copy that zov_libFreeMemory() takes; null without memory, and of null.
char *duplicate(const char *text) {
    if (text == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    void *copy = std::malloc(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

/// Releases a text and forgets it.
int32_t release(char *&text) {
    const int32_t result = text != nullptr ? zov_libFreeMemory(text) : 0;
    text = nullptr;
    return result;
}

} // namespace

// A row per setting; the rows are the functions. The blanks before "=" are as those who read the logs know them.
// clang-format off
#define SETTINGS(ROW) \
    ROW(get_Switch_Telnet_Enabled, "Config.Services.TelnetEnable", "DCACHE: TelnetEnable = %s\n", asTheyAre, silent) \
    ROW(get_Switch_SSH_Enabled, "Config.Services.SSHEnable", "DCACHE: SSHEnable = %s\n", asTheyAre, silent) \
    ROW(get_Switch_EmbeddedGUI_Enabled, "Config.Services.EmbeddedGUIEnable", "DCACHE: EmbeddedGUIEnable= %s\n", asTheyAre, silent) \
    ROW(get_Switch_SNMPReadCommunity, "Config.Snmp.ReadComm", "DCACHE: SNMP ReadComm = %s\n", asTheyAre, silent) \
    ROW(is_Switch_SSLEnabled, "Config.Services.SSLEnable", "DCACHE: SSLEnable = %s\n", asTheyAre, silent) \
    ROW(is_Switch_SNMP_Enabled, "Config.Services.SNMPEnable", "DCACHE: SNMPEnable = %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv6Address, "Oper.System.Eth.0.IPv6Address.0", "DCACHE: IPv6Address = %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv6Feature, "Oper.Switch.IPv6Feature", "DCACHE: IPv6Feature= %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv6Enable, "Config.System.IPv6Enable", "DCACHE: IPv6Enable= %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv4Address, "Oper.System.Eth.0.IPv4Address", "DCACHE: IPv4Address= %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv4Feature, "Oper.Switch.IPv4Feature", "DCACHE: IPv4Feature= %s\n", asTheyAre, silent) \
    ROW(get_Switch_IPv4Enable, "Config.System.IPv4Enable", "DCACHE: IPv4Enable= %s\n", asTheyAre, silent) \
    ROW(get_Switch_PlanarPartNum, "Config.Mfg.PlanarPartNum", "DCACHE: PlanarPartNum = %s\n", asTheyAre, silent) \
    ROW(get_Switch_ChassisSerialNum, "Config.Mfg.ChassisSerialNum", "DCACHE: ChassisSerialNum = %s\n", asTheyAre, silent) \
    ROW(get_Switch_ChassisPartNum, "Config.Mfg.ChassisPartNum", "DCACHE: ChassisPartNum = %s\n", asTheyAre, silent) \
    ROW(get_Switch_ActiveVer, "Oper.Switch.ActiveVer", "DCACHE: ActiveVersion = %s\n", asTheyAre, silent) \
    ROW(get_Switch_OemActiveVer, "Oper.Switch.OemActiveVer", "DCACHE: OemActiveVer = %s\n", asTheyAre, silent) \
    ROW(get_Switch_Brand_Name, "Config.Mfg.BrandName", "DCACHE: BrandName = %s\n", asTheyAre, silent) \
    ROW(get_Switch_Type, "Oper.Switch.Type", "DCACHE: Switch Type = %s\n", asTheyAre, silent) \
    ROW(get_Switch_Domain_ID, "Oper.Switch.DomainID", "DCACHE: DomainID = %s\n", asTheyAre, silent) \
    ROW(get_Principal_Switch_World_Wide_Name, "Oper.Switch.WhoIsPrincipal", "DCACHE: Principal_switch_world_wide_name = %s\n", capitals, silent) \
    ROW(get_Local_Switch_World_Wide_Name, "Oper.Switch.WWN", "DCACHE: local_switch_world_wide_name = %s\n", capitals, logged)
// clang-format on

extern "C" {

#define GETTER(function, key, line, letters, onFailure)                                                                \
    char *function(void) {                                                                                             \
        return read({#function, key, line, Letters::letters, OnFailure::onFailure});                                   \
    }
SETTINGS(GETTER)

int32_t get_Product_Info(char **description, char **descriptionCopy, char **serialNumber, char **brandName) {
    if (description == nullptr || descriptionCopy == nullptr || serialNumber == nullptr || brandName == nullptr)
        return 1;
    uint32_t size = 0;
    const int32_t result = zov_smlGetV(hSwitch, description, &size, "Config.Snmp.SysDescr");
    if (result != 0)
        return result;
    *descriptionCopy = duplicate(*description);

    // From here on the results are those of the releases, and the description stays the caller's: providers are
    // written to that.
    if (zov_smlGetV(hSwitch, serialNumber, &size, "Config.Mfg.ChassisSerialNum") != 0)
        return release(*descriptionCopy);
    if (zov_smlGetV(hSwitch, brandName, &size, "Config.Mfg.BrandName") != 0) {
        release(*descriptionCopy);
        return release(*serialNumber);
    }
    return 0;
}

} // extern "C"
