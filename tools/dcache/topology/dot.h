/*
 * A topology as a drawing in Graphviz's language DOT.
 *
 * Boxes are switches: domain ID, name and number of ports; the principal and the local switch have colours of their
 * own and say what they are. A line stands for all links between two switches, a thick one with a count for several; it
 * is dashed when only one of the two tells of it. How the drawing is laid out depends on the size and form of the
 * fabric and stands in the text, so that the program `dot` draws it as it should be without options.
 *
 * Pure function, callable from any thread.
 */
#ifndef TOOLS_DCACHE_TOPOLOGY_DOT_H
#define TOOLS_DCACHE_TOPOLOGY_DOT_H

#include <string>

#include "tools/dcache/topology/graph.h"

namespace dcache {

std::string topologyDot(const Topology &topology);

} // namespace dcache

#endif // TOOLS_DCACHE_TOPOLOGY_DOT_H
