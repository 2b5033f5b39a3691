#include "sim/zoning/MemberId.h"

#include <algorithm>
#include <cstring>

#include "sim/tree/Rules.h"
#include "sim/zoning/Names.h"

namespace sim {

namespace {

constexpr size_t kNameBytes = 8;
constexpr size_t kAddressBytes = 3;
constexpr unsigned kHighestDomain = 239;
constexpr unsigned kHighestPort = 255;

std::optional<unsigned> hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<unsigned>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F')
        return static_cast<unsigned>(c - 'A') + 10;
    return std::nullopt;
}

/// Exactly `count` bytes from their hexadecimal digits; false when the text is anything else.
bool parseBytes(const std::string &text, uint8_t *bytes, size_t count) {
    if (text.size() != 2 * count)
        return false;
    for (size_t i = 0; i < count; ++i) {
        const std::optional<unsigned> high = hexDigit(text[2 * i]);
        const std::optional<unsigned> low = hexDigit(text[2 * i + 1]);
        if (!high || !low)
            return false;
        bytes[i] = static_cast<uint8_t>(*high * 16 + *low);
    }
    return true;
}

/// "21:00:..." without its colons; the text itself when it is not of that form.
std::string withoutColons(const std::string &text) {
    if (text.size() != 3 * kNameBytes - 1)
        return text;
    std::string digits;
    for (size_t i = 0; i < text.size(); ++i)
        if (i % 3 != 2)
            digits += text[i];
        else if (text[i] != ':')
            return text;
    return digits;
}

bool parsePortName(const std::string &text, zov_fzs_memberid_s &id) {
    return parseBytes(withoutColons(text), id.u.byte, kNameBytes);
}

bool parseDomainPort(const std::string &text, zov_fzs_memberid_s &id) {
    const size_t colon = text.find(':');
    if (colon == std::string::npos) {
        uint8_t bytes[2] = {};
        if (!parseBytes(text, bytes, sizeof bytes))
            return false;
        id.u.word[0] = bytes[0];
        id.u.word[1] = bytes[1];
    } else {
        const std::optional<unsigned> domain = toNumber(text.substr(0, colon));
        const std::optional<unsigned> port = toNumber(text.substr(colon + 1));
        if (!domain || !port)
            return false;
        id.u.word[0] = *domain;
        id.u.word[1] = *port;
    }
    return id.u.word[0] >= 1 && id.u.word[0] <= kHighestDomain && id.u.word[1] <= kHighestPort;
}

bool parseAddress(const std::string &text, zov_fzs_memberid_s &id) {
    return parseBytes(text, id.u.byte, kAddressBytes);
}

bool parseAlias(const std::string &text, zov_fzs_memberid_s &id) {
    if (text.empty() || text.size() > kLongestName)
        return false;
    std::memcpy(id.u.byte, text.data(), text.size());
    return true;
}

std::string aliasName(const zov_fzs_memberid_s &id) {
    const auto *name = reinterpret_cast<const char *>(id.u.byte);
    return {name, strnlen(name, sizeof id.u.byte)};
}

std::string hexText(const zov_fzs_memberid_s &id, size_t count, const char *digits) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
        text.append(1, digits[id.u.byte[i] >> 4]).append(1, digits[id.u.byte[i] & 15]);
    return text;
}

constexpr const char *kSmallDigits = "0123456789abcdef";
constexpr const char *kCapitalDigits = "0123456789ABCDEF";

std::string domainPortText(const zov_fzs_memberid_s &id) {
    return std::to_string(id.u.word[0]) + ":" + std::to_string(id.u.word[1]);
}

/// The types of member there are; how many bytes tell their members apart, 0 for a text.
struct MemberType {
    zov_fzs_zonemember_type_e type;
    const char *name;
    size_t bytes;
    bool (*parse)(const std::string &text, zov_fzs_memberid_s &id); ///< null: has no text form
};

constexpr MemberType kTypes[] = {
    {ZOV_ZMT_PORTWWN, "port", kNameBytes, parsePortName},
    {ZOV_ZMT_DOMAINPORT, "domain:port", 2 * sizeof(uint32_t), parseDomainPort},
    {ZOV_ZMT_FCADDRESS, "address", kAddressBytes, parseAddress},
    {ZOV_ZMT_NODENAME, "node", kNameBytes, nullptr},
    {ZOV_ZMT_ALIAS, "alias", 0, parseAlias},
};

const MemberType *findType(zov_fzs_zonemember_type_e type) {
    for (const MemberType &candidate : kTypes)
        if (candidate.type == type)
            return &candidate;
    return nullptr;
}

} // namespace

std::optional<MemberId> normalized(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s &id) {
    const MemberType *known = findType(type);
    if (!known)
        return std::nullopt;
    MemberId member;
    member.type = type;
    size_t bytes = known->bytes;
    if (bytes == 0) {
        bytes = aliasName(id).size();
        if (bytes == 0 || bytes > kLongestName)
            return std::nullopt;
    }
    std::memcpy(member.id.u.byte, id.u.byte, bytes);
    return member;
}

bool operator==(const MemberId &left, const MemberId &right) {
    return left.type == right.type && std::memcmp(&left.id, &right.id, sizeof left.id) == 0;
}

std::optional<MemberId> parseMember(zov_fzs_zonemember_type_e type, const std::string &text) {
    const MemberType *known = findType(type);
    MemberId member;
    member.type = type;
    if (!known || !known->parse || !known->parse(text, member.id))
        return std::nullopt;
    return member;
}

std::string describe(const MemberId &member) {
    const MemberType *known = findType(member.type);
    if (!known)
        return "type " + std::to_string(static_cast<int32_t>(member.type));
    std::string text = known->name + std::string(" ");
    if (member.type == ZOV_ZMT_ALIAS)
        return text + aliasName(member.id);
    if (member.type == ZOV_ZMT_DOMAINPORT)
        return text + domainPortText(member.id);
    return text + hexText(member.id, known->bytes, kSmallDigits);
}

std::optional<MemberId> memberFromDescription(const std::string &text) {
    for (const MemberType &row : kTypes) {
        const std::string start = row.name + std::string(" ");
        if (text.compare(0, start.size(), start) != 0)
            continue;
        const std::string rest = text.substr(start.size());
        MemberId member;
        member.type = row.type;
        const bool isRead = row.parse ? row.parse(rest, member.id) : parseBytes(rest, member.id.u.byte, row.bytes);
        return isRead && describe(member) == text ? std::optional<MemberId>(member) : std::nullopt;
    }
    return std::nullopt;
}

std::string textOf(const MemberId &member) {
    const MemberType *known = findType(member.type);
    if (!known || !known->parse)
        return "";
    if (member.type == ZOV_ZMT_ALIAS)
        return aliasName(member.id);
    if (member.type == ZOV_ZMT_DOMAINPORT)
        return domainPortText(member.id);
    return hexText(member.id, known->bytes, kCapitalDigits);
}

std::optional<MemberId> memberFromDigits(const std::string &text) {
    if (!std::all_of(text.begin(), text.end(), [](char c) { return hexDigit(c).has_value(); }))
        return std::nullopt;
    switch (text.size()) {
    case 2 * kNameBytes:
        return parseMember(ZOV_ZMT_PORTWWN, text);
    case 4:
        return parseMember(ZOV_ZMT_DOMAINPORT, text);
    case 2 * kAddressBytes:
        return parseMember(ZOV_ZMT_FCADDRESS, text);
    default:
        return std::nullopt;
    }
}

std::string keyOf(const MemberId &member) {
    return {reinterpret_cast<const char *>(&member), sizeof member};
}

} // namespace sim
