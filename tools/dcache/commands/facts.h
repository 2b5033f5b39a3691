/*
 * Cells that several nouns show alike.
 */
#ifndef TOOLS_DCACHE_COMMANDS_FACTS_H
#define TOOLS_DCACHE_COMMANDS_FACTS_H

#include "datacache/DataCacheEvent.h"
#include "tools/dcache/render.h"

namespace dcache {

/// Nothing to tell: null for programs, a sign for people.
Cell emptyCell(const char *sign);

/// The chassis' fault list: an array of texts; for people also when it is empty or has not been read.
Cell faultsCell(const StatusList &faults);

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDS_FACTS_H
