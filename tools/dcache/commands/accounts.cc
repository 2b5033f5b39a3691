#include "tools/dcache/cache.h"
#include "tools/dcache/commands/commands.h"
#include "tools/dcache/words.h"

namespace dcache {

Report showAccounts() {
    loadOnce(DataCacheArea::accounts);
    const CacheLock cache;
    Listing listing{"accounts", {{"name", "ACCOUNT"}}, {}, "The switch has no user accounts."};
    for (const std::string &name : cache->getUserAccounts())
        listing.rows.push_back({{name, printable(name)}});
    Report report;
    report.listings = {listing};
    return report;
}

} // namespace dcache
