// Areas whose refresh is not built yet. They report failure, so that the cache does not claim to be ready.
#include "datacache/DataCache.h"

bool DataCache::_getZoningInfo() {
    return false;
}
