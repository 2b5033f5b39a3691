/*
 * The tool's hold on the cache.
 *
 * One connection per process: connect() first, then CacheLock where data are read. Any thread may take a CacheLock;
 * it waits for a running pass to end.
 */
#ifndef TOOLS_DCACHE_CACHE_H
#define TOOLS_DCACHE_CACHE_H

#include "datacache/DataCache.h"

namespace dcache {

/// The cache, locked as long as this lives.
class CacheLock {
public:
    CacheLock() : _cache(DataCache::getInstance()) {}
    ~CacheLock() { DataCache::releaseInstance(); }
    CacheLock(const CacheLock &) = delete;
    CacheLock &operator=(const CacheLock &) = delete;

    DataCache *operator->() const { return _cache; }
    DataCache &operator*() const { return *_cache; }

private:
    DataCache *_cache;
};

/// Creates the cache and connects it to the switch. Waits as long as the switch does not answer, and says so on stderr
/// when that takes noticeably long.
void connect();

/// Connects and loads the cache once, on this thread; throws Failure when `area` is not good then.
void loadOnce(DataCacheArea area);

} // namespace dcache

#endif // TOOLS_DCACHE_CACHE_H
