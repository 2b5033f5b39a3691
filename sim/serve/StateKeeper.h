/*
 * The file in which a switch keeps what it shall still know after a restart. It is replaced as a whole: who reads it
 * finds what was kept before, or what is kept now.
 *
 * Thread-safe.
 */
#ifndef SIM_SERVE_STATEKEEPER_H
#define SIM_SERVE_STATEKEEPER_H

#include <mutex>
#include <string>

#include "sim/serve/Served.h"

namespace sim {

class StateKeeper {
public:
    /// An empty file name: nothing is kept.
    StateKeeper(Served &served, std::string file) : _served(served), _file(std::move(file)) {}
    StateKeeper(const StateKeeper &) = delete;
    StateKeeper &operator=(const StateKeeper &) = delete;
    ~StateKeeper();

    /// Takes the file, and has the switch begin with what it keeps, if it is there. Throws std::runtime_error when it
    /// cannot be read, when there can be no file in that place, and when another server has it.
    void restore();
    /// Keeps what there is now, if it is something else. A failure is told on the standard error output: the switch
    /// goes on.
    void keep();
    /// The same, but a switch that is as it was made needs no file.
    void keepChanges();

private:
    void take();
    void keepUnlessLike(const std::string &before);
    void replace(const std::string &text) const;

    Served &_served;
    const std::string _file;
    std::mutex _mutex;
    std::string _kept;
    std::string _asMade; ///< empty when there was a file
    int _lock = -1;
};

} // namespace sim

#endif // SIM_SERVE_STATEKEEPER_H
