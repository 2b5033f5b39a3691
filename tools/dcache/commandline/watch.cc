// `dcache watch`.
#include <chrono>
#include <fmt/format.h>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/commandline/help.h"
#include "tools/dcache/live.h"
#include "tools/dcache/story.h"

namespace dcache {
namespace {

std::string storiesAndExamples() {
    std::string text = "Stories:\n";
    for (const std::string &name : storyNames())
        text += fmt::format("  {:<24}{}\n", name, findStory(name)->about);
    return text + "\nExamples:\n  dcache watch --story demo --speed 2\n  dcache watch --for 60 -o json";
}

} // namespace

void addWatch(CLI::App &app, Request &request, Output &output) {
    CLI::App *command = app.add_subcommand("watch", "Events of the cache, a line each, as they come");
    const CLI::Option *duration = command->add_option("--for", request.seconds, "End after so many seconds")
                                      ->check(between(0, 31536000))
                                      ->type_name("SECONDS");
    CLI::Option *story = command->add_option("--story", request.story, "Play a story on the simulated switch")
                             ->check(CLI::IsMember(storyNames()).description(""))
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
        WatchOptions options;
        if (duration->count() != 0)
            options.duration = std::chrono::duration<double>(request.seconds);
        if (story->count() != 0)
            options.story = findStory(request.story);
        if (options.story != nullptr && request.profile)
            throw CLI::ValidationError("a story brings its own switch: leave out --profile");
        options.speed = request.speed;
        options.allEvents = request.allEvents;
        request.run = [options, &output](Format format) mutable {
            options.format = format;
            watch(options, output);
            return 0;
        };
    });
}

} // namespace dcache
