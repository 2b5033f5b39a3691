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

/// Names a class of events to a generic function.
template <class TheEvent> struct Class { using Event = TheEvent; };

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
    const auto name = [](const Wwn &wwn) { return wwn.tostring(); };
    std::string text;
    const auto is = [&event, &text](auto known, const auto &fields) {
        return words<typename decltype(known)::Event>(event, text, fields);
    };
    static_cast<void>(
        is(Class<DCEventFabricAdd>(),
           [&](const auto &e) { return fmt::format("FabricAdd fabric={}", name(e.fabricWwn)); }) ||
        is(Class<DCEventFabricRemove>(),
           [&](const auto &e) { return fmt::format("FabricRemove fabric={}", name(e.fabricWwn)); }) ||
        is(Class<DCEventFabricChange>(),
           [&](const auto &e) { return fmt::format("FabricChange fabric={} added={}", name(e.fabricWwn), e.added); }) ||
        is(Class<DCEventSwitchAdd>(),
           [&](const auto &e) {
               return fmt::format("SwitchAdd fabric={} switch={}", name(e.fabricWwn), name(e.switchWwn));
           }) ||
        is(Class<DCEventSwitchRemove>(),
           [&](const auto &e) {
               return fmt::format("SwitchRemove fabric={} switch={}", name(e.fabricWwn), name(e.switchWwn));
           }) ||
        is(Class<DCEventSwitchStatusChange>(),
           [&](const auto &e) {
               return fmt::format("SwitchStatusChange switch={} principal={} {}->{}", name(e.switchWwn),
                                  name(e.principalWwn), e.prevStatus, e.newStatus);
           }) ||
        is(Class<DCEventBladeAdd>(),
           [&](const auto &e) { return fmt::format("BladeAdd switch={} slot={}", name(e.switchWwn), e.slot); }) ||
        is(Class<DCEventBladeRemove>(),
           [&](const auto &e) { return fmt::format("BladeRemove switch={} slot={}", name(e.switchWwn), e.slot); }) ||
        is(Class<DCEventPortAdd>(),
           [&](const auto &e) {
               return fmt::format("PortAdd owner={} port={} origin={}", name(e.ownerWwn), name(e.portWwn),
                                  int{e.origin});
           }) ||
        is(Class<DCEventPortRemove>(),
           [&](const auto &e) {
               return fmt::format("PortRemove owner={} port={} origin={}", name(e.ownerWwn), name(e.portWwn),
                                  int{e.origin});
           }) ||
        is(Class<DCEventPortStatusChange>(),
           [&](const auto &e) {
               return fmt::format("PortStatusChange switch={} port={} fabric={} {}->{}", name(e.switchWwn),
                                  name(e.portWwn), name(e.fabricWwn), e.prevStatus, e.newStatus);
           }) ||
        is(Class<DCEventFanAdd>(),
           [&](const auto &e) { return fmt::format("FanAdd switch={} slot={}", name(e.switchWwn), e.slot); }) ||
        is(Class<DCEventFanRemove>(),
           [&](const auto &e) {
               return fmt::format("FanRemove switch={} slot={} count={}", name(e.switchWwn), e.slot, e.count);
           }) ||
        is(Class<DCEventPowerSupplyAdd>(),
           [&](const auto &e) {
               return fmt::format("PowerSupplyAdd switch={} number={}", name(e.switchWwn), e.number);
           }) ||
        is(Class<DCEventPowerSupplyRemove>(),
           [&](const auto &e) {
               return fmt::format("PowerSupplyRemove switch={} number={} count={}", name(e.switchWwn), e.number,
                                  e.count);
           }) ||
        is(Class<DCEventPowerSupplyFail>(),
           [&](const auto &e) {
               return fmt::format("PowerSupplyFail switch={} number={} count={}", name(e.switchWwn), e.number, e.count);
           }) ||
        is(Class<DCEventCPUAdd>(),
           [&](const auto &e) { return fmt::format("CPUAdd switch={} slot={}", name(e.switchWwn), e.slot); }) ||
        is(Class<DCEventCPURemove>(),
           [&](const auto &e) { return fmt::format("CPURemove switch={} slot={}", name(e.switchWwn), e.slot); }) ||
        is(Class<DCEventUserAcctAdd>(),
           [&](const auto &e) { return fmt::format("UserAcctAdd switch={} name={}", name(e.switchWwn), e.name); }) ||
        is(Class<DCEventUserAcctRemove>(),
           [&](const auto &e) { return fmt::format("UserAcctRemove switch={} name={}", name(e.switchWwn), e.name); }) ||
        is(Class<DCEventActiveZonesetChange>(),
           [&](const auto &e) {
               return fmt::format("ActiveZonesetChange switch={} {}->{}", name(e.switchWwn), e.prevZoneset, e.zoneset);
           }) ||
        is(Class<DCEventZoningDBChange>(),
           [&](const auto &e) { return fmt::format("ZoningDBChange switch={}", name(e.switchWwn)); }) ||
        is(Class<DCEventUserPasswdChg>(),
           [&](const auto &e) { return fmt::format("UserPasswdChg switch={} user={}", name(e.switchWwn), e.user); }) ||
        is(Class<DCEventUserLoginFailure>(),
           [&](const auto &e) {
               return fmt::format("UserLoginFailure switch={} user={}", name(e.switchWwn), e.user);
           }) ||
        is(Class<DCEventEnvEvent>(),
           [&](const auto &e) {
               return fmt::format("EnvEvent switch={} category={} kind={} detail={}", name(e.switchWwn), e.category,
                                  e.kind, e.detail);
           }) ||
        is(Class<DCEventCIMChange>(), [](const auto &) { return std::string("CIMChange"); }) ||
        is(Class<DCEventDataCacheUpdateComplete>(),
           [](const auto &) { return std::string("DataCacheUpdateComplete"); }));
    return fmt::format("{}: {}", event.type, text.empty() ? "an event of another class" : text);
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
