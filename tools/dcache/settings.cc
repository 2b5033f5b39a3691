#include "tools/dcache/settings.h"

#include <charconv>

#include "swlib/MERO_Zov_Lib.h"
#include "tools/dcache/commands/facts.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

// clang-format off
constexpr std::array<Setting, 22> kSettings = {{
    {"Services", "telnet", "Telnet", SettingKind::onOff, get_Switch_Telnet_Enabled},
    {nullptr, "ssh", "SSH", SettingKind::onOff, get_Switch_SSH_Enabled},
    {nullptr, "embeddedGui", "embedded GUI", SettingKind::onOff, get_Switch_EmbeddedGUI_Enabled},
    {nullptr, "ssl", "SSL", SettingKind::onOff, is_Switch_SSLEnabled},
    {nullptr, "snmp", "SNMP", SettingKind::onOff, is_Switch_SNMP_Enabled},
    {nullptr, "snmpReadCommunity", "SNMP read community", SettingKind::secret, get_Switch_SNMPReadCommunity},
    {"Network", "ipv4Supported", "IPv4 supported", SettingKind::yesNo, get_Switch_IPv4Feature},
    {nullptr, "ipv4", "IPv4", SettingKind::onOff, get_Switch_IPv4Enable},
    {nullptr, "ipv4Address", "IPv4 address", SettingKind::text, get_Switch_IPv4Address},
    {nullptr, "ipv6Supported", "IPv6 supported", SettingKind::yesNo, get_Switch_IPv6Feature},
    {nullptr, "ipv6", "IPv6", SettingKind::onOff, get_Switch_IPv6Enable},
    {nullptr, "ipv6Address", "IPv6 address", SettingKind::text, get_Switch_IPv6Address},
    {"Versions", "activeVersion", "active version", SettingKind::text, get_Switch_ActiveVer},
    {nullptr, "oemActiveVersion", "OEM active version", SettingKind::text, get_Switch_OemActiveVer},
    {"Manufacturing", "brandName", "brand", SettingKind::text, get_Switch_Brand_Name},
    {nullptr, "type", "type", SettingKind::text, get_Switch_Type},
    {nullptr, "chassisSerialNumber", "chassis serial number", SettingKind::text, get_Switch_ChassisSerialNum},
    {nullptr, "chassisPartNumber", "chassis part number", SettingKind::text, get_Switch_ChassisPartNum},
    {nullptr, "planarPartNumber", "planar part number", SettingKind::text, get_Switch_PlanarPartNum},
    {"Fabric", "domain", "domain ID", SettingKind::number, get_Switch_Domain_ID},
    {nullptr, "wwn", "WWN", SettingKind::wwn, get_Local_Switch_World_Wide_Name},
    {nullptr, "principalWwn", "WWN of the principal", SettingKind::wwn, get_Principal_Switch_World_Wide_Name},
}};
// clang-format on

/// Takes over a text of the library's.
std::optional<std::string> taken(char *text) {
    if (text == nullptr)
        return std::nullopt;
    std::string copy = text;
    zov_libFreeMemory(text);
    return copy;
}

Cell flagCell(const std::string &text, const char *yes, const char *no) {
    if (text == "True")
        return {true, yes};
    if (text == "False")
        return {false, no, Tone::faint};
    return settingText(text);
}

Cell numberCell(const std::string &text) {
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
    return isNumber ? Cell{number, std::to_string(number)} : settingText(text);
}

Cell wwnCell(const std::string &text) {
    const Wwn name(text);
    return name != Wwn() && name.tostring() == text ? settingText(colonForm(name)) : settingText(text);
}

} // namespace

const std::array<Setting, 22> &allSettings() {
    return kSettings;
}

std::optional<std::string> readSetting(const Setting &setting) {
    return taken(setting.read());
}

std::optional<std::string> readProductDescription() {
    std::array<char *, 4> texts = {};
    get_Product_Info(&texts[0], &texts[1], &texts[2], &texts[3]);
    auto description = taken(texts[0]); // handed out also when one of the others could not be read
    for (size_t i = 1; i < texts.size(); ++i)
        taken(texts[i]);
    return description;
}

Cell settingCell(const Setting &setting, const std::optional<std::string> &text, bool secrets) {
    if (!text)
        return emptyCell("-");
    switch (setting.kind) {
    case SettingKind::onOff:
        return flagCell(*text, "on", "off");
    case SettingKind::yesNo:
        return flagCell(*text, "yes", "no");
    case SettingKind::number:
        return numberCell(*text);
    case SettingKind::wwn:
        return wwnCell(*text);
    case SettingKind::secret:
        if (!secrets)
            return maskedCell(text);
        break;
    case SettingKind::text:
        break;
    }
    return settingText(text);
}

Cell settingText(const std::optional<std::string> &text) {
    if (!text)
        return emptyCell("-");
    return text->empty() ? Cell{*text, "none", Tone::faint} : Cell{*text, printable(*text)};
}

Cell maskedCell(const std::optional<std::string> &text) {
    if (!text)
        return emptyCell("-");
    return {!text->empty(), text->empty() ? "(none)" : "(set)", Tone::faint};
}

} // namespace dcache
