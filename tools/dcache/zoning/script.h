/*
 * The language of zoning scripts: one statement a line, words separated by blanks; "#" begins a comment.
 *
 *   create set SET                   delete set SET
 *   create zone ZONE acl|soft|vpf    delete zone ZONE
 *   create alias ALIAS               delete alias ALIAS
 *   add zone SET ZONE                remove zone SET ZONE
 *   add member ZONE MEMBER           remove member ZONE MEMBER
 *   add alias-member ALIAS MEMBER    remove alias-member ALIAS MEMBER
 *   remove everywhere MEMBER         commit
 *
 * Members are written as member.h says. A commit can only be the last statement.
 *
 * A script may also describe what a switch has to begin with. Then it consists of "create", "add" and "commit", which
 * there says nothing, and of
 *
 *   activate SET                     this zone set is active
 *   lock                             another management client holds the zoning lock
 *
 * Pure functions, callable from any thread. Errors are listed in the result; only throwErrorsOf() throws.
 */
#ifndef TOOLS_DCACHE_ZONING_SCRIPT_H
#define TOOLS_DCACHE_ZONING_SCRIPT_H

#include <string>
#include <string_view>
#include <vector>

#include "tools/dcache/zoning/member.h"

namespace dcache {

enum class StatementKind {
    createSet,
    createZone,
    createAlias,
    deleteSet,
    deleteZone,
    deleteAlias,
    addZone,
    removeZone,
    addMember,
    removeMember,
    addAliasMember,
    removeAliasMember,
    removeEverywhere,
    commit,
    activate,
    lock,
};

struct Statement {
    StatementKind kind = StatementKind::commit;
    int line = 0;     ///< from 1
    std::string name; ///< the zone set, zone or alias that it is about; empty for none
    std::string zone; ///< the one to add to a zone set, or to remove from it
    zov_fzs_zone_type_e type = ZOV_ZT_INVALID;
    Member member;
};

struct Script {
    std::vector<Statement> statements;
    std::vector<std::string> errors; ///< "line 3: ..."; then the statements are not all there
};

enum class ScriptPurpose { edits, description };

Script parseScript(std::string_view text, ScriptPurpose purpose);

/// Throws Misuse with every error, a line each, when there are any. `what` says what was read.
void throwErrorsOf(const Script &script, const std::string &what);

/// The statement as a line of a script, without a newline.
std::string inScript(const Statement &statement);

/// "acl", "soft", "vpf"; "(type 7)" for a number that is none.
std::string zoneTypeWord(zov_fzs_zone_type_e type);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_SCRIPT_H
