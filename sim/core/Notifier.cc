#include "sim/core/Notifier.h"

#include <algorithm>
#include <utility>

#include "sim/core/Handle.h"

namespace sim {

namespace {

/// A notification that the next one is to overtake comes after this time without a next one.
constexpr Clock::Time kLongestHold = std::chrono::seconds(1);

} // namespace

Notifier::Notifier(Clock &clock, Levers levers, Observer observer)
    : _clock(clock), _levers(std::move(levers)), _observer(std::move(observer)) {
    _clock.onChange([this] {
        const std::lock_guard<std::mutex> lock(_mutex);
        _changed.notify_all();
    });
    _thread = std::thread([this] { run(); });
}

Notifier::~Notifier() {
    stop();
}

void Notifier::registerClient(zov_handle_t client, zov_eventcallback_t callback, void *context,
                              const EventCodes &codes) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _clients[client] = {callback, context, codes};
}

void Notifier::awaitAcknowledgements(zov_handle_t client) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _unacknowledged[client];
}

/// An acknowledgement too many is nobody's.
void Notifier::acknowledge(zov_handle_t client) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _unacknowledged.find(client);
    if (found == _unacknowledged.end() || found->second.empty())
        return;
    found->second.pop_front();
    _changed.notify_all();
}

void Notifier::forget(zov_handle_t client) {
    Lock lock(_mutex);
    _clients.erase(client);
    for (auto entry = _queue.begin(); entry != _queue.end();) {
        if (entry->second.recipient.client == client) {
            _heldBack -= entry->second.heldBack ? 1 : 0;
            entry = _queue.erase(entry);
        } else {
            ++entry;
        }
    }
    _changed.wait(lock, [&] { return _delivering == 0 || _deliveringTo != client; });
    _unacknowledged.erase(client);
    _changed.notify_all();
}

// ---- sending ------------------------------------------------------------------------------------------

void Notifier::send(const zov_event_s &event) {
    enqueue(event, [&](zov_handle_t, const Client &client) {
        return event.code >= 0 && event.code < kEventCodes && client.codes.test(static_cast<size_t>(event.code));
    });
}

void Notifier::sendToAll(const zov_event_s &event) {
    enqueue(event, [](zov_handle_t, const Client &) { return true; });
}

void Notifier::sendTo(zov_handle_t client, const zov_event_s &event) {
    enqueue(event, [client](zov_handle_t number, const Client &) { return number == client; });
}

void Notifier::enqueue(const zov_event_s &event, const Wants &wants) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const std::vector<Recipient> all = recipients(wants);
    if (_stopping || all.empty())
        return;
    zov_event_s sent = event;
    const Treatment treatment = _levers(sent);
    const Clock::Time due = _clock.time() + treatment.delay;
    for (const Recipient &recipient : all)
        put(recipient, sent, treatment, due);
    _changed.notify_all();
}

std::vector<Notifier::Recipient> Notifier::recipients(const Wants &wants) const {
    std::vector<Recipient> found;
    for (const auto &[number, client] : _clients)
        if (wants(number, client))
            found.push_back({number, client.callback, client.context});
    return found;
}

/// One that comes in time is overtaken by nobody when it has just overtaken another.
void Notifier::put(const Recipient &recipient, const zov_event_s &event, const Treatment &treatment, Clock::Time due) {
    std::vector<Delivery> overtaken;
    if (treatment.delay.count() == 0 && treatment.copies > 0)
        overtaken = takeHeldBack(recipient.client);
    const bool heldBack = treatment.reordered && overtaken.empty();
    for (unsigned copy = 0; copy < treatment.copies; ++copy)
        _queue.insert({heldBack ? due + kLongestHold : due, {recipient, event, ++_sent, heldBack}});
    if (heldBack)
        _heldBack += treatment.copies;
    for (Delivery &delivery : overtaken) {
        delivery.heldBack = false;
        _queue.insert({due, delivery});
    }
}

std::vector<Notifier::Delivery> Notifier::takeHeldBack(zov_handle_t client) {
    std::vector<Delivery> taken;
    for (auto entry = _queue.begin(); _heldBack > 0 && entry != _queue.end();) {
        const Delivery &delivery = entry->second;
        if (!delivery.heldBack || delivery.recipient.client != client) {
            ++entry;
            continue;
        }
        taken.push_back(delivery);
        entry = _queue.erase(entry);
        --_heldBack;
    }
    return taken;
}

