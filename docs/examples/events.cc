// Events become indications: copied on the EVAL thread, delivered by a thread of the provider's own.
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"

namespace {

// [indication]
struct Indication {
    std::string element; // what it is about: the name of a switch or port
    std::string text;
};

// An event dies when the callback returns, so everything that is needed later is copied.
std::optional<Indication> indicationOf(const DataCacheEvent &event) {
    if (const auto *port = dynamic_cast<const DCEventPortStatusChange *>(&event)) {
        return Indication{port->portWwn.tostring(), "operational status " + std::to_string(port->prevStatus.front()) +
                                                        " -> " + std::to_string(port->newStatus.front())};
    }
    if (const auto *supply = dynamic_cast<const DCEventPowerSupplyFail *>(&event)) {
        return Indication{supply->switchWwn.tostring(), "power supply " + std::to_string(supply->number) +
                                                            " failed, good ones: " + std::to_string(supply->count)};
    }
    if (const auto *alarm = dynamic_cast<const DCEventEnvEvent *>(&event))
        return Indication{alarm->switchWwn.tostring(), alarm->kind + ", " + alarm->detail};
    if (const auto *entry = dynamic_cast<const DCEventPortAdd *>(&event)) {
        const char *where = entry->origin == 1 ? "in the name server" : "on the switch";
        return Indication{entry->portWwn.tostring(), std::string("new ") + where};
    }
    return std::nullopt; // the others are told in the same way
}
// [/indication]

// [queue]
// What the callback leaves for the provider's own thread. Of a client that is too slow the oldest are dropped: the
// cache must not wait.
class IndicationQueue {
public:
    void put(Indication indication) {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_waiting.size() == kMost)
            _waiting.pop_front();
        _waiting.push_back(std::move(indication));
        _changed.notify_one();
    }

    Indication take() {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [this] { return !_waiting.empty(); });
        Indication first = std::move(_waiting.front());
        _waiting.pop_front();
        return first;
    }

private:
    static constexpr std::size_t kMost = 1000;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Indication> _waiting;
};

// Never destroyed: the EVAL thread is still there when the process exits.
IndicationQueue &queue() {
    static auto *theOne = new IndicationQueue;
    return *theOne;
}

void onEvent(DataCacheEvent *event) {
    if (std::optional<Indication> indication = indicationOf(*event))
        queue().put(std::move(*indication));
}
// [/queue]

void happen() {
    sim::Simulator &theSwitch = example::theSwitch();
    theSwitch.set("Oper.Chassis.0.PowerSupply.1", "Bad");
    example::waitUntilSettled();
    theSwitch.set("Oper.UserPort.0.3.OperState", "Offline");
    example::waitUntilSettled();
    theSwitch.logIn({"100000C0DD00A1B2", 17, "20000000C92B4401", "10000000C92B4401"});
    theSwitch.deliver(ZOV_EVENT_OVERHEAT_ALARM, {0, 0, 0}, "Temp overheat, CPU0 is at 85 degrees");
    example::waitUntilSettled();
}

void tellWhatHappens() {
    DataCache::init();
    CacheHold()->start(onEvent);
    example::waitUntilSettled();
    happen();

    // [worker]
    // On a thread of the provider's own, which may wait for the network, and may ask the cache.
    for (int i = 0; i < 4; ++i) {
        const Indication indication = queue().take();
        std::printf("%s: %s\n", indication.element.c_str(), indication.text.c_str());
    }
    // [/worker]
}

constexpr const char *kOutput = R"(
100000C0DD00A1B2: power supply 2 failed, good ones: 1
200300C0DD00A1B2: operational status 2 -> 10
10000000C92B4401: new in the name server
100000C0DD00A1B2: overtemp, CPU0 sensor
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, tellWhatHappens);
}
