/*
 * What can stand in for the switch when calls are answered: a recording, for one. It says of each call what it answers,
 * in the way in which the rules of misbehaviour do; what it says nothing of is served by the switch.
 *
 * Thread-safe.
 */
#ifndef SIM_CORE_SCRIPT_H
#define SIM_CORE_SCRIPT_H

#include <string>
#include <vector>

#include "platform/zovlib.h"
#include "sim/levers/Faults.h"

namespace sim {

class Endpoint;

/// One call, as far as it is known before it is served.
struct Call {
    const char *name;
    zov_handle_t client = 0;
    std::vector<std::string> keys = {};
    bool reads = false;                   ///< its keys are read
    std::vector<std::string> values = {}; ///< what its keys are set to
    std::string arguments = {};           ///< as a record shows them, but for what is handed out
    zov_handle_t caller = 0;              ///< who waits for a call that makes a connection, if that may go meanwhile
};

class Script {
public:
    Script() = default;
    Script(const Script &) = delete;
    Script &operator=(const Script &) = delete;
    virtual ~Script() = default;

    /// The answer to a call that is being made. It may wait, but not for a callback to return.
    virtual Verdict answer(Endpoint &endpoint, const Call &call) = 0;
    /// The zov_IPConnect() that the calling thread was given an answer to has made this connection.
    virtual void connected(zov_handle_t connection) = 0;
    /// The call was answered and recorded. `client` is 0 for calls without a connection.
    virtual void answered(Endpoint &endpoint, zov_handle_t client) = 0;
};

} // namespace sim

#endif // SIM_CORE_SCRIPT_H
