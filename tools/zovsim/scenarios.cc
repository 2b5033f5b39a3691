#include "tools/zovsim/scenarios.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fmt/format.h>
#include <system_error>

#include "sim/scenario/Player.h"
#include "sim/scenario/Shipped.h"
#include "sim/verbs/perform.h"
#include "tools/dcache/failure.h"
#include "tools/zovsim/version.h"

namespace zovsim {
namespace {

using dcache::Failure;

struct Close {
    void operator()(std::FILE *file) const {
        if (file != stdin)
            static_cast<void>(std::fclose(file));
    }
};

std::string shownName(const std::string &file) {
    return file == "-" ? "standard input" : file;
}

[[noreturn]] void cannotRead(const std::string &file, const std::string &why) {
    throw Failure(fmt::format("cannot read {}: {}", shownName(file), why));
}

bool isFileName(const std::string &name) {
    const std::string ending = ".toml";
    const bool hasEnding =
        name.size() > ending.size() && name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
    return name == "-" || name.find('/') != std::string::npos || hasEnding;
}

bool isThere(const std::string &file) {
    const std::unique_ptr<std::FILE, Close> opened(std::fopen(file.c_str(), "re"));
    return opened != nullptr;
}

[[noreturn]] void noSuchScenario(const std::string &name) {
    std::string names;
    for (const std::string &shipped : sim::shippedScenarios())
        names += (names.empty() ? "" : ", ") + shipped;
    throw Failure(fmt::format("there is no scenario '{}'; shipped are: {}", name, names));
}

sim::Scenario readScenario(const std::string &text, const std::string &fileName) {
    return sim::readScenario(text, fileName, sim::checkCommands);
}

/// The first sentence of the comment that a scenario begins with.
std::string aboutScenario(const std::string &text) {
    const std::string line = text.substr(0, text.find('\n'));
    const size_t begin = line.find_first_not_of("# ");
    if (line.rfind('#', 0) != 0 || begin == std::string::npos)
        return "";
    const size_t end = line.find_first_of(".:", begin);
    return line.substr(begin, end == std::string::npos ? end : end - begin);
}

} // namespace

std::string readText(const std::string &file, size_t largest) {
    const std::unique_ptr<std::FILE, Close> opened(file == "-" ? stdin : std::fopen(file.c_str(), "re"));
    if (!opened)
        cannotRead(file, std::generic_category().message(errno));
    std::string text;
    std::array<char, 65536> buffer{};
    for (;;) {
        const size_t count = std::fread(buffer.data(), 1, buffer.size(), opened.get());
        text.append(buffer.data(), count);
        if (text.size() > largest)
            cannotRead(file, fmt::format("it is larger than {} MiB", largest >> 20));
        if (count < buffer.size() && std::ferror(opened.get()) != 0)
            cannotRead(file, std::generic_category().message(errno));
        if (count < buffer.size())
            return text;
    }
}

sim::Scenario scenarioNamed(const std::string &name) {
    if (isFileName(name))
        return readScenario(readText(name), shownName(name));
    if (const std::optional<std::string> shipped = sim::shippedScenario(name))
        return readScenario(*shipped, name + ".toml");
    if (!isThere(name))
        noSuchScenario(name);
    return readScenario(readText(name), name);
}

sim::Scenario scenarioOfProfile(const std::string &profile) {
    sim::Scenario scenario;
    scenario.profile = profile;
    return scenario;
}

std::unique_ptr<sim::Simulator> makeDevice(const sim::Scenario &scenario, uint64_t seed) {
    std::unique_ptr<sim::Simulator> device = ofThisVersion(sim::createApart(scenario.profile.c_str()));
    device->setSeed(seed);
    for (const sim::ScenarioDeed &deed : scenario.deeds)
        deed.act(*device);
    device->acceptConnections();
    return device;
}

namespace {

/// What the scenario's switch refuses when each step is tried at its first time: a line for each command.
std::vector<std::string> refusedCommands(sim::Scenario scenario) {
    for (sim::ScenarioStep &step : scenario.steps)
        step.every = std::chrono::milliseconds::zero();
    const auto device = sim::makeSwitch(scenario);
    sim::Player player(*device, scenario);
    std::vector<std::string> lines;
    while (player.next()) {
        device->setPace(sim::Pace::byHand); // whatever pace a step has chosen
        for (const sim::Played &played : player.playNext())
            if (played.isRefused())
                lines.push_back(played.line());
    }
    return lines;
}

} // namespace

bool validate(const std::vector<std::string> &files, dcache::Output &output) {
    bool isGood = true;
    for (const std::string &file : files) {
        try {
            const sim::Scenario scenario = scenarioNamed(file);
            if (const std::vector<std::string> refused = refusedCommands(scenario); !refused.empty())
                throw sim::ScenarioError(refused);
            const size_t steps = scenario.steps.size();
            output.print(fmt::format("{}: good, {} step{}\n", shownName(file), steps, steps == 1 ? "" : "s"));
        } catch (const sim::ScenarioError &error) {
            fmt::print(stderr, "{}\n", error.what());
            isGood = false;
        } catch (const Failure &failure) { // the others may still be good
            fmt::print(stderr, "zovsim: {}\n", failure.what());
            isGood = false;
        }
    }
    return isGood;
}

std::string scenarioList() {
    std::string list;
    for (const std::string &name : sim::shippedScenarios())
        list += fmt::format("{:<22} {}\n", name, aboutScenario(sim::shippedScenario(name).value_or("")));
    return list;
}

std::string scenarioText(const std::string &name) {
    const std::optional<std::string> text = sim::shippedScenario(name);
    if (!text)
        noSuchScenario(name);
    return *text;
}

} // namespace zovsim
