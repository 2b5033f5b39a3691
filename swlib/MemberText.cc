// World-wide names and zone members as text.
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "foundation/cim_log.h"
#include "swlib/MERO_Zov_Lib.h"
#include "swlib/messages.h"

namespace {

constexpr int kNameBytes = 8;
constexpr int kAddressBytes = 3;
constexpr std::size_t kLongestName = 64;
constexpr char kInvalid[] = "Invalid";

/// Room for what a switch library may write as a member's attribute, and more.
using Attribute = std::array<unsigned char, 256>;

uint32_t wordAt(const unsigned char *bytes) {
    uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

} // namespace

extern "C" {

char *byteToStr(char *dst, const unsigned char *bytes, int count) {
    if (dst == nullptr || bytes == nullptr)
        return dst;
    for (int i = 0; i < count; ++i)
        std::sprintf(dst + 2 * static_cast<std::ptrdiff_t>(i), "%2.2X", static_cast<unsigned>(bytes[i]));
    return dst;
}

char *ZOV_WWNToStr(char *dst, const unsigned char *name) {
    return byteToStr(dst, name, kNameBytes);
}

void formatMemberId(const zov_fzs_zonemember_type_e *types, const zov_fzs_memberid_s *records, char *dst, int index) {
    if (types == nullptr || records == nullptr || dst == nullptr || index < 0)
        return;
    const unsigned char *bytes = records[index].u.byte;
    switch (types[index]) {
    case ZOV_ZMT_UNKNOWN:
        cim_log(CIM_LOG_INFO, "DCACHE: Type is ZOV_ZMT_UNKNOWN\n");
        break;
    case ZOV_ZMT_PORTWWN:
        ZOV_WWNToStr(dst, bytes);
        break;
    case ZOV_ZMT_DOMAINPORT: // the domain is one byte here, the first of its word
        std::sprintf(dst, "%2.2d:%2.2d", static_cast<int>(bytes[0]), static_cast<int>(wordAt(bytes + 4)));
        break;
    case ZOV_ZMT_FCADDRESS:
        std::sprintf(dst, "%2.2x%2.2x%2.2x", static_cast<unsigned>(bytes[0]), static_cast<unsigned>(bytes[1]),
                     static_cast<unsigned>(bytes[2]));
        break;
    case ZOV_ZMT_NODENAME:
        cim_log(CIM_LOG_INFO, "DCACHE: Type is ZOV_ZMT_NODENAME\n");
        break;
    case ZOV_ZMT_ALIAS:
        std::sprintf(dst, "%.*s", static_cast<int>(sizeof records[index].u.byte),
                     reinterpret_cast<const char *>(bytes));
        break;
    default:
        break;
    }
}

int ZoneMemberToString(char *dst, void *member) {
    if (dst == nullptr)
        return 0;
    dst[0] = '\0';
    zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
    Attribute attribute{};
    if (member == nullptr || zov_MemberGetAttr(member, &type, attribute.data()) != 0)
        type = ZOV_ZMT_UNKNOWN; // whatever a failed call has written
    switch (type) {
    case ZOV_ZMT_PORTWWN:
        byteToStr(dst, attribute.data(), kNameBytes);
        return 1;
    case ZOV_ZMT_DOMAINPORT:
        std::sprintf(dst, "%2.2x%2.2x", static_cast<unsigned>(wordAt(attribute.data())),
                     static_cast<unsigned>(wordAt(attribute.data() + 4)));
        return 1;
    case ZOV_ZMT_FCADDRESS:
        byteToStr(dst, attribute.data(), kAddressBytes);
        return 1;
    case ZOV_ZMT_ALIAS:
        std::strncpy(dst, reinterpret_cast<const char *>(attribute.data()), kLongestName);
        dst[kLongestName] = '\0';
        return 1;
    default:
        std::memcpy(dst, kInvalid, sizeof kInvalid);
        return 0;
    }
}

void get_Active_ZoneSet(char *dst) {
    if (dst == nullptr)
        return;
    dst[0] = '\0';
    if (zov_fzsGetActiveZonesetName(hSwitch, dst) == 0) {
        dst[kLongestName] = '\0';
        return;
    }
    dst[0] = '\0';
    cim_log(CIM_LOG_CRIT, "CRIT:%s:%s[%d] zov_fzsGetActiveZonesetName Failed\n", swlib::kSourceName,
            "get_Active_ZoneSet", __LINE__);
}

char *toUpper(char *text) {
    for (char *at = text; at != nullptr && *at != '\0'; ++at)
        *at = static_cast<char>(std::toupper(static_cast<unsigned char>(*at)));
    return text;
}

const char *zov_smlCnvFromZOVZoneType(zov_fzs_zone_type_e type) {
    switch (type) {
    case ZOV_ZT_SOFT:
        return "Soft";
    case ZOV_ZT_HARDVPF:
        return "HardVPF";
    case ZOV_ZT_HARDACL:
        return "HardACL";
    default:
        return "Invalid";
    }
}

} // extern "C"
