// dcache: the command line. Nouns with verbs, "show" being the verb of a noun alone.
//
// Exit codes: 0 done, 1 failed, 2 usage; of zoning also those in failure.h. Data go to stdout, everything else to stderr.
#include <CLI/CLI.hpp>
#include <array>
#include <csignal>
#include <cstdio>
#include <fmt/format.h>
#include <functional>
#include <map>
#include <optional>
#include <unistd.h>

#include "tools/dcache/commands/commands.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/input.h"
#include "tools/dcache/live.h"
#include "tools/dcache/output.h"
#include "tools/dcache/render.h"
#include "tools/dcache/simulator.h"
#include "tools/dcache/story.h"
#include "tools/dcache/words.h"
#include "tools/dcache/zoning/otherclient.h"

namespace {

struct Request;

/// How something is to be shown.
struct View {
    dcache::Format format;
    bool colour;
};

struct Noun {
    const char *name;
    const char *help;
    std::string (*show)(const Request &request, const View &view);
    void (*addOptions)(CLI::App &command, Request &request);  ///< null: no options of its own
    void (*addShowOptions)(CLI::App &verb, Request &request); ///< those of "show" alone; likewise
    const char *footer;                                       ///< of its help
};

/// What the command line asks for.
struct Request {
    std::string format = "table";
    std::optional<std::string> profile; ///< of the simulated switch
    dcache::PortFilter ports;
    std::optional<std::string> port;   ///< digits
    std::optional<std::string> domain; ///< likewise
    std::optional<std::string> picture;
    std::optional<std::string> zoning; ///< the file that describes that of the simulated switch
    bool activeZoning = false;
    std::optional<std::string> script; ///< a file
    dcache::ZoningRun zoningRun;
    double seconds = 0;
    std::string story;
    double speed = 1;
    bool allEvents = false;
    std::function<void(dcache::Format)> run;
};

/// Options with the name of what they take, and no more: the rest is said in words.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option *option) const override {
        return option->get_type_size() == 0 ? "" : ' ' + option->get_type_name();
    }
    std::string make_description(const CLI::App *app) const override { return app->get_description() + "\n\n"; }
    std::string make_footer(const CLI::App *app) const override { return app->get_footer() + '\n'; }
};

/// A number within limits; CLI11's own range check lets "nan" pass.
CLI::Validator between(double lowest, double highest) {
    return CLI::Validator(
        [=](std::string &text) {
            double value = 0;
            const bool good = CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest;
            return good ? std::string() : fmt::format("{} is not a number from {} to {}", text, lowest, highest);
        },
        "");
}

/// A number; whether there is something of this number is another question.
CLI::Validator digits(const char *what) {
    return CLI::Validator(
        [what](std::string &text) {
            const bool good = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
            return good ? std::string() : fmt::format("{} is not a {}", text, what);
        },
        "");
}

