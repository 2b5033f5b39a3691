#ifndef DOCS_EXAMPLES_CACHEHOLD_H
#define DOCS_EXAMPLES_CACHEHOLD_H

// [CacheHold]
#include <datacache/DataCache.h>

/// Holds the cache's lock for a scope. The same thread may hold it several times.
class CacheHold {
public:
    CacheHold() : _cache(DataCache::getInstance()) {}
    ~CacheHold() { DataCache::releaseInstance(); }
    CacheHold(const CacheHold &) = delete;
    CacheHold &operator=(const CacheHold &) = delete;

    DataCache *operator->() const { return _cache; }

private:
    DataCache *_cache;
};
// [/CacheHold]

#endif // DOCS_EXAMPLES_CACHEHOLD_H
