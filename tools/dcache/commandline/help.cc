#include "tools/dcache/commandline/help.h"

#include <fmt/format.h>
#include <vector>

namespace dcache {

std::string HelpFormatter::make_option_opts(const CLI::Option *option) const {
    return option->get_type_size() == 0 ? "" : ' ' + option->get_type_name();
}

std::string HelpFormatter::make_description(const CLI::App *app) const {
    return app->get_description() + "\n\n";
}

std::string HelpFormatter::make_footer(const CLI::App *app) const {
    return app->get_footer() + '\n';
}

CLI::Validator between(double lowest, double highest) {
    return CLI::Validator(
        [=](std::string &text) {
            double value = 0;
            const bool good = CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest;
            return good ? std::string() : fmt::format("{} is not a number from {} to {}", text, lowest, highest);
        },
        "");
}

CLI::Validator digits(const char *what) {
    return CLI::Validator(
        [what](std::string &text) {
            const bool good = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
            return good ? std::string() : fmt::format("{} is not a {}", text, what);
        },
        "");
}

void addCommon(CLI::App &command, Request &request) {
    const std::vector<std::string> names = {"table", "json", "terse"};
    command.add_option("-o,--output", request.format, "table (default), json or terse (for scripts)")
        ->check(CLI::IsMember(names).description(""))
        ->type_name("FORMAT");
    command.add_option("--scenario", request.scenario, "Simulate this scenario's switch; watch plays it")
        ->type_name("NAME|FILE");
    command.add_option("--profile", request.profile, "Simulate another switch, e.g. director-8")->type_name("NAME");
}

std::string helpFor(const CLI::App &app) {
    const CLI::App *asked = &app;
    std::string parents;
    while (!asked->get_subcommands().empty()) {
        parents += (parents.empty() ? "" : " ") + asked->get_name();
        asked = asked->get_subcommands().front();
    }
    return asked->help(parents);
}

std::string commandNames(const CLI::App &app) {
    std::string names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

} // namespace dcache
