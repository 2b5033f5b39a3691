/*
 * Notifications: who registered for what, and who delivers them.
 *
 * A notification goes to the clients that are registered at the moment it is sent, one client after
 * another, in the order sent, unless the levers have it otherwise. Every callback gets a copy of the event of its own
 * and runs without any lock held, so it may call whatever it likes; a client that is slow to take one delays only what
 * comes after it.
 *
 * A thread of its own delivers them. While the clock is driven that thread rests, and deliverOne() does it; a callback
 * is never called while another is running.
 *
 * A client in another process takes a notification later than its callback here returns: it acknowledges each one, in
 * order.
 *
 * Thread-safe. stop() and waitUntilQuiet() wait for running callbacks and must not be called from one.
 */
#ifndef SIM_CORE_NOTIFIER_H
#define SIM_CORE_NOTIFIER_H

#include <bitset>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/zovlib.h"
#include "sim/core/Clock.h"

namespace sim {

/// Notifications have the codes 0 to 255.
constexpr int32_t kEventCodes = 256;

using EventCodes = std::bitset<kEventCodes>;

/// What becomes of a notification on its way.
struct Treatment {
    unsigned copies = 1;
    std::chrono::milliseconds delay{0};
    bool reordered = false; ///< the next one comes first
};

class Notifier {
public:
    /// Told of every notification just before its callback is called.
    using Observer = std::function<void(zov_handle_t client, const zov_event_s &event)>;
    /// Asked about every notification that somebody is to get, whom it may give another text. Must not call the
    /// notifier.
    using Levers = std::function<Treatment(zov_event_s &event)>;

    /// Nobody else may listen to the clock's changes.
    Notifier(Clock &clock, Levers levers, Observer observer);
    Notifier(const Notifier &) = delete;
    Notifier &operator=(const Notifier &) = delete;
    ~Notifier();

    /// A client has one registration: a new one takes the place of the former.
    void registerClient(zov_handle_t client, zov_eventcallback_t callback, void *context, const EventCodes &codes);
    /// From now on a notification is taken when this client has acknowledged it.
    void awaitAcknowledgements(zov_handle_t client);
    void acknowledge(zov_handle_t client);
    /// The client is gone: nothing is delivered to it any more once this returns. It waits for a running callback of the
    /// client's, so it must not be called from one.
    void forget(zov_handle_t client);

    /// To every client registered for the event's code.
    void send(const zov_event_s &event);
    /// To every client that registered, whatever for.
    void sendToAll(const zov_event_s &event);
    /// To this client, if it registered, whatever for.
    void sendTo(zov_handle_t client, const zov_event_s &event);

    /// When the next notification is due that is due by then. Nothing inside a callback of deliverOne().
    std::optional<Clock::Time> nextDue(Clock::Time end);
    /// Delivers it, on this thread; false when there is none. It too does nothing inside its own callbacks.
    bool deliverOne(Clock::Time end);

    /// Waits until everything sent so far and due was taken; false when that took longer than `limit`. Delivers it
    /// itself while the clock is driven.
    bool waitUntilQuiet(std::chrono::milliseconds limit);
    /// Waits until the callbacks of everything sent so far and due were called, if not until they returned; likewise.
    /// May be called from a callback. Delivers nothing itself.
    bool waitUntilHanded(std::chrono::milliseconds limit);

    /// Forgets what was not delivered yet. Nothing is delivered any more; a callback may still be running.
    void close();
    /// The same, and ends the thread.
    void stop();

private:
    using Lock = std::unique_lock<std::mutex>;

    struct Client {
        zov_eventcallback_t callback = nullptr;
        void *context = nullptr;
        EventCodes codes;
    };
    struct Recipient {
        zov_handle_t client;
        zov_eventcallback_t callback;
        void *context;
    };
    struct Delivery {
        Recipient recipient;
        zov_event_s event;
        unsigned long long number; ///< in the order of sending
        bool heldBack;             ///< until another is sent to this client
    };
    using Queue = std::multimap<Clock::Time, Delivery>; ///< by the times when they are due

    using Wants = std::function<bool(zov_handle_t number, const Client &client)>;
    /// The deliveries that a client has not acknowledged, oldest first.
    using Unacknowledged = std::deque<unsigned long long>;

    void enqueue(const zov_event_s &event, const Wants &wants);
    std::vector<Recipient> recipients(const Wants &wants) const;
    void put(const Recipient &recipient, const zov_event_s &event, const Treatment &treatment, Clock::Time due);
    std::vector<Delivery> takeHeldBack(zov_handle_t client);
    void run();
    void waitForWork(Lock &lock);
    bool waitForTurn(Lock &lock);
    bool isNext(Clock::Time end) const { return !_queue.empty() && _queue.begin()->first <= end; }
    bool waits(Clock::Time end, unsigned long long last) const {
        return isNext(end) && _queue.begin()->second.number <= last;
    }
    void deliverFirst(Lock &lock);
    bool isAcknowledged(unsigned long long last) const;

    Clock &_clock;
    const Levers _levers;
    const Observer _observer;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::map<zov_handle_t, Client> _clients;
    Queue _queue;
    std::map<zov_handle_t, Unacknowledged> _unacknowledged; ///< of every client that acknowledges
    size_t _heldBack = 0;                                   ///< deliveries of the queue
    unsigned long long _sent = 0;                           ///< deliveries since the beginning
    unsigned long long _delivering = 0;                     ///< the number of the one whose callback runs; 0: none
    unsigned long long _handed = 0;                         ///< the number of the last one whose callback was called
    zov_handle_t _deliveringTo = 0;                         ///< the client of that callback
    std::thread::id _deliverer;                             ///< and its thread
    bool _stopping = false;
    std::thread _thread;
};

} // namespace sim

#endif // SIM_CORE_NOTIFIER_H