// ---- delivering ---------------------------------------------------------------------------------------

void Notifier::run() {
    Lock lock(_mutex);
    while (!_stopping) {
        if (_clock.pace() != Pace::driven && _delivering == 0 && isNext(_clock.time()))
            deliverFirst(lock);
        else
            waitForWork(lock);
    }
}

/// Until something changes, or the first notification is due.
void Notifier::waitForWork(Lock &lock) {
    std::optional<Clock::RealTime> end;
    if (!_queue.empty() && _delivering == 0)
        end = _clock.realTimeOf(_queue.begin()->first);
    if (end)
        _changed.wait_until(lock, *end);
    else
        _changed.wait(lock);
}

/// False when there is none: for what a callback that runs on this thread asks for, and at the end.
bool Notifier::waitForTurn(Lock &lock) {
    if (_delivering != 0 && _deliverer == std::this_thread::get_id())
        return false;
    _changed.wait(lock, [this] { return _delivering == 0 || _stopping; });
    return !_stopping;
}

std::optional<Clock::Time> Notifier::nextDue(Clock::Time end) {
    Lock lock(_mutex);
    if (!waitForTurn(lock) || !isNext(end))
        return std::nullopt;
    return _queue.begin()->first;
}

bool Notifier::deliverOne(Clock::Time end) {
    Lock lock(_mutex);
    if (!waitForTurn(lock) || !isNext(end))
        return false;
    deliverFirst(lock);
    return true;
}

/// The event is a copy: what the client does to it is nobody else's business.
void Notifier::deliverFirst(Lock &lock) {
    Delivery delivery = _queue.begin()->second;
    _queue.erase(_queue.begin());
    _heldBack -= delivery.heldBack ? 1 : 0;
    _delivering = delivery.number;
    _deliveringTo = delivery.recipient.client;
    _deliverer = std::this_thread::get_id();
    const auto acknowledging = _unacknowledged.find(_deliveringTo);
    if (acknowledging != _unacknowledged.end()) // which may happen before the callback returns
        acknowledging->second.push_back(delivery.number);
    lock.unlock();
    _observer(delivery.recipient.client, delivery.event);
    lock.lock();
    _handed = delivery.number;
    _changed.notify_all();
    lock.unlock();
    delivery.recipient.callback(pointerOf(delivery.recipient.client), &delivery.event, delivery.recipient.context);
    lock.lock();
    _delivering = 0;
    _changed.notify_all();
}

// ---- waiting and stopping -----------------------------------------------------------------------------

/// What is sent meanwhile is due later, and so not before the first of the queue is one of them.
bool Notifier::waitUntilQuiet(std::chrono::milliseconds limit) {
    const Clock::Time now = _clock.time();
    while (_clock.pace() == Pace::driven && deliverOne(now)) {
    }
    Lock lock(_mutex);
    const unsigned long long sent = _sent;
    return _changed.wait_for(lock, limit, [&] {
        const bool runs = _delivering != 0 && _delivering <= sent;
        return _stopping || (!waits(now, sent) && !runs && isAcknowledged(sent));
    });
}

bool Notifier::waitUntilHanded(std::chrono::milliseconds limit) {
    const Clock::Time now = _clock.time();
    Lock lock(_mutex);
    const unsigned long long sent = _sent;
    return _changed.wait_for(lock, limit, [&] {
        const bool isOnItsWay = _delivering != 0 && _delivering <= sent && _handed != _delivering;
        return _stopping || (!waits(now, sent) && !isOnItsWay);
    });
}

bool Notifier::isAcknowledged(unsigned long long last) const {
    return std::none_of(_unacknowledged.begin(), _unacknowledged.end(), [&](const auto &client) {
        return std::any_of(client.second.begin(), client.second.end(), [&](auto number) { return number <= last; });
    });
}

void Notifier::close() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _stopping = true;
    _queue.clear();
    _heldBack = 0;
    _changed.notify_all();
}

void Notifier::stop() {
    close();
    if (_thread.joinable())
        _thread.join();
    Lock lock(_mutex);
    _changed.wait(lock, [this] { return _delivering == 0; });
}

} // namespace sim
