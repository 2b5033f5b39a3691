#include "tools/zovsim/commandline/help.h"

#include <cerrno>
#include <cstdlib>

namespace zovsim {

std::string HelpFormatter::make_option_opts(const CLI::Option *option) const {
    return option->get_type_size() == 0 ? "" : ' ' + option->get_type_name();
}

std::string HelpFormatter::make_description(const CLI::App *app) const {
    return app->get_description() + "\n\n";
}

std::string HelpFormatter::make_footer(const CLI::App *app) const {
    return app->get_footer() + '\n';
}

std::string helpFor(const CLI::App &app) {
    const auto named = app.get_subcommands();
    return named.empty() ? app.help() : named.front()->help(app.get_name());
}

std::string commandNames(const CLI::App &app) {
    std::string names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

CLI::Validator isSeed() {
    return CLI::Validator(
        [](std::string &text) {
            errno = 0;
            const bool isNumber = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
            const bool isTooLarge = isNumber && std::strtoull(text.c_str(), nullptr, 10) != 0 && errno == ERANGE;
            return isNumber && !isTooLarge ? std::string() : text + " is not a number from 0 to 18446744073709551615";
        },
        "");
}

} // namespace zovsim
