#include "sim/scenario/Player.h"

#include <exception>

namespace sim {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// "12 s", "0.500 s"
std::string textOf(milliseconds time) {
    constexpr int64_t second = 1000;
    const std::string fraction = std::to_string(second + time.count() % second).substr(1);
    return std::to_string(time.count() / second) + (time.count() % second == 0 ? "" : "." + fraction) + " s";
}

} // namespace

std::string Played::line() const {
    const std::string what = textOf(at) + ": " + command;
    return isRefused() ? where + ": " + what + ": " + error : what;
}

Player::Player(Simulator &device, const Scenario &scenario, Perform perform)
    : _device(device), _fileName(scenario.fileName), _steps(scenario.steps), _perform(std::move(perform)),
      _beginning(device.clock()) {
    for (size_t i = 0; i < _steps.size(); ++i)
        _ahead.emplace(Due(_steps[i].at, i), 0);
}

milliseconds Player::sinceBeginning() const {
    return _device.clock() - _beginning;
}

std::optional<milliseconds> Player::next() const {
    if (_ahead.empty())
        return std::nullopt;
    const milliseconds due = _ahead.begin()->first.first;
    return due < milliseconds::max() - _beginning ? _beginning + due : milliseconds::max();
}

const ScenarioStep *Player::nextStep() const {
    return _ahead.empty() ? nullptr : &_steps[_ahead.begin()->first.second];
}

bool Player::isDueBy(milliseconds time) const {
    return !_ahead.empty() && _ahead.begin()->first.first <= time;
}

std::vector<Played> Player::play() {
    const milliseconds now = sinceBeginning(); // a command may let time pass, and the next one comes with the next play
    std::vector<Played> played;
    while (isDueBy(now))
        playFirst(played);
    return played;
}

std::vector<Played> Player::playStep() {
    std::vector<Played> played;
    if (isDueBy(sinceBeginning()))
        playFirst(played);
    return played;
}

void Player::playFirst(std::vector<Played> &played) {
    const auto [due, before] = *_ahead.begin();
    _ahead.erase(_ahead.begin());
    const ScenarioStep &step = _steps[due.second];
    const bool comesAgain = step.every.count() > 0 && (step.repeat == 0 || before + 1 < step.repeat);
    if (comesAgain)
        _ahead.emplace(Due(due.first + step.every, due.second), before + 1);
    carryOut(due, played);
}

std::vector<Played> Player::playNext() {
    if (_ahead.empty())
        return {};
    const milliseconds left = _ahead.begin()->first.first - sinceBeginning();
    if (left.count() > 0) {
        const auto whole = std::chrono::duration_cast<seconds>(left);
        _device.passTime(whole, left - whole);
    }
    return play();
}

Played Player::playedAt(const Due &due, FilePosition place, const std::string &command) const {
    Played played;
    played.at = due.first;
    played.where = shownPosition(_fileName, place);
    played.command = command;
    return played;
}

void Player::carryOut(const Due &due, std::vector<Played> &played) {
    const ScenarioStep &step = _steps[due.second];
    if (!step.name.empty()) {
        _device.reachStep(step.name);
        played.push_back(playedAt(due, step.place, "step " + step.name));
    }
    for (const ScenarioCommand &command : step.commands) {
        Played one = playedAt(due, command.at, command.text);
        try {
            one.told = _perform(_device, command.text);
        } catch (const std::exception &error) {
            one.error = *error.what() ? error.what() : "refused";
        }
        played.push_back(std::move(one));
    }
}

} // namespace sim
