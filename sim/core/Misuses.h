/*
 * What clients did with zoning objects that a real switch library might not have survived: one line each.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_MISUSES_H
#define SIM_CORE_MISUSES_H

#include <mutex>
#include <string>
#include <vector>

namespace sim {

class Misuses {
public:
    void add(const std::string &misuse);
    std::vector<std::string> all() const;

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _misuses;
};

/// Ends the process over a misuse, saying why, where misuses are not forgiven: under a sanitizer, unless the environment
/// variable ZOVSIM_MISUSE is "report", and elsewhere when it is "stop".
void stopUnlessForgiven(const std::string &misuse);

} // namespace sim

#endif // SIM_CORE_MISUSES_H
