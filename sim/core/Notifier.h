/*
 * Notifications: who registered for what, and the thread that delivers them.
 *
 * A notification goes to the clients that are registered at the moment it is sent, one client after
 * another, in the order sent. Every callback gets a copy of the event of its own and runs without any lock
 * held, so it may call whatever it likes; a client that is slow to take one delays only what comes after it.
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
#include <thread>
#include <vector>

#include "platform/zovlib.h"

namespace sim {

/// Notifications have the codes 0 to 255.
constexpr int32_t kEventCodes = 256;

using EventCodes = std::bitset<kEventCodes>;

class Notifier {
public:
    /// Told of every notification just before its callback is called.
    using Observer = std::function<void(zov_handle_t client, const zov_event_s &event)>;

    explicit Notifier(Observer observer);
    Notifier(const Notifier &) = delete;
    Notifier &operator=(const Notifier &) = delete;
    ~Notifier();

    /// A client has one registration: a new one takes the place of the former.
    void registerClient(zov_handle_t client, zov_eventcallback_t callback, void *context, const EventCodes &codes);

    /// To every client registered for the event's code.
    void send(const zov_event_s &event);
    /// To every client that registered, whatever for.
    void sendToAll(const zov_event_s &event);

    /// Waits until everything sent so far was taken; false when that took longer than `limit`.
    bool waitUntilQuiet(std::chrono::milliseconds limit);

    /// Forgets what was not delivered yet. Nothing is delivered any more; a callback may still be running.
    void close();
    /// The same, and ends the thread.
    void stop();

private:
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
    };

    void enqueue(const zov_event_s &event, const std::function<bool(const Client &)> &wants);
    void run();
    void hand(const Recipient &recipient, zov_event_s event) const;

    const Observer _observer;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::map<zov_handle_t, Client> _clients;
    std::deque<Delivery> _queue;
    unsigned long long _sent = 0;  ///< deliveries queued since the beginning
    unsigned long long _taken = 0; ///< of these, the ones whose callbacks have returned
    bool _stopping = false;
    std::thread _thread;
};

} // namespace sim

#endif // SIM_CORE_NOTIFIER_H
