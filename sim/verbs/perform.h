/*
 * The command language of the simulated switch: what a person, a file or another program says to have done to it.
 *
 *     port 3 offline
 *     peer add 10:00:00:C0:DD:00:00:07 domain=7 priority=2    # a comment
 *     login 7:5 node=2000000000000001 port=2100000000000001 silently
 *
 * A command is a line of words between blanks. A word that holds blanks, '"', '=' or '#', and one that reads like
 * a word of the language, stands in double quotes; in them \" is a quote, \\ a backslash, and \x with two
 * hexadecimal digits any byte, as records show them. Words of the language are taken in small and capital
 * letters. Empty lines, and what follows a '#' at the beginning of a word, are passed over. "silently" as the last word
 * keeps back the notifications that belong to the change.
 *
 * Everything is done through sim/Simulator.h alone, so it is the same whoever says it.
 *
 * Thread-safe, as the switch is; not to be called while holding what a notification callback waits for.
 */
#ifndef SIM_VERBS_PERFORM_H
#define SIM_VERBS_PERFORM_H

#include <stdexcept>
#include <string>

#include "sim/Simulator.h"

namespace sim {

/// Says what is wrong with a command, what would be allowed in its place, and the nearest word that is. In a text of
/// several lines it says which line.
class __attribute__((visibility("default"))) CommandError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// Carries out commands, one to a line, and returns what there is to tell: lines without a newline after the
/// last, often nothing at all. All lines are understood before the first is carried out. When the switch refuses
/// one, those before it have been carried out, and the rest are not.
__attribute__((visibility("default"))) std::string perform(Simulator &device, const std::string &commands);

/// Throws as perform() does unless all the commands can be understood. Whether a switch has what they are about is not
/// known without one.
__attribute__((visibility("default"))) void checkCommands(const std::string &commands);

/// Adds a rule whose action is given as commands (Fault::actionText): they are carried out on the switch. Throws as
/// Simulator::addFault() does.
int addRule(Simulator &device, Fault rule);

/// Every verb with its help and an example, and how to write commands.
__attribute__((visibility("default"))) std::string verbsHelp();

} // namespace sim

#endif // SIM_VERBS_PERFORM_H
