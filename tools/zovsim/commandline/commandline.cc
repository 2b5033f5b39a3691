#include "tools/zovsim/commandline/commandline.h"

#include <fmt/format.h>
#include <functional>
#include <unistd.h>

#include "tools/dcache/failure.h"
#include "tools/dcache/output.h"
#include "tools/zovsim/commandline/help.h"
#include "tools/zovsim/remote.h"
#include "tools/zovsim/scenarios.h"
#include "tools/zovsim/serving.h"

namespace zovsim {
namespace {

/// What a command line asks for, as it is being read.
struct Request {
    ServeRequest serve;
    std::string speed = "1";
    std::string seed = "0";
    bool paused = false;
    ReplayRequest replay;
    std::optional<std::string> socket;
    std::vector<std::string> words;
    std::vector<std::string> files;
    std::string scenario;
    std::function<int(dcache::Output &)> run; ///< does it, and returns the exit code
};

void addSocket(CLI::App &command, std::optional<std::string> &socket) {
    command.add_option("--socket", socket, "Where the switch is served; else ZOVSIM_SOCKET, or the user's own place")
        ->type_name("PATH");
}

CLI::Validator isSpeed() {
    return CLI::Validator(
        [](std::string &text) {
            return parseSpeed(text) ? std::string() : text + " is neither a number above 0, up to 1000000, nor max";
        },
        "");
}

void addServe(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("serve", "Serve a switch to clients of other processes");
    ServeRequest &wanted = request.serve;
    CLI::Option *scenario =
        command->add_option("--scenario", wanted.scenario, "Play a scenario: a file, or a shipped one")
            ->type_name("FILE");
    command->add_option("--profile", wanted.profile, "A switch of this kind, fixed-24 by default")
        ->type_name("NAME")
        ->excludes(scenario);
    addSocket(*command, wanted.socket);
    command->add_option("--state", wanted.stateFile, "Keep what clients save, over a restart too")->type_name("FILE");
    CLI::Option *speed = command->add_option("--speed", request.speed, "Times as fast as real time, or max")
                             ->check(isSpeed())
                             ->type_name("FACTOR");
    command->add_flag("--paused", request.paused, "Let time pass by commands only, at first")->excludes(speed);
    CLI::Option *record =
        command->add_option("--record", wanted.recording, "Write down every call and notification")->type_name("FILE");
    command->add_flag("--force", wanted.goesOn, "Go on with a recording that is there")->needs(record);
    command->add_option("--seed", request.seed, "What rules without a seed draw from, 0 by default")
        ->check(isSeed())
        ->type_name("NUMBER");
    command->add_flag("--quiet", wanted.quiet, "Do not tell what is played");
    command->footer("It ends on Ctrl-C. The first line it prints tells a shell where the switch is.\n\n"
                    "Examples:\n  zovsim serve --scenario demo --speed 2\n"
                    "  zovsim serve --profile director-8 --paused --state /tmp/director.state");
    command->final_callback([&request] {
        request.serve.seed = std::stoull(request.seed);
        request.serve.speed = request.paused ? Speed{sim::Pace::paused, 1} : parseSpeed(request.speed).value();
        request.run = [&request](dcache::Output &output) { return serve(request.serve, output); };
    });
}

void addDo(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("do", "Have the served switch carry out a command");
    command->add_option("command", request.words, "Its words; - reads commands, a line each, from standard input")
        ->required()
        ->type_name("");
    addSocket(*command, request.socket);
    command->footer("\"zovsim do help\" tells of all commands, \"zovsim do help VERB\" of one.\n\n"
                    "Examples:\n  zovsim do port 3 offline\n  zovsim do 'deliver 40 0 0 0 \"CPU too hot\"'\n"
                    "  zovsim do - < commands.txt");
    command->final_callback([&request] {
        request.run = [&request](dcache::Output &output) {
            const bool isInput = request.words == std::vector<std::string>{"-"};
            output.print(carryOut(isInput ? readText("-") : commandOf(request.words), request.socket));
            return 0;
        };
    });
}

void addDump(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("dump", "The present state of the served switch as a scenario");
    addSocket(*command, request.socket);
    command->footer("Example:\n  zovsim dump > now.toml");
    command->final_callback([&request] {
        request.run = [&request](dcache::Output &output) {
            output.print(dump(request.socket));
            return 0;
        };
    });
}

void addValidate(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("validate", "Tell every mistake of scenario files");
    command->add_option("file", request.files, "Scenarios; - is standard input")->required()->type_name("");
    command->footer("Mistakes are told as FILE:LINE:COLUMN: what is wrong, and what is allowed.\n\n"
                    "Example:\n  zovsim validate mine.toml");
    command->final_callback([&request] {
        request.run = [&request](dcache::Output &output) {
            return validate(request.files, output) ? 0 : dcache::kFailedExit;
        };
    });
}

void addReplay(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("replay", "Serve a recording in place of a switch");
    command->add_option("file", request.replay.recording, "A recording that serve --record made")
        ->required()
        ->type_name("");
    addSocket(*command, request.replay.socket);
    command->add_flag("--quiet", request.replay.quiet, "Tell nothing, but by the exit code");
    command->footer("Clients are answered as recorded; whatever else they call is told on the\n"
                    "standard error, with both lines. It ends on Ctrl-C.\n\n"
                    "Exit codes: 0 nothing else was called, 1 something was, or it failed, 2 usage.\n\n"
                    "Example:\n  zovsim replay trouble.rec");
    command->final_callback(
        [&request] { request.run = [&request](dcache::Output &output) { return replay(request.replay, output); }; });
}

void addScenarios(CLI::App &app, Request &request) {
    CLI::App *command = app.add_subcommand("scenarios", "The scenarios that come with the program");
    CLI::Option *name =
        command->add_option("name", request.scenario, "Print the text of this one, to begin with")->type_name("");
    command->footer("Examples:\n  zovsim scenarios\n  zovsim scenarios demo > mine.toml");
    command->final_callback([&request, name] {
        request.run = [&request, isNamed = name->count() != 0](dcache::Output &output) {
            output.print(isNamed ? scenarioText(request.scenario) : scenarioList());
            return 0;
        };
    });
}

int complain(const std::string &message) {
    fmt::print(stderr, "zovsim: {}\nRun \"zovsim --help\" for help.\n", message);
    return dcache::kUsageExit;
}

} // namespace

int runCommandLine(int argc, char **argv) {
    dcache::Output output(STDOUT_FILENO);
    Request request;
    CLI::App app("A simulated Fibre Channel switch that stays on, and does what it is told.", "zovsim");
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_version_flag("--version", "zovsim " ZOVSIM_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1);
    for (const auto add : {addServe, addDo, addDump, addValidate, addReplay, addScenarios})
        add(app, request);
    app.footer("Clients reach a served switch by libzovlib.so, when ZOVSIM_SOCKET names it in\n"
               "their environment. Exit codes: 0 done, 1 failed, 2 usage.\n\n"
               "Examples:\n  zovsim serve --scenario demo\n  zovsim do port 3 offline");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        output.print(helpFor(app));
        return 0;
    } catch (const CLI::CallForVersion &version) {
        output.print(std::string(version.what()) + '\n');
        return 0;
    } catch (const CLI::ExtrasError &error) {
        const bool isNamed = !app.get_subcommands().empty();
        return complain(std::string(error.what()) + (isNamed ? "" : "; commands are: " + commandNames(app)));
    } catch (const CLI::ParseError &error) {
        return complain(error.what());
    }
    if (!request.run)
        return complain("nothing asked for; commands are: " + commandNames(app));
    try {
        return request.run(output);
    } catch (const dcache::Misuse &misuse) {
        return complain(misuse.what());
    }
}

} // namespace zovsim
