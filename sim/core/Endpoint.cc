#include "sim/core/Endpoint.h"

#include <string>
#include <utility>

#include "sim/core/Event.h"

namespace sim {

namespace {

Record recordOf(zov_handle_t client, const zov_event_s &event) {
    Record record;
    record.client = client;
    record.call = "notification";
    record.arguments = std::to_string(event.code) + " [" + std::to_string(event.source.number[0]) + ":" +
                       std::to_string(event.source.number[1]) + ":" + std::to_string(event.source.number[2]) + "] " +
                       quoted(textOf(event));
    return record;
}

} // namespace

Endpoint::Endpoint(Switch state, bool recording)
    : recorder(recording), notifier([this](zov_handle_t client, const zov_event_s &event) {
          if (recorder.isOn())
              recorder.add(recordOf(client, event));
      }),
      device(std::move(state), notifier) {}

void Endpoint::pause(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(_powerMutex);
    _powerChanged.wait_for(lock, time, [this] { return _off; });
}

void Endpoint::switchOff() {
    {
        const std::lock_guard<std::mutex> lock(_powerMutex);
        _off = true;
        _powerChanged.notify_all();
    }
    notifier.stop();
}

bool Endpoint::isOff() const {
    const std::lock_guard<std::mutex> lock(_powerMutex);
    return _off;
}

} // namespace sim
