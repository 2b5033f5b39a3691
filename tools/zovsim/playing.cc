#include "tools/zovsim/playing.h"

#include <fmt/format.h>
#include <utility>

#include "sim/verbs/perform.h"

namespace zovsim {
namespace {

/// So long nobody looks whether this is to end.
constexpr std::chrono::milliseconds kBreath{200};

/// The command, and below it what it told.
std::string linesOf(const sim::Played &played) {
    std::string text = played.line();
    for (size_t begin = 0, end = 0; end != std::string::npos && !played.told.empty(); begin = end + 1) {
        end = played.told.find('\n', begin);
        text += "\n    " + played.told.substr(begin, end == std::string::npos ? end : end - begin);
    }
    return text;
}

} // namespace

Playing::Playing(sim::Simulator &device, const sim::Scenario &scenario, Log &log, PlayingOptions options)
    : _device(device), _log(log), _options(std::move(options)), _player(device, scenario, sim::perform),
      _thread([this] { run(); }) {}

Playing::~Playing() {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _ending = true;
    }
    _changed.notify_all();
    _thread.join();
}

bool Playing::isOver() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _over;
}

bool Playing::isEnding() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _ending;
}

void Playing::run() {
    while (_player.next() && !isEnding()) {
        playOn();
        _options.nowAndAgain();
    }
    if (!isEnding() && _device.pace() == sim::Pace::driven)
        _device.setPace(sim::Pace::running);
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _over = !_player.next();
    }
    while (!isEnding()) {
        rest();
        _options.nowAndAgain();
    }
}

/// The next step, if its time comes within a breath.
void Playing::playOn() {
    if (!_device.waitForUptime(*_player.next(), kBreath))
        return;
    for (const sim::Played &played : _player.play()) {
        if (played.isRefused())
            _log.complain(played.line());
        else
            _log.tell(linesOf(played));
    }
    _options.afterSteps();
    if (_device.pace() == sim::Pace::driven)
        waitForClients();
}

/// Until all have taken everything again, nobody is waited for that was waited for in vain.
void Playing::waitForClients() {
    if (_hasLaggard) {
        _hasLaggard = !_device.waitUntilQuiet(std::chrono::milliseconds(0));
        return;
    }
    const auto end = std::chrono::steady_clock::now() + _options.patience;
    while (!_device.waitUntilQuiet(kBreath)) {
        if (isEnding())
            return;
        if (std::chrono::steady_clock::now() >= end) {
            _log.complain("zovsim: a client does not take its notifications; going on without it");
            _hasLaggard = true;
            return;
        }
    }
}

void Playing::rest() {
    std::unique_lock<std::mutex> lock(_mutex);
    _changed.wait_for(lock, kBreath, [this] { return _ending; });
}

} // namespace zovsim
