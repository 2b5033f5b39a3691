/*
 * A management client of the simulated switch, as tests play one: a connection and what can be done on it.
 *
 * Thread-safety: notifications come on the switch's thread; everything else is for one thread at a time. A
 * notification may come after the end of its client, which cannot take its registration back; inCallback must then
 * refer to nothing that has ended too.
 */
#ifndef TESTS_SIM_CLIENT_H
#define TESTS_SIM_CLIENT_H

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/zovlib.h"
#include "sim/Simulator.h"

namespace simtest {

/// Statuses that clients know by number.
enum : int32_t {
    kBadArgument = 1,
    kBadHandle = 2,
    kNoSuchHost = 4,
    kNoSuchKey = 5,
    kBadValue = 6,
    kReadOnly = 7,
    kNotReadable = 8,
    kBadKey = 9,
    kAdminRequired = 10,
    kAdminBusy = 11,
    kAdminNotHeld = 12,
    kEditRequired = 13,
    kEditOpen = 14,
    kNothingSaved = 15,
    kNotFound = 16,
    kBadObject = 17,
    kBadName = 18,
    kDuplicate = 19,
    kLinked = 20,
    kBadMember = 21,
    kBadEventCode = 22,
    kNoAnswer = 23,
    kEndOfList = 24,
    kLockRequired = 25,
    kLockBusy = 26,
    kLockNotHeld = 27,
    kLimitReached = 28,
    kEditSpoilt = 29,
    kNoBackup = 30,
    kNotSupported = 103,
};

/// Long enough for any switch to get something done; only a test that fails waits so long.
constexpr std::chrono::seconds kPatience{20};

inline SmlMessage messageOf(const std::string &key, const std::string &value = "") {
    SmlMessage message;
    std::memset(&message, 'x', sizeof message); // what nobody writes is not zero
    std::snprintf(message.key, sizeof message.key, "%s", key.c_str());
    std::snprintf(message.value, sizeof message.value, "%s", value.c_str());
    return message;
}

/// A read key: its status, and its value if that is 0.
struct Answer {
    int32_t status = 0;
    std::string value;
};

class Client {
public:
    Client() : connected(zov_IPConnect("localhost", "test", "", &handle)) {}

    Answer get(const std::string &key) const {
        char *value = nullptr;
        uint32_t size = 0;
        Answer answer;
        answer.status = zov_smlGet(handle, key.c_str(), &value, &size);
        if (answer.status == 0)
            answer.value = value;
        zov_libFreeMemory(value);
        return answer;
    }

    int32_t set(const std::string &key, const std::string &value = "") const {
        std::vector<char> scratch(value.c_str(), value.c_str() + value.size() + 1);
        return zov_smlSet(handle, key.c_str(), scratch.data());
    }

    std::vector<SmlMessage> getBatch(std::initializer_list<const char *> keys) const {
        std::vector<SmlMessage> messages;
        for (const char *key : keys)
            messages.push_back(messageOf(key));
        batchResult = zov_smlGetBatch(handle, messages.data(), static_cast<int32_t>(messages.size()));
        return messages;
    }

    /// Registers for codes; the result of the call. The entries' results are in `registration`.
    int32_t registerFor(std::initializer_list<int32_t> codes) {
        registration.clear();
        for (const int32_t code : codes)
            registration.push_back({code, -1});
        return zov_enRegisterForEventList(handle, take, &_inbox, registration.data(),
                                          static_cast<int32_t>(registration.size()));
    }

    /// The notifications that have come; waits until there are `count`.
    std::vector<zov_event_s> events(size_t count) const {
        std::unique_lock<std::mutex> lock(_inbox.mutex);
        _inbox.changed.wait_for(lock, kPatience, [&] { return _inbox.events.size() >= count; });
        return _inbox.events;
    }

    /// The codes of the notifications that have come once the switch is quiet.
    std::vector<int32_t> codes(sim::Simulator &device) const {
        std::vector<int32_t> numbers;
        if (!device.waitUntilQuiet(kPatience))
            return {-1};
        for (const zov_event_s &event : events(0))
            numbers.push_back(event.code);
        return numbers;
    }

    /// Is run inside every callback, after the event was noted. To be given before the registration.
    void inCallback(std::function<void(void *handle, zov_event_s *event)> action) { _inbox.action = std::move(action); }

    zov_handle_t handle = 0;
    int32_t connected;
    mutable int32_t batchResult = 0;
    std::vector<zov_eventreg_s> registration;

private:
    struct Inbox {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<zov_event_s> events;
        std::function<void(void *handle, zov_event_s *event)> action;
    };

    static void take(void *handle, zov_event_s *event, void *context) {
        auto &inbox = *static_cast<Inbox *>(context);
        {
            const std::lock_guard<std::mutex> lock(inbox.mutex);
            inbox.events.push_back(*event);
            inbox.changed.notify_all();
        }
        if (inbox.action)
            inbox.action(handle, event);
    }

    /// Kept to the end of the process, for notifications on their way.
    static Inbox &newInbox() {
        static auto &all = *new std::deque<Inbox>;
        return all.emplace_back();
    }

    Inbox &_inbox = newInbox();
};

/// Notifications as "CODE TEXT".
inline std::vector<std::string> shown(const std::vector<zov_event_s> &events) {
    std::vector<std::string> texts;
    texts.reserve(events.size());
    for (const zov_event_s &event : events)
        texts.push_back(std::to_string(event.code) + " " + event.text);
    return texts;
}

/// Everything recorded, one line per record.
inline std::vector<std::string> linesOf(const sim::Simulator &device) {
    std::vector<std::string> lines;
    for (const sim::Record &record : device.records())
        lines.push_back(record.line());
    return lines;
}

} // namespace simtest

#endif // TESTS_SIM_CLIENT_H
