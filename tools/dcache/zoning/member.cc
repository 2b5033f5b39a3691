#include "tools/dcache/zoning/member.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fmt/format.h>
#include <tuple>

#include "swlib/MERO_Zov_Lib.h"

namespace dcache {
namespace {

constexpr size_t kNameDigits = 16;
constexpr size_t kAddressDigits = 6;
constexpr size_t kLongestName = 64;
constexpr unsigned kHighestDomain = 239;
constexpr unsigned kHighestPort = 255;

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// In capitals, when it is so many hexadecimal digits; else empty.
std::string hexDigits(std::string_view word, size_t count) {
    if (word.size() != count || !std::all_of(word.begin(), word.end(), isHexDigit))
        return "";
    std::string digits(word);
    return toUpper(digits.data());
}

std::string withColons(const std::string &digits) {
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i != 0 && i % 2 == 0)
            text += ':';
        text += digits[i];
    }
    return text;
}

/// A word of pairs of characters with colons between them, without the colons; any other word as it is.
std::string withoutColons(std::string_view word) {
    std::string digits;
    for (size_t i = 0; i < word.size(); ++i) {
        if (i % 3 != 2)
            digits += word[i];
        else if (word[i] != ':')
            return std::string(word);
    }
    return digits;
}

/// A decimal number up to `highest`.
std::optional<unsigned> numberFrom(std::string_view word, unsigned highest) {
    unsigned value = 0;
    const char *end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, value);
    const bool good = result.ec == std::errc() && result.ptr == end && value <= highest;
    return good ? std::optional<unsigned>(value) : std::nullopt;
}

std::optional<Member> portFrom(std::string_view word) {
    const size_t colon = word.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto domain = numberFrom(word.substr(0, colon), kHighestDomain);
    const auto port = numberFrom(word.substr(colon + 1), kHighestPort);
    if (!domain || *domain == 0 || !port)
        return std::nullopt;
    return Member{ZOV_ZMT_DOMAINPORT, fmt::format("{}:{}", *domain, *port)};
}

using Attribute = std::array<unsigned char, 256>;

uint32_t wordAt(const Attribute &attribute, size_t offset) {
    uint32_t word = 0;
    std::memcpy(&word, attribute.data() + offset, sizeof word);
    return word;
}

std::string bytesOf(const Attribute &attribute, int count) {
    std::array<char, kNameDigits + 1> digits{};
    return byteToStr(digits.data(), attribute.data(), count);
}

} // namespace

bool operator==(const Member &left, const Member &right) {
    return left.type == right.type && left.text == right.text;
}

bool operator<(const Member &left, const Member &right) {
    return std::tie(left.type, left.text) < std::tie(right.type, right.text);
}

std::optional<Member> memberFrom(std::string_view word) {
    const bool hasColons = word.size() == kNameDigits + kNameDigits / 2 - 1;
    const std::string name = hexDigits(hasColons ? withoutColons(word) : std::string(word), kNameDigits);
    if (!name.empty())
        return Member{ZOV_ZMT_PORTWWN, withColons(name)};
    const std::string address = hexDigits(word, kAddressDigits);
    if (!address.empty())
        return Member{ZOV_ZMT_FCADDRESS, address};
    return portFrom(word);
}

Member memberOf(void *object) {
    zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
    Attribute attribute{}; // more than the switch library may fill, so that a text has an end
    if (object == nullptr || zov_MemberGetAttr(object, &type, attribute.data()) != 0)
        return {ZOV_ZMT_UNKNOWN, "(not readable)"};
    switch (type) {
    case ZOV_ZMT_PORTWWN:
        return {type, withColons(bytesOf(attribute, 8))};
    case ZOV_ZMT_DOMAINPORT:
        return {type, fmt::format("{}:{}", wordAt(attribute, 0), wordAt(attribute, 4))};
    case ZOV_ZMT_FCADDRESS:
        return {type, bytesOf(attribute, 3)};
    case ZOV_ZMT_ALIAS: {
        const auto *name = reinterpret_cast<const char *>(attribute.data());
        return {type, std::string(name, strnlen(name, kLongestName))};
    }
    default:
        return {type, fmt::format("(type {})", static_cast<int>(type))};
    }
}

std::string inScript(const Member &member) {
    return member.type == ZOV_ZMT_ALIAS ? "alias " + member.text : member.text;
}

std::string forLibrary(const Member &member) {
    return member.type == ZOV_ZMT_PORTWWN ? withoutColons(member.text) : member.text;
}

} // namespace dcache
