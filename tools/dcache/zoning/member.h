/*
 * Members of zones and aliases, as people and scripts write them.
 *
 *   10:00:00:C0:DD:00:A1:B2   a port's name; the colons may be left out
 *   1:10                      port 10 of the switch with domain ID 1, both decimal
 *   010A00                    a Fibre Channel address: six hexadecimal digits
 *   alias NAME                an alias
 *
 * Pure functions, callable from any thread. None throws.
 */
#ifndef TOOLS_DCACHE_ZONING_MEMBER_H
#define TOOLS_DCACHE_ZONING_MEMBER_H

#include <optional>
#include <string>
#include <string_view>

#include "platform/zovlib.h"

namespace dcache {

struct Member {
    zov_fzs_zonemember_type_e type = ZOV_ZMT_UNKNOWN;
    /// The name of an alias; else the form above: with colons, digits in capitals, no leading zeros in decimals. Of a
    /// type that has no form: "(type 4)".
    std::string text;
};

bool operator==(const Member &left, const Member &right);
bool operator<(const Member &left, const Member &right);

/// The member of one of the first three forms; none for any other word.
std::optional<Member> memberFrom(std::string_view word);

/// What a member object of the switch library stands for.
Member memberOf(void *object);

/// As a script has it: "alias NAME" for an alias, else the text.
std::string inScript(const Member &member);

/// As the switch library takes it.
std::string forLibrary(const Member &member);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_MEMBER_H
