// Areas whose refresh is not built yet. They report failure, so that the cache does not claim to be ready.
#include "datacache/DataCache.h"

int DataCache::_getBladeInfo() {
    return 0;
}

int DataCache::_getPortInfo() {
    return 0;
}

bool DataCache::_getAcctInfo() {
    return false;
}

bool DataCache::_getFabricInfo() {
    return false;
}

bool DataCache::_getZoningInfo() {
    return false;
}
