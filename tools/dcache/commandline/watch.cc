// `dcache watch`.
#include <chrono>
#include <fmt/format.h>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/commandline/help.h"
#include "tools/dcache/live.h"

namespace dcache {
namespace {

// clang-format off
constexpr const char *kHelp =
    "A scenario is what happens to the simulated switch; it is shown beside the\n"
    "events that it raises. There are demo, a fabric on a bad day, director, zoning,\n"
    "storm and others: a wrong name lists them. A FILE has a '/' in its name, ends in\n"
    ".toml, or is - for the standard input.\n\n"
    "--all shows the events of the first load, and that every area is up to date.\n"
    "Without --for it ends with the scenario; without a scenario, on Ctrl-C.\n\n"
    "Examples:\n  dcache watch --scenario demo --speed 20\n  dcache watch --for 60 -o json";
// clang-format on

} // namespace

void addWatch(CLI::App &app, Request &request, Output &output) {
    CLI::App *command = app.add_subcommand("watch", "Events of the cache, a line each, as they come");
    const CLI::Option *duration = command->add_option("--for", request.seconds, "End after so many seconds")
                                      ->check(between(0, 31536000))
                                      ->type_name("SECONDS");
    const CLI::Option *speed =
        command
            ->add_option("--speed", request.speed,
                         fmt::format("Play the scenario so many times faster, {} by default", kUsualSpeed))
            ->check(between(0.1, 10000))
            ->type_name("FACTOR");
    command->add_flag("--all", request.allEvents, "Also events that tell of no change");
    addCommon(*command, request);
    command->footer(kHelp);
    command->final_callback([&request, &output, duration, speed] {
        if (speed->count() != 0 && !request.scenario)
            throw CLI::ValidationError("--speed is that of a scenario: name one with --scenario");
        WatchOptions options;
        if (duration->count() != 0)
            options.duration = std::chrono::duration<double>(request.seconds);
        options.speed = request.speed;
        options.allEvents = request.allEvents;
        request.run = [&request, options, &output](Format format) mutable {
            options.format = format;
            options.play = request.play;
            watch(options, output);
            return 0;
        };
    });
}

} // namespace dcache
