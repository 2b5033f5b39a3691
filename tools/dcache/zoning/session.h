/*
 * A zoning script carried out: on the cached database alone, or under the fabric lock and then committed.
 *
 * The cache has been loaded before, and nothing but the session evaluates it: its EVAL thread does not run.
 *
 * Thread-safety: one thread runs the session. Another one may ask it to stop.
 * Errors: Failure, or Stopped with an exit code of its own, in words. The lock has been given back then, as far as the
 * switch let it.
 */
#ifndef TOOLS_DCACHE_ZONING_SESSION_H
#define TOOLS_DCACHE_ZONING_SESSION_H

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "tools/dcache/cache.h"
#include "tools/dcache/zoning/difference.h"
#include "tools/dcache/zoning/script.h"

namespace dcache {

/// Told of each step, in words.
using Progress = std::function<void(const std::string &words)>;

/// What a session has come to.
struct SessionResult {
    size_t edits = 0;
    bool committed = false;                    ///< and the switch has taken it
    ZoningPicture edited = {};                 ///< the defined half as the script made it
    std::vector<ZoningChange> deviations = {}; ///< of what the switch has after a commit from what was committed
};

class ZoningSession {
public:
    ZoningSession(Script script, std::string holder, Progress progress);

    /// Edits the cached database. The switch hears nothing of it.
    SessionResult rehearse();

    /// Takes the lock as the holder, reads the database anew, edits and commits it, and reads what the switch has then.
    /// A script without a commit is tried out like this, and what it did is dropped.
    SessionResult run();

    /// The next edit is not made any more, nor the commit.
    void stop() { _stop = true; }

    /// The commit is on its way: stopping comes too late.
    bool isCommitting() const { return _committing; }

private:
    void _checkEditable(const CacheLock &cache) const;
    void _edit(const CacheLock &cache, const Statement &statement, bool underLock);
    void _checkLock(const CacheLock &cache, const Statement &statement) const;
    bool _wantsCommit() const;
    void _commit(SessionResult &result);

    const Script _script;
    const std::string _holder;
    const Progress _progress;
    std::atomic<bool> _stop{false};
    std::atomic<bool> _committing{false};
};

} // namespace dcache

#endif // TOOLS_DCACHE_ZONING_SESSION_H
