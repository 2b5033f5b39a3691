// `dcache config` with its verbs, and `dcache doctor`.
#include <array>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/commandline/help.h"
#include "tools/dcache/failure.h"

namespace dcache {
namespace {

struct ConfigVerb {
    const char *name;
    const char *help;
    void (*addOptions)(CLI::App &verb, Request &request); ///< null: none of its own
    Report (*run)(const Request &request);
};

void addSecrets(CLI::App &verb, Request &request) {
    verb.add_flag("--secrets", request.secrets, "Show passwords and communities too");
}

void addEdits(CLI::App &verb, Request &request) {
    verb.add_option("setting", request.edits, "Keys of the switch, and what they become")
        ->required()
        ->type_name("KEY=VALUE");
    addSecrets(verb, request);
}

// clang-format off
constexpr std::array<ConfigVerb, 3> kConfigVerbs = {{
    {"backup", "The switch keeps a copy of its configuration", nullptr,
     [](const Request &) { return backUpConfiguration(); }},
    {"restore", "The switch goes back to the copy it keeps", addSecrets,
     [](const Request &request) { return restoreConfiguration(request.secrets); }},
    {"edit", "Change settings: all of them, or none", addEdits,
     [](const Request &request) { return editConfiguration(parseEdits(request.edits), request.secrets); }},
}};

constexpr const char *kConfigHelp =
    "All of it is done in the switch's admin mode, which one management client can\n"
    "have at a time, and which is given back in any case. The first setting that the\n"
    "switch refuses ends an edit, and nothing of it is kept.\n\n"
    "Exit codes: 0 done, 1 failed, 2 usage, 3 admin mode busy, 5 rejected by the\n"
    "switch.\n\n"
    "Examples:\n  dcache config edit Config.Services.TelnetEnable=False\n"
    "  dcache config backup";
// clang-format on

} // namespace

void addConfig(CLI::App &app, Request &request, Output &output) {
    CLI::App *command = app.add_subcommand("config", "Configuration of the switch: kept, restored, edited");
    command->require_subcommand(0, 1);
    addCommon(*command, request);
    command->footer(kConfigHelp);
    command->final_callback([command] {
        if (command->get_subcommands().empty())
            throw CLI::ValidationError("nothing to do with the configuration; there are: " + commandNames(*command));
    });
    for (const ConfigVerb &verb : kConfigVerbs) {
        CLI::App *each = command->add_subcommand(verb.name, verb.help);
        if (verb.addOptions != nullptr)
            verb.addOptions(*each, request);
        addCommon(*each, request);
        each->footer(kConfigHelp);
        each->final_callback([&verb, &request, &output] {
            request.run = [&verb, &request, &output](Format format) {
                output.print(render(verb.run(request), format, output.wantsColour()));
                return 0;
            };
        });
    }
}

void addDoctor(CLI::App &app, Request &request, Output &output) {
    CLI::App *command = app.add_subcommand("doctor", "Whether the cache can do its work here, check by check");
    command->add_option("--wait", request.wait, "Wait so long for the switch at most, 10 by default")
        ->check(between(0, 3600))
        ->type_name("SECONDS");
    addCommon(*command, request);
    command->footer("Exit codes: 0 every check is good, 1 one is bad or could not be made, 2 usage.\n\n"
                    "Examples:\n  dcache doctor\n  dcache doctor --wait 60 -o json");
    command->final_callback([&request, &output] {
        request.run = [&request, &output](Format format) {
            const Diagnosis diagnosis = examine(std::chrono::duration<double>(request.wait));
            output.print(render(diagnosis.report, format, output.wantsColour()));
            return diagnosis.isHealthy ? 0 : kFailedExit;
        };
    });
}

} // namespace dcache
