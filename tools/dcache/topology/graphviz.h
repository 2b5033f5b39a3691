/*
 * Graphviz, run as a program: its `dot`, found on the PATH, turns a drawing's text into a picture.
 *
 * Thread-safety: may be called from any thread.
 * Errors: throws Failure when there is no such program, or when it fails.
 */
#ifndef TOOLS_DCACHE_TOPOLOGY_GRAPHVIZ_H
#define TOOLS_DCACHE_TOPOLOGY_GRAPHVIZ_H

#include <string>

namespace dcache {

/// The picture as SVG. Waits for the program as long as it takes.
std::string svgFrom(const std::string &dot);

} // namespace dcache

#endif // TOOLS_DCACHE_TOPOLOGY_GRAPHVIZ_H
