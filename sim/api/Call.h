/*
 * The way of a call of the C interface to the switch and back. Every function of the interface goes it:
 *
 *     the boundary     no exception leaves the switch library
 *     the recorder     notes the call as it returned
 *     the levers       let time pass, do something to the switch, fail the call or some of its keys, or let it be
 *     the script       answers what the levers left alone, where a recording stands in for the switch
 *     the switch       serves it
 *
 * Thread-safe.
 */
#ifndef SIM_API_CALL_H
#define SIM_API_CALL_H

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "sim/Status.h"
#include "sim/core/Endpoint.h"
#include "sim/core/Handle.h"
#include "sim/core/Registry.h"

namespace sim {

/// What a call returns when it fails: its status, or null where it returns a handle.
template <class Result> Result failure(int32_t status);
template <> inline int32_t failure<int32_t>(int32_t status) {
    return status;
}
template <> inline void *failure<void *>(int32_t) {
    return nullptr;
}

inline int32_t recorded(int32_t result) {
    return result;
}
inline int32_t recorded(const void *handle) {
    return static_cast<int32_t>(numberOf(handle));
}

template <class Result, class Body> Result guarded(const Body &body) {
    try {
        return body();
    } catch (const std::bad_alloc &) {
        return failure<Result>(kNoMemory);
    } catch (const std::exception &) {
        return failure<Result>(kInternal);
    }
}

/// What the script makes of what the levers left alone.
inline void addScript(Endpoint &endpoint, const Call &call, Verdict &verdict) {
    if (!endpoint.script || verdict.result || verdict.nullHandle)
        return;
    Verdict scripted = endpoint.script->answer(endpoint, call);
    verdict.result = scripted.result;
    verdict.nullHandle = scripted.nullHandle;
    verdict.handedOut = std::move(scripted.handedOut);
    verdict.keys.resize(std::max(verdict.keys.size(), scripted.keys.size()));
    for (size_t i = 0; i < scripted.keys.size(); ++i)
        if (!verdict.keys[i].applies)
            verdict.keys[i] = std::move(scripted.keys[i]);
}

/// Takes a call to the switch and back.
///     serve(verdict)       serves it, minding what the levers say of its keys; returns its result
///     handOutNothing()     clears the handle that the call should have handed out
///     describe(record)     adds what the call was about, once it is over
template <class Result, class Serve, class HandOutNothing, class Describe>
Result pass(Endpoint &endpoint, Call &call, const Serve &serve, const HandOutNothing &handOutNothing,
            const Describe &describe) {
    const std::chrono::milliseconds time =
        endpoint.recorder.isOn() ? endpoint.clock.uptime() : std::chrono::milliseconds(0);
    const zov_handle_t caller = call.client != 0 ? call.client : call.caller;
    Verdict verdict = endpoint.faults.judge({call.name, call.keys, call.reads});
    if (verdict.delay.count() > 0)
        endpoint.delay(verdict.delay, caller);
    if (verdict.hang.count() > 0)
        endpoint.hang(verdict.hang, caller);
    for (const std::function<void()> &action : verdict.actions)
        if (!endpoint.isOff()) // what it would do something to may be gone
            action();
    addScript(endpoint, call, verdict);
    Result result{};
    if ((call.client != 0 && endpoint.isOff()) || endpoint.isGone(caller))
        result = failure<Result>(kBadHandle);
    else if (verdict.result)
        result = failure<Result>(*verdict.result);
    else if (verdict.nullHandle)
        handOutNothing();
    else
        result = serve(verdict);
    if (endpoint.recorder.isOn()) {
        Record record;
        record.client = call.client;
        record.call = call.name;
        record.result = recorded(result);
        record.time = time;
        describe(record);
        endpoint.recorder.add(std::move(record));
    }
    if (endpoint.script)
        endpoint.script->answered(endpoint, call.client);
    return result;
}

/// The same for a call on a connection; a dead one fails at once.
template <class Serve, class HandOutNothing, class Describe>
int32_t passOnConnection(Call call, const Serve &serve, const HandOutNothing &handOutNothing,
                         const Describe &describe) {
    return guarded<int32_t>([&]() -> int32_t {
        const std::shared_ptr<Endpoint> endpoint = Registry::instance().find(call.client);
        if (!endpoint)
            return kBadHandle;
        return pass<int32_t>(
            *endpoint, call, [&](const Verdict &verdict) -> int32_t { return serve(*endpoint, verdict); },
            handOutNothing, describe);
    });
}

inline void nothing() {}

/// An argument as a record shows it.
inline std::string shown(const char *text) {
    return text ? quoted(text) : "null";
}
inline std::string shown(const void *handle) {
    return handle ? "#" + std::to_string(numberOf(handle)) : "null";
}
inline std::string shown(int32_t number) {
    return std::to_string(number);
}

/// The arguments of a call as a record shows them.
template <class First, class... Others> std::string shownAll(First first, Others... others) {
    std::string text = shown(first);
    ((text += ", " + shown(others)), ...);
    return text;
}

} // namespace sim

#endif // SIM_API_CALL_H
