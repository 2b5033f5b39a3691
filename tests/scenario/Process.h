/*
 * Work in a process of its own, for what a process can do only once.
 */
#ifndef TESTS_SCENARIO_PROCESS_H
#define TESTS_SCENARIO_PROCESS_H

#include <functional>
#include <string>

namespace scenario {

/// What `work` returns, done by a copy of this process that ends then. Throws std::runtime_error when it throws or ends
/// in some other way. Call it while this process has one thread.
std::string inProcess(const std::function<std::string()> &work);

} // namespace scenario

#endif // TESTS_SCENARIO_PROCESS_H
