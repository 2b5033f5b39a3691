#include "sim/Play.h"

#include <stdexcept>
#include <utility>

#include "sim/scenario/Shipped.h"
#include "sim/verbs/perform.h"

namespace sim {

namespace {

class PlayedScenario final : public Play {
public:
    explicit PlayedScenario(const Scenario &scenario)
        : _name(scenario.fileName), _device(makeSwitch(scenario)),
          _player(*_device, scenario,
                  [](Simulator &device, const std::string &text) { return perform(device, text); }) {}

    Simulator &device() override { return *_device; }
    std::string name() const override { return _name; }
    std::optional<std::chrono::milliseconds> next() const override { return _player.next(); }
    std::string nextName() const override {
        const ScenarioStep *step = _player.nextStep();
        return step ? step->name : "";
    }
    std::vector<Played> play() override { return _player.playStep(); }

private:
    const std::string _name;
    const std::unique_ptr<Simulator> _device;
    Player _player;
};

std::string textOfShipped(const std::string &name) {
    if (std::optional<std::string> text = shippedScenario(name))
        return *std::move(text);
    std::string names;
    for (const std::string &known : shippedScenarios())
        names += (names.empty() ? "" : ", ") + known;
    throw std::invalid_argument("there is no scenario '" + name + "'; there are " + names);
}

} // namespace

} // namespace sim

extern "C" sim::Play *zovsim_play(const char *scenario, const char *fileName, int version) {
    if (version != sim::kInterfaceVersion)
        return nullptr;
    const std::string text = fileName ? scenario : sim::textOfShipped(scenario);
    try {
        return new sim::PlayedScenario(sim::readScenario(text, fileName ? fileName : scenario, sim::checkCommands));
    } catch (const sim::ScenarioError &error) {
        throw std::invalid_argument(error.what());
    }
}
