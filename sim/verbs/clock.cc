// Verbs for the clock of the switch.

#include <array>
#include <charconv>
#include <iterator>
#include <stdexcept>

#include "sim/levers/Duration.h"
#include "sim/levers/Nearest.h"
#include "sim/verbs/Verb.h"

namespace sim::verbs {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

struct PaceWord {
    const char *word;
    Pace pace;
};

constexpr PaceWord kPaceWords[] = {
    {"running", Pace::running},
    {"paused", Pace::paused},
    {"byhand", Pace::byHand},
    {"driven", Pace::driven},
};

std::string textOf(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed).ptr;
    return {digits.data(), end};
}

/// "3600 s", "3600.250 s". Seconds can be told for longer than milliseconds.
std::string uptimeText(const Simulator &device) {
    const milliseconds now = device.clock();
    if (now.count() % 1000 == 0)
        return std::to_string(device.uptime()) + " s";
    return std::to_string(now.count() / 1000) + "." + std::to_string(1000 + now.count() % 1000).substr(1) + " s";
}

std::string tellClock(Simulator &device, const Given &) {
    std::string text = uptimeText(device);
    for (const PaceWord &known : kPaceWords)
        if (device.pace() == known.pace)
            text += std::string(", ") + known.word;
    return device.pace() == Pace::running ? text + " speed=" + textOf(device.speed()) : text;
}

/// A speed that is not said stays what it is.
void setPace(Simulator &device, Pace pace, const Given &given) {
    device.setPace(pace, given.has("speed") ? speedIn(given.text("speed")).value() : device.speed());
}

std::string choosePace(Simulator &device, const Given &given) {
    for (const PaceWord &known : kPaceWords)
        if (given.choice() == known.word)
            setPace(device, known.pace, given);
    return "";
}

std::string pause(Simulator &device, const Given &given) {
    setPace(device, Pace::paused, given);
    return "";
}

std::string run(Simulator &device, const Given &given) {
    setPace(device, Pace::running, given);
    return "";
}

/// Only a clock that runs has a speed.
void checkPace(const Given &given) {
    if (given.has("speed") && given.choice() != "running")
        throw std::invalid_argument("speed= goes with 'running' only");
}

/// The unit may be a word of its own.
milliseconds timeOf(const Given &given) {
    const std::string text = given.text("TIME") + given.choice();
    const std::optional<milliseconds> time = parseDuration(text);
    if (!time)
        throw std::invalid_argument("'" + text +
                                    "' is no time; allowed: a whole number and ms, s, min, h or d, "
                                    "such as 90, 5min, 24 h");
    return *time;
}

void checkTime(const Given &given) {
    timeOf(given);
}

std::string passTime(Simulator &device, const Given &given) {
    const milliseconds time = timeOf(given);
    const auto whole = std::chrono::duration_cast<seconds>(time);
    device.passTime(whole, time - whole);
    return "";
}

constexpr Verb kVerbs[] = {
    {"clock pace running|paused|byhand|driven [speed=SPEED]",
     "Says how the clock goes: with real time or so many times as fast (running), only with 'clock pass' (paused), "
     "with "
     "that and slow answers (byhand), or as fast as possible, by the hand of a program (driven).",
     "clock pace running speed=10", Tells::nothing, choosePace, checkPace},
    {"clock pause", "The same as 'clock pace paused'.", "clock pause", Tells::nothing, pause},
    {"clock run [speed=SPEED]", "The same as 'clock pace running'.", "clock run speed=0.5", Tells::nothing, run},
    {"clock pass TIME [ms|s|min|h|d]", "Lets time pass on the clock of the switch.", "clock pass 90 s", Tells::nothing,
     passTime, checkTime},
    {"clock step TIME [ms|s|min|h|d]", "The same, said of a clock that is paused.", "clock step 250ms", Tells::nothing,
     passTime, checkTime},
    {"clock", "Tells for how long the switch has been on, and how its clock goes.", "clock", Tells::nothing, tellClock},
};

} // namespace

VerbGroup clockVerbs() {
    return {"The clock", kVerbs, std::size(kVerbs)};
}

} // namespace sim::verbs
