#include "tests/support/Events.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace support {
namespace {

/// Never destroyed: the EVAL thread may still deliver while the process exits.
struct Recorder {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> events;
    std::function<void(DataCacheEvent &)> action;
};

Recorder &recorder() {
    static auto *theOne = new Recorder;
    return *theOne;
}

/// Words for an event of class Event, nothing for one of another class.
template <class Event, class Words> bool words(const DataCacheEvent &event, std::string &text, Words fields) {
    const auto *known = dynamic_cast<const Event *>(&event);
    if (known == nullptr)
        return false;
    text = fields(*known);
    return true;
}

} // namespace

std::string describe(const DataCacheEvent &event) {
    std::string text;
    const bool known =
        words<DCEventSwitchStatusChange>(event, text,
                                         [](const auto &e) {
                                             return fmt::format("SwitchStatusChange switch={} principal={} {}->{}",
                                                                e.switchWwn.tostring(), e.principalWwn.tostring(),
                                                                e.prevStatus, e.newStatus);
                                         }) ||
        words<DCEventPowerSupplyAdd>(event, text,
                                     [](const auto &e) {
                                         return fmt::format("PowerSupplyAdd switch={} number={}",
                                                            e.switchWwn.tostring(), e.number);
                                     }) ||
        words<DCEventPowerSupplyRemove>(event, text,
                                        [](const auto &e) {
                                            return fmt::format("PowerSupplyRemove switch={} number={} count={}",
                                                               e.switchWwn.tostring(), e.number, e.count);
                                        }) ||
        words<DCEventPowerSupplyFail>(event, text,
                                      [](const auto &e) {
                                          return fmt::format("PowerSupplyFail switch={} number={} count={}",
                                                             e.switchWwn.tostring(), e.number, e.count);
                                      }) ||
        words<DCEventUserPasswdChg>(event, text,
                                    [](const auto &e) {
                                        return fmt::format("UserPasswdChg switch={} user={}", e.switchWwn.tostring(),
                                                           e.user);
                                    }) ||
        words<DCEventUserLoginFailure>(event, text,
                                       [](const auto &e) {
                                           return fmt::format("UserLoginFailure switch={} user={}",
                                                              e.switchWwn.tostring(), e.user);
                                       }) ||
        words<DCEventEnvEvent>(event, text,
                               [](const auto &e) {
                                   return fmt::format("EnvEvent switch={} category={} kind={} detail={}",
                                                      e.switchWwn.tostring(), e.category, e.kind, e.detail);
                               }) ||
        words<DCEventCIMChange>(event, text, [](const auto &) { return std::string("CIMChange"); }) ||
        words<DCEventDataCacheUpdateComplete>(event, text,
                                              [](const auto &) { return std::string("DataCacheUpdateComplete"); });
    return fmt::format("{}: {}", event.type, known ? text : "an event of another class");
}

void recordEvent(DataCacheEvent *event) {
    std::function<void(DataCacheEvent &)> action;
    {
        const std::lock_guard<std::mutex> lock(recorder().mutex);
        recorder().events.push_back(describe(*event));
        action = recorder().action;
        recorder().changed.notify_all();
    }
    if (action)
        action(*event);
}

std::vector<std::string> takeEvents() {
    const std::lock_guard<std::mutex> lock(recorder().mutex);
    return std::exchange(recorder().events, {});
}

void onEvent(std::function<void(DataCacheEvent &)> action) {
    const std::lock_guard<std::mutex> lock(recorder().mutex);
    recorder().action = std::move(action);
}

bool waitForEvents(std::size_t count) {
    std::unique_lock<std::mutex> lock(recorder().mutex);
    return recorder().changed.wait_for(lock, std::chrono::seconds(20),
                                       [count] { return recorder().events.size() >= count; });
}

} // namespace support
