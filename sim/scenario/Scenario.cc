#include "sim/scenario/Scenario.h"

#include "sim/scenario/Plan.h"

namespace sim {

namespace {

using Section = void (*)(Fields &file, Reading &reading);

constexpr Section kSections[] = {readSwitchSection, readSettings, readParts, readPorts, readAccounts,
                                 readFabric,        readZoning,   readRules, readSteps};

constexpr const char *kDefault = "fixed-24";

/// Does everything to a switch apart, for what only a switch can know.
void tryOut(const Scenario &scenario, FilePosition profileAt, Complaints &complaints) {
    std::unique_ptr<Simulator> device;
    try {
        device = createApart(scenario.profile.c_str());
    } catch (const std::invalid_argument &error) {
        complaints.add(profileAt, error.what());
        return;
    }
    for (const ScenarioDeed &deed : scenario.deeds) {
        try {
            deed.act(*device);
        } catch (const PlacedRefusal &refusal) {
            for (const auto &[at, what] : refusal.places())
                complaints.add(at, what);
        } catch (const std::invalid_argument &error) {
            complaints.add(deed.at, error.what());
        }
    }
}

bool stumblesOver(std::string_view text) {
    try {
        static_cast<void>(toml::parse(text));
    } catch (const TomlStumbled &) {
        return true;
    } catch (const toml::parse_error &) {
        return false; // it was cut off
    }
    return false;
}

/// The line that the library stumbles over: the last one of the shortest beginning it stumbles over.
unsigned lineOfStumbling(std::string_view text) {
    unsigned line = 1;
    size_t end = text.find('\n');
    for (; end != std::string_view::npos && !stumblesOver(text.substr(0, end + 1)); ++line)
        end = text.find('\n', end + 1);
    return line;
}

toml::table parse(const std::string &text, const std::string &fileName) {
    try {
        return toml::parse(text);
    } catch (const toml::parse_error &error) {
        const FilePosition at = positionOf(error.source());
        throw ScenarioError({shownPosition(fileName, at) + ": " + onOneLine(std::string(error.description()))});
    } catch (const TomlStumbled &error) {
        throw ScenarioError({shownPosition(fileName, {lineOfStumbling(text), 1}) + ": this line " + error.what()});
    }
}

std::string joined(const std::vector<std::string> &lines) {
    std::string text;
    for (const std::string &line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

} // namespace

ScenarioError::ScenarioError(const std::vector<std::string> &lines)
    : std::runtime_error(joined(lines)), _lines(std::make_shared<const std::vector<std::string>>(lines)) {}

// ---- plans -------------------------------------------------------------------------------------------

PlacedRefusal::PlacedRefusal(Places places)
    : std::invalid_argument(places.empty() ? "refused" : places.front().second),
      _places(std::make_shared<const Places>(std::move(places))) {}

void Plan::add(Phase phase, FilePosition at, std::function<void(Simulator &)> act) {
    _phases[static_cast<size_t>(phase)].push_back({at, std::move(act)});
}

std::vector<ScenarioDeed> Plan::deeds() const {
    std::vector<ScenarioDeed> all;
    for (const std::vector<ScenarioDeed> &phase : _phases)
        all.insert(all.end(), phase.begin(), phase.end());
    return all;
}

// ---- scenarios ---------------------------------------------------------------------------------------

Scenario readScenario(const std::string &text, const std::string &fileName, const CommandCheck &check) {
    const toml::table table = parse(text, fileName);
    Reading reading;
    reading.check = check;
    Fields file(table, "a scenario", reading.complaints);
    Scenario scenario;
    scenario.fileName = fileName;
    scenario.profile = file.text("profile").value_or(kDefault);
    for (const Section section : kSections)
        section(file, reading);
    checkStepNames(reading);
    file.refuseOthers();
    scenario.deeds = reading.plan.deeds();
    scenario.steps = std::move(reading.steps);
    tryOut(scenario, file.at("profile"), reading.complaints);
    if (reading.complaints.any())
        throw ScenarioError(reading.complaints.lines(fileName));
    return scenario;
}

std::unique_ptr<Simulator> makeSwitch(const Scenario &scenario) {
    std::unique_ptr<Simulator> device = createApart(scenario.profile.c_str());
    for (const ScenarioDeed &deed : scenario.deeds)
        deed.act(*device);
    device->acceptConnections();
    return device;
}

} // namespace sim
