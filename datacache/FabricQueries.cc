#include <algorithm>

#include "common/AccessLock.h"
#include "datacache/DataCache.h"

FabricCache *DataCache::getFabric(unsigned short number) const {
    { const AccessLock waitForPass; }
    return number == 1 ? &_fabric : nullptr;
}

bool DataCache::_fabricContainsWWN(std::vector<Wwn> names, Wwn wwn) const {
    return std::find(names.begin(), names.end(), wwn) != names.end();
}
