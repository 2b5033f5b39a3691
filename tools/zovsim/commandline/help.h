/*
 * The look of the help, and checks of arguments.
 */
#ifndef TOOLS_ZOVSIM_COMMANDLINE_HELP_H
#define TOOLS_ZOVSIM_COMMANDLINE_HELP_H

#include <CLI/CLI.hpp>
#include <string>

namespace zovsim {

/// Options with the name of what they take, and no more: the rest is said in words.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() { column_width(26); }

    std::string make_option_opts(const CLI::Option *option) const override;
    std::string make_description(const CLI::App *app) const override;
    std::string make_footer(const CLI::App *app) const override;
};

/// The help of the command that was named, or of the program.
std::string helpFor(const CLI::App &app);

/// The names of all commands, with commas.
std::string commandNames(const CLI::App &app);

/// A whole number without a sign, as many bits as a seed has.
CLI::Validator isSeed();

} // namespace zovsim

#endif // TOOLS_ZOVSIM_COMMANDLINE_HELP_H
