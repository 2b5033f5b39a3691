/*
 * The calls of a client in another process: what a message asks for is done on the client's connection, and the answer
 * is what the call changed.
 *
 * Pure functions of what they are given. Thread-safe.
 */
#ifndef SIM_SERVE_CALLS_H
#define SIM_SERVE_CALLS_H

#include "sim/core/Connection.h"
#include "sim/wire/Frame.h"

namespace sim {

/// Where the notifications of a client go.
struct Outlet {
    zov_eventcallback_t callback;
    void *context;
};

/// The answer has the result of the call under "result". Throws a Json::exception or std::invalid_argument for a message
/// that no client sends.
Json answerCall(Connection &connection, const Outlet &outlet, const Json &message);

/// Whether what a call did may have changed what the switch would still know after a restart.
bool mayHaveSaved(const Json &message);

} // namespace sim

#endif // SIM_SERVE_CALLS_H
