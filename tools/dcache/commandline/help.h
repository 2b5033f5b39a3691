/*
 * What the commands of the command line have in common: the look of their help, checks of their arguments, their options.
 */
#ifndef TOOLS_DCACHE_COMMANDLINE_HELP_H
#define TOOLS_DCACHE_COMMANDLINE_HELP_H

#include <CLI/CLI.hpp>
#include <string>

#include "tools/dcache/commandline/request.h"

namespace dcache {

/// Options with the name of what they take, and no more: the rest is said in words.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option *option) const override;
    std::string make_description(const CLI::App *app) const override;
    std::string make_footer(const CLI::App *app) const override;
};

/// A number within limits; CLI11's own range check lets "nan" pass.
CLI::Validator between(double lowest, double highest);

/// A number; whether there is something of this number is another question.
CLI::Validator digits(const char *what);

/// The options that every command takes.
void addCommon(CLI::App &command, Request &request);

/// The help of the innermost command that was named.
std::string helpFor(const CLI::App &app);

/// The names of all commands, with commas.
std::string commandNames(const CLI::App &app);

} // namespace dcache

#endif // TOOLS_DCACHE_COMMANDLINE_HELP_H
