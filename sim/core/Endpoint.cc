#include "sim/core/Endpoint.h"

#include <algorithm>
#include <string>
#include <utility>

#include "sim/core/Event.h"
#include "sim/levers/Garbling.h"

namespace sim {

namespace {

void record(Recorder &recorder, std::chrono::milliseconds time, zov_handle_t client, const zov_event_s &event) {
    if (!recorder.isOn())
        return;
    Record notification;
    notification.client = client;
    notification.call = kNotificationCall;
    notification.arguments = std::to_string(event.code) + " [" + std::to_string(event.source.number[0]) + ":" +
                             std::to_string(event.source.number[1]) + ":" + std::to_string(event.source.number[2]) +
                             "] " + quoted(textOf(event));
    notification.time = time;
    recorder.add(std::move(notification));
}

/// What the levers make of a notification.
Treatment treat(Faults &faults, zov_event_s &event) {
    const std::vector<std::string> keys = {std::to_string(event.code)};
    const Verdict verdict = faults.judge({kNotificationCall, keys, true});
    if (!verdict.keys.empty() && verdict.keys[0].applies) {
        const KeyFault &fault = verdict.keys[0];
        const std::string text = textOf(event);
        const std::string other =
            fault.garbling ? garbled(text, *fault.garbling, sizeof event.text - 1) : fault.value.value_or(text);
        event = makeEvent(event.code, {event.source.number[0], event.source.number[1], event.source.number[2]}, other);
    }
    return {verdict.copies.value_or(1), verdict.delay, verdict.reordered};
}

} // namespace

Endpoint::Endpoint(Switch state, bool recording, std::shared_ptr<Script> theScript)
    : script(std::move(theScript)), recorder(recording),
      notifier(
          clock, [this](zov_event_s &event) { return treat(faults, event); },
          [this](zov_handle_t client, const zov_event_s &event) { record(recorder, clock.uptime(), client, event); }),
      device(std::move(state), notifier) {}

void Endpoint::passTime(std::chrono::seconds whole, Clock::Time part) {
    if (clock.pace() != Pace::driven) {
        clock.pass(whole, part);
        return;
    }
    constexpr std::chrono::seconds longestDelay = std::chrono::hours(24 * 365);
    const Clock::Time begin = clock.time();
    const Clock::Time end = begin + std::min(whole, longestDelay) + part;
    while (const std::optional<Clock::Time> due = notifier.nextDue(end)) {
        clock.passUntil(*due);
        if (!notifier.deliverOne(*due))
            break;
    }
    passRest(whole, part, clock.time() - begin);
}

/// What is left of a time, if not all of it was spent and more: a callback may ask for what takes time too.
void Endpoint::passRest(std::chrono::seconds whole, Clock::Time part, Clock::Time spent) {
    const auto spentWhole = std::chrono::duration_cast<std::chrono::seconds>(spent);
    whole -= spentWhole;
    part -= spent - spentWhole;
    if (part.count() < 0) {
        whole -= std::chrono::seconds(1);
        part += std::chrono::seconds(1);
    }
    if (whole.count() >= 0)
        clock.pass(whole, part);
}

bool Endpoint::waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit) {
    const std::chrono::milliseconds left = uptime - clock.uptime();
    if (clock.pace() == Pace::driven && left.count() > 0) {
        const auto whole = std::chrono::duration_cast<std::chrono::seconds>(left);
        passTime(whole, left - whole);
    }
    return clock.waitForUptime(uptime, limit);
}

void Endpoint::delay(std::chrono::milliseconds time, zov_handle_t client) {
    clock.delay(time, [&] { return isGone(client); });
}

void Endpoint::hang(std::chrono::milliseconds time, zov_handle_t client) {
    clock.hang(time, [&] { return isGone(client); });
}

void Endpoint::take(std::chrono::seconds time, zov_handle_t client) {
    clock.take(time, [&] { return isGone(client); });
}

void Endpoint::hangUp(zov_handle_t client) {
    {
        const std::lock_guard<std::mutex> lock(_goneMutex);
        _gone.insert(client);
    }
    clock.wake();
    notifier.forget(client);
    device.hangUp(client);
}

bool Endpoint::isGone(zov_handle_t client) const {
    const std::lock_guard<std::mutex> lock(_goneMutex);
    return _gone.count(client) != 0;
}

void Endpoint::disconnect(zov_handle_t client) {
    notifier.forget(client); // it may have registered in a call that was in progress when it hung up
    device.disconnect(client);
    const std::lock_guard<std::mutex> lock(_goneMutex);
    _gone.erase(client);
}

void Endpoint::switchOff() {
    _off = true;
    clock.end();
    notifier.stop();
}

} // namespace sim
