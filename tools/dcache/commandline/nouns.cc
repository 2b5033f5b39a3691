// The nouns that are shown and nothing else.
#include <array>
#include <map>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/commandline/help.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

struct Noun {
    const char *name;
    const char *help;
    std::string (*show)(const Request &request, const View &view);
    void (*addOptions)(CLI::App &command, Request &request);  ///< null: no options of its own
    void (*addShowOptions)(CLI::App &verb, Request &request); ///< those of "show" alone; likewise
    const char *footer;                                       ///< of its help
};

void addPortFilter(CLI::App &command, Request &request) {
    CLI::Option *state = command.add_option("--state", request.ports.state, "Only the ports in this state")
                             ->check(CLI::IsMember(portStateWords()).description(""))
                             ->type_name("STATE");
    command.add_flag("--all", request.ports.all, "Absent ports too")->excludes(state);
}

void addPortNumber(CLI::App &verb, Request &request) {
    verb.add_option("port", request.port, "One port, by its number")->check(digits("port number"))->type_name("");
}

void addDomain(CLI::App &verb, Request &request) {
    verb.add_option("domain", request.domain, "One switch, by its domain ID")
        ->check(digits("domain ID"))
        ->type_name("");
}

void addPicture(CLI::App &command, Request &request) {
    const std::vector<std::string> pictures = {"text", "dot", "svg"};
    command.add_option("--format", request.picture, "text (default), dot, or svg (takes Graphviz)")
        ->check(CLI::IsMember(pictures).description(""))
        ->type_name("PICTURE");
}

void addSecrets(CLI::App &command, Request &request) {
    command.add_flag("--secrets", request.secrets, "The community of SNMP reads too");
}

/// A noun that is shown as a report.
template <Report (*report)(const Request &)> std::string shown(const Request &request, const View &view) {
    return render(report(request), view.format, view.colour);
}

// What stands behind the nouns, for the table.
Report showSwitch(const Request &) {
    return dcache::showSwitch();
}
Report showChassis(const Request &) {
    return dcache::showChassis();
}
Report showBlades(const Request &) {
    return dcache::showBlades();
}
Report showAccounts(const Request &) {
    return dcache::showAccounts();
}
Report showPorts(const Request &request) {
    return request.port ? showPort(*request.port) : dcache::showPorts(request.ports);
}
Report showFabric(const Request &request) {
    return request.domain ? showFabricSwitch(*request.domain) : dcache::showFabric();
}
Report showSettings(const Request &request) {
    return dcache::showSettings(request.secrets);
}
std::string showTopology(const Request &request, const View &view) {
    static const std::map<std::string, Picture> pictures = {
        {"text", Picture::text}, {"dot", Picture::dot}, {"svg", Picture::svg}};
    return dcache::showTopology(pictures.at(request.picture.value_or("text")), linesOfLocale(), view.format,
                                view.colour);
}

// clang-format off
constexpr std::array<Noun, 8> kNouns = {{
    {"switch", "Identity, status and modes of the switch", shown<showSwitch>, nullptr, nullptr,
     "Example:\n  dcache switch -o json"},
    {"chassis", "Slots, faults, power supplies and fans of the chassis", shown<showChassis>, nullptr, nullptr,
     "Example:\n  dcache chassis -o json"},
    {"blades", "What sits in the slots of the chassis", shown<showBlades>, nullptr, nullptr,
     "Example:\n  dcache --profile director-8 blades"},
    {"ports", "State, type and transceiver of the ports", shown<showPorts>, addPortFilter, addPortNumber,
     "States: online, offline, diagnostics, error (isolated, or down against its\n"
     "settings), unknown, absent (not installed or powered off).\n\n"
     "Examples:\n  dcache ports --state offline\n  dcache ports show 0"},
    {"accounts", "User accounts of the switch", shown<showAccounts>, nullptr, nullptr,
     "Example:\n  dcache accounts -o json"},
    {"fabric", "The fabric and its switches", shown<showFabric>, nullptr, addDomain,
     "Examples:\n  dcache --profile fabric-12 fabric\n  dcache --profile fabric-12 fabric show 1"},
    {"topology", "The switches of the fabric and the links between them", showTopology, addPicture, nullptr,
     "Examples:\n  dcache --profile fabric-12 topology\n"
     "  dcache --profile fabric-60 topology --format svg > fabric.svg"},
    {"settings", "Services, addresses, versions and origin of the switch", shown<showSettings>, addSecrets, nullptr,
     "A setting that this switch does not have, or does not tell, is \"-\", and null in\nJSON.\n\n"
     "Example:\n  dcache settings -o terse"},
}};
// clang-format on

void addNoun(CLI::App &app, const Noun &noun, Request &request, Output &output) {
    const auto show = [&noun, &request, &output](Format format) {
        output.print(noun.show(request, {format, output.wantsColour()}));
        return 0;
    };
    CLI::App *command = app.add_subcommand(noun.name, noun.help);
    CLI::App *verb = command->add_subcommand("show", noun.help);
    command->require_subcommand(0, 1);
    for (CLI::App *each : {command, verb}) {
        if (noun.addOptions != nullptr)
            noun.addOptions(*each, request);
        addCommon(*each, request);
        each->footer(noun.footer);
        each->final_callback([&request, show] { request.run = show; });
    }
    if (noun.addShowOptions != nullptr)
        noun.addShowOptions(*verb, request);
}

} // namespace

void addNouns(CLI::App &app, Request &request, Output &output) {
    for (const Noun &noun : kNouns)
        addNoun(app, noun, request, output);
}

} // namespace dcache
