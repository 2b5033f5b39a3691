#include "sim/record/Replay.h"

#include <utility>

#include "sim/api/control.h"
#include "sim/record/RecordedScript.h"

namespace sim {

namespace {

class ReplayedSwitch final : public Replay {
public:
    explicit ReplayedSwitch(Recording recording)
        : _script(std::make_shared<RecordedScript>(std::move(recording))), _device(makeScripted(_script)) {
        const auto beginning = std::chrono::duration_cast<std::chrono::seconds>(_script->beginning());
        const std::chrono::seconds now(_device->uptime());
        if (now < beginning)
            _device->passTime(beginning - now);
    }

    Simulator &device() override { return *_device; }
    std::vector<std::string> reports() const override { return _script->reports(); }
    unsigned deviations() const override { return _script->deviations(); }
    bool isOver() const override { return _script->isOver(); }
    void onReport(std::function<void(const std::string &)> listener) override { _script->listen(std::move(listener)); }

private:
    const std::shared_ptr<RecordedScript> _script;
    const std::unique_ptr<Simulator> _device;
};

} // namespace

} // namespace sim

extern "C" sim::Replay *zovsim_replay(const char *recording, const char *name, int version) {
    if (version != sim::kInterfaceVersion)
        return nullptr;
    return new sim::ReplayedSwitch(sim::readRecording(recording ? recording : "", name ? name : ""));
}
