// The simulated switch in the hands of a test.
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "docs/examples/CacheHold.h"
#include "docs/examples/driver.h"
#include "sim/Play.h"
#include "sim/verbs/perform.h"

namespace {

void tell(DataCacheEvent *event) {
    if (const auto *change = dynamic_cast<const DCEventPortStatusChange *>(event))
        std::printf("%s is %hu\n", change->portWwn.tostring().c_str(), change->newStatus.front());
}

// [unheard]
// Two ports go down, and nobody is told: one notification is lost, the other is never sent.
void goDownUnheard(sim::Simulator &device) {
    sim::Fault lost;
    lost.call = sim::kNotificationCall;
    lost.key = std::to_string(ZOV_EVENT_PORT_ATTR_CHANGE);
    lost.copies = 0;
    device.addFault(lost);
    device.set("Oper.UserPort.0.3.OperState", "Offline");
    sim::perform(device, "port 5 offline silently"); // whatever can be said to a switch can be said here
}
// [/unheard]

// [twice]
void heard(void *, zov_event_s *event, void *handle) {
    const std::string key = "Oper.UserPort.0." + std::to_string(event->source.number[2]) + ".OperState";
    char *value = nullptr;
    uint32_t size = 0;
    if (zov_smlGet(*static_cast<zov_handle_t *>(handle), key.c_str(), &value, &size) == 0)
        zov_libFreeMemory(value);
}

/// Plays a scenario for a client that looks at each port it hears of. A driven clock takes no time: the minutes of the
/// scenario pass at once, everything happens on this thread, and each time the same.
std::string playedFor(const char *scenario) {
    const std::unique_ptr<sim::Play> play = sim::playShipped(scenario);
    sim::Simulator &device = play->device();
    device.setPace(sim::Pace::driven);
    zov_handle_t handle = 0;
    zov_IPConnect("localhost", "mine", "", &handle);
    zov_eventreg_s code = {ZOV_EVENT_PORT_ATTR_CHANGE, 0};
    zov_enRegisterForEventList(handle, heard, &handle, &code, 1);
    while (const auto due = play->next()) {
        device.waitForUptime(*due, std::chrono::seconds(1));
        play->play();
        device.waitUntilQuiet(); // here the client hears of it
    }
    std::string log;
    for (sim::Record record : device.records()) {
        record.client = 0; // connections are numbered on in a process
        log += record.line() + '\n';
    }
    return log;
}
// [/twice]

void show() {
    DataCache::init();
    CacheHold()->start(tell);
    example::waitUntilSettled();
    goDownUnheard(example::theSwitch());
    example::waitUntilSettled();
    std::printf("nothing was heard\n");
    {
        const CacheHold cache;
        cache->localPortRefreshSet();
        cache->updateAll();
        cache->evaluateCaches();
    }
    const std::string once = playedFor("flapping-port");
    std::printf("played twice: %s\n", once == playedFor("flapping-port") ? "the same" : "not the same");
}

constexpr const char *kOutput = R"(
nothing was heard
200300C0DD00A1B2 is 10
200500C0DD00A1B2 is 10
played twice: the same
)";

} // namespace

int main() {
    return example::run("fixed-24", kOutput, show);
}
