/*
 * The statements of a script as edits of the cached database, and their refusals in words.
 *
 * Thread-safety: takes the cache's lock for each call. Errors are returned; nothing throws.
 */
#ifndef TOOLS_DCACHE_ZONING_EDIT_H
#define TOOLS_DCACHE_ZONING_EDIT_H

#include <optional>
#include <string>

#include "tools/dcache/cache.h"
#include "tools/dcache/zoning/script.h"

namespace dcache {

/// Why an edit was not made.
struct Refusal {
    int code;           ///< of the edit: 1 not valid, 2 not there, 3 there already, 4 limit reached or failed
    bool isLimit;       ///< a limit of the switch has been reached
    std::string reason; ///< in words, without the code
};

/// Edits the cached database. Members are added only while the database takes more of them: that limit the edits of the
/// cache leave to their caller. A statement that is no edit changes nothing.
std::optional<Refusal> perform(const CacheLock &cache, const Statement &statement);

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_EDIT_H
