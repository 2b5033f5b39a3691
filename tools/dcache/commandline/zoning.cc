// `dcache zoning` and its verbs.
#include <array>
#include <fmt/format.h>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/commandline/help.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/input.h"

namespace dcache {
namespace {

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
         return render(showZoning(request.activeZoning), view.format, view.colour);
     }},
    {"run", "Carry out a script of edits under the zoning lock", addZoningRun,
     [](Request &request, const View &view) {
         request.zoningRun.script = readInput(request.script.value());
         return render(runZoning(request.zoningRun), view.format, view.colour);
     }},
    {"diff", "What a script would change, or active against defined",
     [](CLI::App &verb, Request &request) {
         verb.add_option("file", request.script, "A script; - is standard input")->type_name("");
     },
     [](Request &request, const View &view) {
         const auto script = request.script ? std::make_optional(readInput(*request.script)) : std::nullopt;
         return render(diffZoning(script), view.format, view.colour);
     }},
    {"dump", "The database as a script that builds it", [](CLI::App &, Request &) {},
     [](Request &, const View &view) {
         if (view.format != Format::table)
             throw Misuse("a dump is a script: leave out the output format");
         return dumpZoning();
     }},
}};
// clang-format on

} // namespace

void addZoning(CLI::App &app, Request &request, Output &output) {
    CLI::App *command = app.add_subcommand("zoning", "The zoning database: shown, compared, edited");
    command->require_subcommand(0, 1);
    const auto add = [&](CLI::App *each, const ZoningVerb &verb) {
        verb.addOptions(*each, request);
        addCommon(*each, request);
        each->add_option("--zoning", request.zoning, "What the simulated switch has: a description")->type_name("FILE");
        each->footer(zoningHelp());
        each->final_callback([each, &verb, &request, &output] {
            if (!each->get_subcommands().empty())
                return; // the verb says what is to be done
            request.run = [&verb, &request, &output](Format format) {
                output.print(verb.run(request, {format, output.wantsColour()}));
                return 0;
            };
        });
    };
    add(command, kZoningVerbs.front());
    for (const ZoningVerb &verb : kZoningVerbs)
        add(command->add_subcommand(verb.name, verb.help), verb);
}

} // namespace dcache
