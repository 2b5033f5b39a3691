/*
 * What stands behind the examples of the guides and is not shown there: a simulated switch on which things happen, a /tmp
 * of the example's own for the log, and the comparison of what the example prints with what it says it prints.
 *
 * Thread-safety: run() is called by main(), the others by the thread that run() calls `body` on.
 */
#ifndef DOCS_EXAMPLES_DRIVER_H
#define DOCS_EXAMPLES_DRIVER_H

#include <functional>
#include <string>
#include <vector>

#include "sim/Simulator.h"

namespace example {

/// Runs an example against a switch of this profile, and ends the process: with exit status 0 when `body` printed just
/// what is expected, or nothing is (null). The first line break of `expected`, which lets it begin on a line of its own,
/// does not count.
int run(const char *profile, const char *expected, void (*body)());

/// The switch, while run() runs.
sim::Simulator &theSwitch();

/// Waits until a condition holds. When that takes longer than 20 s the example ends with exit status 1.
void waitUntil(const char *what, const std::function<bool()> &condition);

/// Waits until the cache is ready, has seen all notifications and has nothing left to do.
void waitUntilSettled();

/// The messages of a log file, without time, process and thread.
std::vector<std::string> messagesIn(const char *file);

} // namespace example

#endif // DOCS_EXAMPLES_DRIVER_H
