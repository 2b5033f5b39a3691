#include <array>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "datacache/DataCache.h"
#include "datacache/notify/codes.h"
#include "datacache/notify/notification.h"
#include "foundation/cim_log.h"

namespace {

constexpr const char *kUnknownSensor = "unknown";

/// The sensor whose name is text[from, to); a span that makes no sense names none.
std::string sensorBetween(const std::string &text, std::size_t from, std::size_t to) {
    if (from > to || to > text.size())
        return kUnknownSensor;
    return text.substr(from, to - from) + " sensor";
}

/// The sensor of "...)-----NAME------<phrase>": five characters before its name and six after it do not count.
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

/// The port names in a text of name-server entries: the third fields of entries that ";" separates. The commas before
/// a third field are looked for without regard to ";".
std::vector<std::string> portNamesIn(const std::string &text) {
    std::vector<std::string> names;
    for (std::size_t entry = 0; entry != std::string::npos;) {
        const std::size_t first = text.find(',', entry);
        const std::size_t second = first == std::string::npos ? first : text.find(',', first + 1);
        if (second == std::string::npos)
            break;
        const std::size_t end = text.find(';', second + 1);
        names.push_back(text.substr(second + 1, end == std::string::npos ? end : end - second - 1));
        entry = end == std::string::npos ? end : end + 1;
    }
    return names;
}

} // namespace

/// What each notification code leads to.
struct DataCache::Dispatch {
    using Action = void (*)(DataCache &, const zov_event_s &);
    struct Row {
        int32_t code;
        Action action;
    };

    /// The third source number is the port's. One that the switch does not have, also a negative one, changes nothing.
    static void refreshPort(DataCache &cache, const zov_event_s &event) {
        const int32_t port = event.source.number[2];
        if (port < 0 || port >= cache.getMaxRootPorts())
            return;
        cache.localPortRefreshSet(static_cast<int>(port));
        cache.updatePorts();
    }

    /// A blade brings and takes its ports.
    static void refreshBlades(DataCache &cache, const zov_event_s & /*event*/) {
        cache.localPortRefreshSet();
        cache.updateBlades();
        cache.updatePorts();
    }

    static void refreshFabric(DataCache &cache, const zov_event_s & /*event*/) { cache.updateFabric(); }

    static void refreshZoning(DataCache &cache, const zov_event_s & /*event*/) { cache.updateZoning(); }

    static void refreshAccounts(DataCache &cache, const zov_event_s & /*event*/) { cache.updateAccounts(); }

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

    static void insertMedia(DataCache &cache, const zov_event_s &event);
    static void removeMedia(DataCache &cache, const zov_event_s &event);

    /// The devices that logged in to the fabric's name server, or out of it.
    template <class PortEvent> static void tellNameServerEntries(DataCache &cache, const zov_event_s &event) {
        constexpr unsigned char nameServer = 1;
        for (const std::string &port : portNamesIn(notification::textOf(event)))
            cache._deliver(PortEvent(cache.getFabric(1)->getFabricWorldWideName(), port, nameServer));
    }

    static const std::array<Row, 24> rows;

private:
    static void setTransceiver(DataCache &cache, long long port, Transceiver transceiver) {
        if (port >= 0 && port < static_cast<long long>(kPortSlots))
            cache._transceivers[static_cast<std::size_t>(port)] = std::move(transceiver);
    }

    static void tellAlarm(DataCache &cache, const char *category, const char *kind, const std::string &detail) {
        cache._deliver(DCEventEnvEvent(cache.getRootSwitchWorldWideName(), category, kind, detail));
    }
};

// clang-format off
const std::array<DataCache::Dispatch::Row, 24> DataCache::Dispatch::rows{{
    {1, refreshFabric},
    {3, refreshZoning},
    {7, refreshFabric},
    {14, refreshPort},
    {15, refreshPort},
    {28, refreshBlades},
    {29, refreshBlades},
    {32, refreshSwitch},
    {33, refreshChassis},
    {39, refreshBlades},
    {40, tellOverheat},
    {50, refreshAccounts},
    {52, refreshFeatures},
    {57, refreshFeatures},
    {72, tellPasswordChange},
    {73, tellLoginFailure},
    {74, tellHighVoltage},
    {75, tellLowVoltage},
    {76, insertMedia},
    {77, removeMedia},
    {78, tellCimChange},
    {79, tellNameServerEntries<DCEventPortAdd>},
    {80, tellNameServerEntries<DCEventPortRemove>},
    {82, refreshFaults},
}};
// clang-format on

void DataCache::Dispatch::insertMedia(DataCache &cache, const zov_event_s &event) {
    constexpr int wanted = 8;
    const std::string text = notification::textOf(event);
    std::array<long long, 3> unused{};
    long long port = 0;
    long long present = 0;
    long long code = 0;
    std::array<char, 17> serial{};
    long long format = 0;
    // A serial number is filled up to 16 characters: of a shorter one the rest of the text would be part.
    // NOLINTNEXTLINE(cert-err34-c): so wide a number keeps out of range what is; the count of items decides
    const int items = std::sscanf(text.c_str(), "%lld;%lld;%lld;%lld;%lld;%lld;%16s;%lld", &unused[0], &unused[1],
                                  &unused[2], &port, &present, &code, serial.data(), &format);
    if (items < wanted) {
        cim_log(CIM_LOG_INFO, "DCACHE: ZOV_EVENT_PORT_MEDIA_INSTERTED event only contains %d items, string = '%s'\n",
                items, text.c_str());
        return;
    }
    Transceiver transceiver;
    if (present != 0) {
        transceiver.ddm = true;
        // One character, the code itself. The OUI comes with the next refresh of the port.
        transceiver.vendorOUI = std::string(1, static_cast<char>(code));
        transceiver.vendorSN = cache._sanitizedMediaVendorSN(serial.data());
        transceiver.format = static_cast<unsigned char>(format);
    }
    setTransceiver(cache, port, std::move(transceiver));
}

void DataCache::Dispatch::removeMedia(DataCache &cache, const zov_event_s &event) {
    constexpr int wanted = 4;
    const std::string text = notification::textOf(event);
    std::array<long long, 3> unused{};
    long long port = 0;
    // NOLINTNEXTLINE(cert-err34-c): as above
    const int items = std::sscanf(text.c_str(), "%lld;%lld;%lld;%lld", &unused[0], &unused[1], &unused[2], &port);
    if (items < wanted) {
        cim_log(CIM_LOG_INFO, "DCACHE: ZOV_EVENT_PORT_MEDIA_REMOVED event only contains %d items, string = '%s'\n",
                items, text.c_str());
        return;
    }
    setTransceiver(cache, port, Transceiver());
}

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
