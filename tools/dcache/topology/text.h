/*
 * A topology as text for a terminal: a tree that grows from the principal switch over the shortest ways, one line per
 * switch. The links that the tree does not need are told beside one of their two switches, so that every link is there
 * once. Beneath it stand the links of the local switch, port by port.
 *
 * Pure function, callable from any thread. Lines stay within 80 columns.
 */
#ifndef TOOLS_DCACHE_TOPOLOGY_TEXT_H
#define TOOLS_DCACHE_TOPOLOGY_TEXT_H

#include <string>
#include <vector>

#include "tools/dcache/topology/graph.h"

namespace dcache {

/// What the tree is drawn with.
enum class Lines { ascii, unicode };

std::string topologyText(const Topology &topology, Lines lines, bool colour);

/// "1, 3-5, 9": numbers in rising order, three and more in a row as a range.
std::string ranges(const std::vector<unsigned> &numbers);

} // namespace dcache

#endif // TOOLS_DCACHE_TOPOLOGY_TEXT_H
