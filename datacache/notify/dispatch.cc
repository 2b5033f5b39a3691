#include <array>
#include <string>

#include "datacache/DataCache.h"
#include "datacache/notify/codes.h"
#include "datacache/notify/notification.h"

namespace {

constexpr const char *kUnknownSensor = "unknown";

/// The sensor whose name is text[from, to); a span that makes no sense names none.
std::string sensorBetween(const std::string &text, std::size_t from, std::size_t to) {
    if (from > to || to > text.size())
        return kUnknownSensor;
    return text.substr(from, to - from) + " sensor";
}

/// The sensor of "... ) ..... NAME ..... <phrase>": a fixed number of characters stands on either side of its name.
std::string sensorBefore(const std::string &text, const char *phrase) {
    constexpr std::size_t around = 6;
    const std::size_t end = text.find(phrase);
    const std::size_t bracket = text.rfind(')');
    if (end == std::string::npos || bracket == std::string::npos || end < around)
        return kUnknownSensor;
    return sensorBetween(text, bracket + around, end - around);
}

/// The sensor of an over-temperature text.
std::string hotSensor(const std::string &text) {
    const std::string overheat = "Temp overheat, ";
    const std::size_t at = text.find(overheat);
    if (at == std::string::npos)
        return sensorBefore(text, " temp sensor reading is out of range, it is too high");
    const std::size_t name = at + overheat.size();
    return sensorBetween(text, name, text.find(' ', name)); // without a blank the span ends nowhere
}

/// The sensor of a voltage text, which ends in one of two ways.
std::string voltageSensor(const std::string &text, const char *outOfRange) {
    const std::size_t shows = text.find(" voltage sensor shows ");
    const std::size_t bracket = text.rfind('[');
    if (shows != std::string::npos && bracket != std::string::npos)
        return sensorBetween(text, bracket + 1, shows);
    return sensorBefore(text, outOfRange);
}

} // namespace

/// What each notification code leads to.
struct DataCache::Dispatch {
    using Action = void (*)(DataCache &, const zov_event_s &);
    struct Row {
        int32_t code;
        Action action;
    };

    static void refreshSwitch(DataCache &cache, const zov_event_s & /*event*/) { cache.updateSwitch(); }

    static void refreshChassis(DataCache &cache, const zov_event_s & /*event*/) { cache.updateChassis(); }

    /// A feature or service may change what the switch, its chassis and any port can do.
    static void refreshFeatures(DataCache &cache, const zov_event_s & /*event*/) {
        cache.localPortRefreshSet();
        cache.updateChassis();
        cache.updateSwitch();
        cache.updatePorts();
    }

    static void refreshFaults(DataCache &cache, const zov_event_s & /*event*/) {
        cache.updateSwitch();
        cache.updateBlades();
    }

    static void tellPasswordChange(DataCache &cache, const zov_event_s &event) {
        cache._deliver(DCEventUserPasswdChg(cache.getRootSwitchWorldWideName(), notification::textOf(event)));
    }

    static void tellLoginFailure(DataCache &cache, const zov_event_s &event) {
        cache._deliver(DCEventUserLoginFailure(cache.getRootSwitchWorldWideName(), notification::textOf(event)));
    }

    static void tellOverheat(DataCache &cache, const zov_event_s &event) {
        tellAlarm(cache, "temperature", "overtemp", hotSensor(notification::textOf(event)));
    }

    static void tellHighVoltage(DataCache &cache, const zov_event_s &event) {
        tellAlarm(cache, "power supply", "voltage high",
                  voltageSensor(notification::textOf(event), " voltage supply is out of range, it is too high"));
    }

    static void tellLowVoltage(DataCache &cache, const zov_event_s &event) {
        tellAlarm(cache, "power supply", "voltage low",
                  voltageSensor(notification::textOf(event), " voltage supply is out of range, it is too low"));
    }

    static void tellCimChange(DataCache &cache, const zov_event_s & /*event*/) { cache._deliver(DCEventCIMChange()); }

    static const std::array<Row, 11> rows;

private:
    static void tellAlarm(DataCache &cache, const char *category, const char *kind, const std::string &detail) {
        cache._deliver(DCEventEnvEvent(cache.getRootSwitchWorldWideName(), category, kind, detail));
    }
};

const std::array<DataCache::Dispatch::Row, 11> DataCache::Dispatch::rows{{
    {32, refreshSwitch},
    {33, refreshChassis},
    {40, tellOverheat},
    {52, refreshFeatures},
    {57, refreshFeatures},
    {72, tellPasswordChange},
    {73, tellLoginFailure},
    {74, tellHighVoltage},
    {75, tellLowVoltage},
    {78, tellCimChange},
    {82, refreshFaults},
}};

void DataCache::_zovlibNotificationCB(zov_event_s *record) {
    if (record == nullptr)
        return;
    notification::log("dequeueing", " ", *record);
    for (const Dispatch::Row &row : Dispatch::rows) {
        if (row.code == record->code)
            row.action(*this, *record);
    }
    // The pass that runs serves what was asked for. The further pass this starts tries again what fails in it.
    if (workToDo())
        _wakeEvalThread();
}
