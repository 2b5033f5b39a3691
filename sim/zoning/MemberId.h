/*
 * Member identifiers: what a member of a zone or an alias is known by. Pure functions.
 */
#ifndef SIM_ZONING_MEMBERID_H
#define SIM_ZONING_MEMBERID_H

#include <optional>
#include <string>

#include "platform/zovlib.h"

namespace sim {

struct MemberId {
    zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
    zov_fzs_memberid_s id = {};
};

/// The identifier with every byte cleared that says nothing, so that equal members have equal bytes. None for
/// a type that cannot be a member, and for an alias name without an end.
std::optional<MemberId> normalized(zov_fzs_zonemember_type_e type, const zov_fzs_memberid_s &id);

bool operator==(const MemberId &left, const MemberId &right);

/// The identifier that a text stands for:
/// a port name: 16 hexadecimal digits, or 8 pairs with colons; a domain and port: "domain:port" in decimal,
/// or 4 hexadecimal digits; an address: 6 hexadecimal digits; an alias: its name. None for anything else.
std::optional<MemberId> parseMember(zov_fzs_zonemember_type_e type, const std::string &text);

/// The text that stands for a member, with capital digits; empty for a type that has no text form.
std::string textOf(const MemberId &member);

/// What a command says of a member that is no alias: 16 hexadecimal digits for a port name, 4 for a domain and port, 6
/// for an address. None for anything else.
std::optional<MemberId> memberFromDigits(const std::string &text);

/// A text that only equal members have.
std::string keyOf(const MemberId &member);

/// For people: "port 2100000000000001", "domain:port 1:10", "address 0a0b0c", "node ...", "alias oak".
std::string describe(const MemberId &member);
/// The member that is described so; none for anything else.
std::optional<MemberId> memberFromDescription(const std::string &text);

} // namespace sim

#endif // SIM_ZONING_MEMBERID_H
