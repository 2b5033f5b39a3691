/*
 * What the tool reads: a file, or its standard input.
 */
#ifndef TOOLS_DCACHE_INPUT_H
#define TOOLS_DCACHE_INPUT_H

#include <string>

namespace dcache {

/// All of a file; of standard input for "-". Throws Failure when it cannot be read, or is larger than any script is.
std::string readInput(const std::string &file);

} // namespace dcache

#endif // TOOLS_DCACHE_INPUT_H
