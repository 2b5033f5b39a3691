#include "sim/core/Notifier.h"

#include <utility>

#include "sim/core/Handle.h"

namespace sim {

Notifier::Notifier(Observer observer) : _observer(std::move(observer)), _thread([this] { run(); }) {}

Notifier::~Notifier() {
    stop();
}

void Notifier::registerClient(zov_handle_t client, zov_eventcallback_t callback, void *context,
                              const EventCodes &codes) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _clients[client] = {callback, context, codes};
}

void Notifier::send(const zov_event_s &event) {
    enqueue(event, [&](const Client &client) {
        return event.code >= 0 && event.code < kEventCodes && client.codes.test(static_cast<size_t>(event.code));
    });
}

void Notifier::sendToAll(const zov_event_s &event) {
    enqueue(event, [](const Client &) { return true; });
}

void Notifier::enqueue(const zov_event_s &event, const std::function<bool(const Client &)> &wants) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_stopping)
        return;
    for (const auto &[number, client] : _clients)
        if (wants(client)) {
            _queue.push_back({{number, client.callback, client.context}, event});
            ++_sent;
        }
    _changed.notify_all();
}

bool Notifier::waitUntilQuiet(std::chrono::milliseconds limit) {
    std::unique_lock<std::mutex> lock(_mutex);
    const unsigned long long sent = _sent;
    return _changed.wait_for(lock, limit, [&] { return _taken >= sent || _stopping; });
}

void Notifier::close() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _stopping = true;
    _queue.clear();
    _changed.notify_all();
}

void Notifier::stop() {
    close();
    if (_thread.joinable())
        _thread.join();
}

void Notifier::run() {
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _stopping || !_queue.empty(); });
        if (_stopping)
            return;
        const Delivery delivery = _queue.front();
        _queue.pop_front();
        lock.unlock();
        hand(delivery.recipient, delivery.event);
        lock.lock();
        ++_taken;
        _changed.notify_all();
    }
}

/// The event is a copy: what the client does to it is nobody else's business.
void Notifier::hand(const Recipient &recipient, zov_event_s event) const {
    _observer(recipient.client, event);
    recipient.callback(pointerOf(recipient.client), &event, recipient.context);
}

} // namespace sim