void addPortFilter(CLI::App &command, Request &request) {
    CLI::Option *state = command.add_option("--state", request.ports.state, "Only the ports in this state")
                             ->check(CLI::IsMember(dcache::portStateWords()).description(""))
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

/// A noun that is shown as a report.
template <dcache::Report (*report)(const Request &)> std::string shown(const Request &request, const View &view) {
    return render(report(request), view.format, view.colour);
}

// What stands behind the nouns, for the table.
dcache::Report showSwitch(const Request &) {
    return dcache::showSwitch();
}
dcache::Report showChassis(const Request &) {
    return dcache::showChassis();
}
dcache::Report showBlades(const Request &) {
    return dcache::showBlades();
}
dcache::Report showAccounts(const Request &) {
    return dcache::showAccounts();
}
dcache::Report showPorts(const Request &request) {
    return request.port ? dcache::showPort(*request.port) : dcache::showPorts(request.ports);
}
dcache::Report showFabric(const Request &request) {
    return request.domain ? dcache::showFabricSwitch(*request.domain) : dcache::showFabric();
}
std::string showTopology(const Request &request, const View &view) {
    static const std::map<std::string, dcache::Picture> pictures = {
        {"text", dcache::Picture::text}, {"dot", dcache::Picture::dot}, {"svg", dcache::Picture::svg}};
    return dcache::showTopology(pictures.at(request.picture.value_or("text")), dcache::linesOfLocale(), view.format,
                                view.colour);
}

// clang-format off
constexpr std::array<Noun, 7> kNouns = {{
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
}};
// clang-format on

dcache::Format formatNamed(const std::string &name) {
    static const std::map<std::string, dcache::Format> formats = {
        {"table", dcache::Format::table}, {"json", dcache::Format::json}, {"terse", dcache::Format::terse}};
    return formats.at(name);
}

/// The options that every command takes.
void addCommon(CLI::App &command, Request &request) {
    const std::vector<std::string> names = {"table", "json", "terse"};
    command.add_option("-o,--output", request.format, "table (default), json or terse (for scripts)")
        ->check(CLI::IsMember(names).description(""))
        ->type_name("FORMAT");
    command.add_option("--profile", request.profile, "Simulate another switch, e.g. director-8")->type_name("NAME");
}

void addNoun(CLI::App &app, const Noun &noun, Request &request, dcache::Output &output) {
    const auto show = [&noun, &request, &output](dcache::Format format) {
        output.print(noun.show(request, {format, output.wantsColour()}));
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

void addZoningRun(CLI::App &verb, Request &request) {
    verb.add_option("file", request.script, "A script; - is standard input")->required()->type_name("");
    verb.add_flag("--dry-run", request.zoningRun.dryRun, "Show what it would change, commit nothing");
    verb.add_option("--id", request.zoningRun.holder, "Holder of the zoning lock, dcache by default")
        ->check(CLI::Validator(
            [](std::string &name) { return name.empty() ? std::string("the holder needs a name") : std::string(); },
            ""))
        ->type_name("NAME");
}

/// A verb of zoning: its help, its own options, and what it prints.
struct ZoningVerb {
    const char *name;
    const char *help;
    void (*addOptions)(CLI::App &verb, Request &request);
    std::string (*run)(Request &request, const View &view);
};

// clang-format off
constexpr std::array<ZoningVerb, 4> kZoningVerbs = {{
    {"show", "Zone sets, zones, aliases and limits",
     [](CLI::App &verb, Request &request) {
         verb.add_flag("--active", request.activeZoning, "The active zone set alone");
     },
     [](Request &request, const View &view) {
         return render(dcache::showZoning(request.activeZoning), view.format, view.colour);
     }},
    {"run", "Carry out a script of edits under the zoning lock", addZoningRun,
     [](Request &request, const View &view) {
         request.zoningRun.script = dcache::readInput(request.script.value());
         return render(dcache::runZoning(request.zoningRun), view.format, view.colour);
     }},
    {"diff", "What a script would change, or active against defined",
     [](CLI::App &verb, Request &request) {
         verb.add_option("file", request.script, "A script; - is standard input")->type_name("");
     },
     [](Request &request, const View &view) {
         const auto script = request.script ? std::make_optional(dcache::readInput(*request.script)) : std::nullopt;
         return render(dcache::diffZoning(script), view.format, view.colour);
     }},
    {"dump", "The database as a script that builds it", [](CLI::App &, Request &) {},
     [](Request &, const View &view) {
         if (view.format != dcache::Format::table)
             throw dcache::Misuse("a dump is a script: leave out the output format");
         return dcache::dumpZoning();
     }},
}};
// clang-format on

void addZoning(CLI::App &app, Request &request, dcache::Output &output) {
    CLI::App *command = app.add_subcommand("zoning", "The zoning database: shown, compared, edited");
    command->require_subcommand(0, 1);
    const auto add = [&](CLI::App *each, const ZoningVerb &verb) {
        verb.addOptions(*each, request);
        addCommon(*each, request);
        each->add_option("--zoning", request.zoning, "What the simulated switch has: a description")->type_name("FILE");
        each->footer(dcache::zoningHelp());
        each->final_callback([each, &verb, &request, &output] {
            if (!each->get_subcommands().empty())
                return; // the verb says what is to be done
            request.run = [&verb, &request, &output](dcache::Format format) {
                output.print(verb.run(request, {format, output.wantsColour()}));
            };
        });
    };
    add(command, kZoningVerbs.front());
    for (const ZoningVerb &verb : kZoningVerbs)
        add(command->add_subcommand(verb.name, verb.help), verb);
}

std::string storiesAndExamples() {
    std::string text = "Stories:\n";
    for (const std::string &name : dcache::storyNames())
        text += fmt::format("  {:<24}{}\n", name, dcache::findStory(name)->about);
    return text + "\nExamples:\n  dcache watch --story demo --speed 2\n  dcache watch --for 60 -o json";
}

void addWatch(CLI::App &app, Request &request, dcache::Output &output) {
    CLI::App *command = app.add_subcommand("watch", "Events of the cache, a line each, as they come");
    const CLI::Option *duration = command->add_option("--for", request.seconds, "End after so many seconds")
                                      ->check(between(0, 31536000))
                                      ->type_name("SECONDS");
    CLI::Option *story = command->add_option("--story", request.story, "Play a story on the simulated switch")
                             ->check(CLI::IsMember(dcache::storyNames()).description(""))
                             ->type_name("NAME");
    command->add_option("--speed", request.speed, "Play the story so many times faster")
        ->check(between(0.1, 100))
        ->type_name("FACTOR")
        ->needs(story);
    command->add_flag("--all", request.allEvents, "Also events that tell of no change");
    addCommon(*command, request);
    command->footer("--all shows the events of the first load, and that every area is up to date.\n"
                    "Without --for it ends with the story; without a story, on Ctrl-C.\n\n" +
                    storiesAndExamples());
    command->final_callback([&request, &output, duration, story] {
        dcache::WatchOptions options;
        if (duration->count() != 0)
            options.duration = std::chrono::duration<double>(request.seconds);
        if (story->count() != 0)
            options.story = dcache::findStory(request.story);
        if (options.story != nullptr && request.profile)
            throw CLI::ValidationError("a story brings its own switch: leave out --profile");
        options.speed = request.speed;
        options.allEvents = request.allEvents;
        request.run = [options, &output](dcache::Format format) mutable {
            options.format = format;
            dcache::watch(options, output);
        };
    });
}

/// The help of the innermost command that was named.
std::string helpFor(const CLI::App &app) {
    const CLI::App *asked = &app;
    std::string parents;
    while (!asked->get_subcommands().empty()) {
        parents += (parents.empty() ? "" : " ") + asked->get_name();
        asked = asked->get_subcommands().front();
    }
    return asked->help(parents);
}

int complain(const std::string &message) {
    fmt::print(stderr, "dcache: {}\nRun \"dcache --help\" for help.\n", message);
    return dcache::kUsageExit;
}

std::string commandNames(const CLI::App &app) {
    std::string names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

int run(int argc, char **argv) {
    dcache::Output output(STDOUT_FILENO);
    Request request;
    CLI::App app("The in-memory picture of a Fibre Channel switch, shown and watched.", "dcache");
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->column_width(26);
    app.set_version_flag("--version", "dcache " DCACHE_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1);
    addCommon(app, request);
    for (const Noun &noun : kNouns)
        addNoun(app, noun, request, output);
    addZoning(app, request, output);
    addWatch(app, request, output);
    app.footer("A noun alone shows it: \"dcache switch\" is \"dcache switch show\".\n"
               "Exit codes: 0 done, 1 failed, 2 usage; of zoning also 3 to 5, see its help.\n\n"
               "Examples:\n  dcache watch --story demo\n  dcache ports --state offline");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        output.print(helpFor(app));
        return 0;
    } catch (const CLI::CallForVersion &version) {
        output.print(std::string(version.what()) + '\n');
        return 0;
    } catch (const CLI::ParseError &error) {
        return complain(error.what());
    }
    if (!request.run)
        return complain("nothing asked for; there are: " + commandNames(app));
    if (request.port && (request.ports.state || request.ports.all))
        return complain("a single port is shown whatever its state: leave out --state and --all");
    if (request.picture && request.format != "table")
        return complain("a drawing is for people: leave out --format, or the output format " + request.format);
    try {
        const bool isSimulated = request.profile || request.zoning;
        const auto simulator = isSimulated ? dcache::makeSimulator(request.profile.value_or("fixed-24")) : nullptr;
        if (request.zoning)
            dcache::giveZoning(*simulator, dcache::readInput(*request.zoning));
        request.run(formatNamed(request.format));
    } catch (const dcache::Misuse &misuse) {
        return complain(misuse.what());
    }
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    dcache::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is noticed by the write that fails
    try {
        return run(argc, argv);
    } catch (const dcache::OutputFailed &failure) {
        if (failure.error != EPIPE)
            std::fprintf(stderr, "dcache: %s\n", failure.what());
    } catch (const dcache::Stopped &stopped) {
        std::fprintf(stderr, "dcache: %s\n", stopped.what());
        return stopped.exitCode;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "dcache: %s\n", error.what());
    }
    return dcache::kFailedExit;
}
