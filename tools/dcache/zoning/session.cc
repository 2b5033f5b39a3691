#include "tools/dcache/zoning/session.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"
#include "tools/dcache/zoning/edit.h"

namespace dcache {
namespace {

/// Gives the lock back, unless the commit does so.
class HeldLock {
public:
    HeldLock(const std::string &holder, const Progress &progress) : _progress(progress) {
        if (!CacheLock()->ZoningLock(holder.c_str()))
            throw Stopped(kLockBusyExit, "the switch refused the zoning lock: another management client holds it, or "
                                         "holds admin mode");
        _progress(fmt::format("zoning lock taken for {}", inQuotes(holder)));
    }
    ~HeldLock() {
        if (!_isOurs)
            return;
        const CacheLock cache;
        // A rejected commit gave it back as well, unless its exchange did not get that far: asking twice does no harm.
        const bool wasHeld = !cache->getZoningLockHolder().empty();
        const bool released = cache->ZoningUnlock();
        if (wasHeld)
            _progress(released ? "zoning lock given back" : "the switch did not take the zoning lock back");
    }
    HeldLock(const HeldLock &) = delete;
    HeldLock &operator=(const HeldLock &) = delete;

    void isGone() { _isOurs = false; }

private:
    const Progress &_progress;
    bool _isOurs = true;
};

/// Reads what has changed on the switch since the last time.
void readAnew() {
    const CacheLock cache;
    cache->reloadZoning();
    cache->evaluateCaches();
    if (!cache->isAreaGood(DataCacheArea::zoning))
        throw Failure("the zoning data could not be read from the switch; details are in /tmp/cim.out");
}

/// Why a switch may have rejected the database, where the database itself tells it; else empty.
std::string reasonIn(const CacheLock &cache) {
    const auto active = activeZoning(cache);
    if (!active)
        return "";
    const ZoningPicture defined = definedZoning(cache);
    const auto isDefined = [&defined](const ZonePicture &zone) {
        return std::any_of(defined.zones.begin(), defined.zones.end(),
                           [&zone](const ZonePicture &each) { return each.name == zone.name; });
    };
    std::string zones;
    for (const ZonePicture &zone : active->zones)
        if (!isDefined(zone))
            zones += (zones.empty() ? "" : ", ") + inQuotes(zone.name);
    return zones.empty() ? ""
                         : fmt::format(": the active zone set {} still holds what was deleted, zone {}",
                                       inQuotes(active->zonesets.front().name), zones);
}

} // namespace

ZoningSession::ZoningSession(Script script, std::string holder, Progress progress)
    : _script(std::move(script)), _holder(std::move(holder)), _progress(std::move(progress)) {}

SessionResult ZoningSession::rehearse() {
    const CacheLock cache;
    _checkEditable(cache);
    SessionResult result;
    for (const Statement &statement : _script.statements) {
        if (statement.kind == StatementKind::commit)
            continue;
        _edit(cache, statement, false);
        ++result.edits;
    }
    result.edited = definedZoning(cache);
    return result;
}

SessionResult ZoningSession::run() {
    SessionResult result;
    HeldLock lock(_holder, _progress);
    readAnew(); // others may have committed until the lock was taken
    for (const Statement &statement : _script.statements) {
        const CacheLock cache;
        _checkEditable(cache);
        _checkLock(cache, statement);
        if (statement.kind == StatementKind::commit)
            continue;
        _edit(cache, statement, true);
        ++result.edits;
    }
    {
        const CacheLock cache;
        result.edited = definedZoning(cache);
    }
    if (_wantsCommit()) {
        _commit(result);
        lock.isGone();
    }
    return result;
}

/// Without a loaded database there is nothing to edit, and a commit would empty the switch's.
void ZoningSession::_checkEditable(const CacheLock &cache) const {
    if (cache->getUberZoneset() == nullptr)
        throw Failure("the switch has no zoning of its own to edit: it is in transparent mode");
}

void ZoningSession::_checkLock(const CacheLock &cache, const Statement &statement) const {
    if (_stop)
        throw Failure(fmt::format("interrupted before line {}; nothing was committed", statement.line));
    bool expired = false;
    if (!cache->LockIdOK(_holder.c_str(), expired))
        throw Stopped(kLockBusyExit,
                      fmt::format("line {}: {}; nothing was committed", statement.line,
                                  expired ? "the zoning lock has been held for more than 90 seconds, which ends it"
                                          : "the zoning lock has been lost"));
}

void ZoningSession::_edit(const CacheLock &cache, const Statement &statement, bool underLock) {
    const auto refusal = perform(cache, statement);
    if (refusal)
        throw Stopped(refusal->isLimit ? kLimitExit : kFailedExit,
                      fmt::format("line {}: {}: {} (code {}){}", statement.line, printable(inScript(statement)),
                                  refusal->reason, refusal->code, underLock ? "; nothing was committed" : ""));
    _progress(fmt::format("line {}: {}", statement.line, printable(inScript(statement))));
}

bool ZoningSession::_wantsCommit() const {
    return !_script.statements.empty() && _script.statements.back().kind == StatementKind::commit;
}

void ZoningSession::_commit(SessionResult &result) {
    {
        const CacheLock cache;
        _committing = true;
        _progress(fmt::format("line {}: commit", _script.statements.back().line));
        if (!cache->replaceZoningDB())
            throw Failure("the cached database cannot be read whole, so nothing was committed; details are in "
                          "/tmp/cim.out");
        // An old lock is none of the switch's business: only a lock that is not held any more tells of a rejection.
        if (cache->getZoningLockHolder() != _holder)
            throw Stopped(kRejectedExit, fmt::format("the switch rejected the commit{}; its zoning is as it was before",
                                                     reasonIn(cache)));
    }
    result.committed = true;
    readAnew();
    const CacheLock cache;
    result.deviations = difference(result.edited, definedZoning(cache));
}

} // namespace dcache
