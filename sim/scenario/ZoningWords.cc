#include "sim/scenario/ZoningWords.h"

#include "sim/scenario/KeyFields.h"

namespace sim {

namespace {

constexpr const char *kAliasPrefix = "alias:";
constexpr size_t kNameDigits = 16;
constexpr size_t kAddressDigits = 6;

bool isHexadecimal(const std::string &text, size_t digits) {
    return text.size() == digits && text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
}

} // namespace

ZoneMember memberOf(const std::string &given) {
    const std::string prefix = kAliasPrefix;
    const std::string text = plainWwn(given);
    if (text.compare(0, prefix.size(), prefix) == 0)
        return {ZOV_ZMT_ALIAS, text.substr(prefix.size())};
    if (isHexadecimal(text, kNameDigits))
        return {ZOV_ZMT_PORTWWN, text};
    if (isHexadecimal(text, kAddressDigits))
        return {ZOV_ZMT_FCADDRESS, text};
    return {text.find(':') == std::string::npos ? ZOV_ZMT_ALIAS : ZOV_ZMT_DOMAINPORT, text};
}

std::string textOf(const ZoneMember &member) {
    const bool looksElse = member.type == ZOV_ZMT_ALIAS && memberOf(member.text).type != ZOV_ZMT_ALIAS;
    return (looksElse ? kAliasPrefix : "") + member.text;
}

} // namespace sim
