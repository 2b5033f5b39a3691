/*
 * What tests of the command language share: commands that are carried out or refused, and the verbs of the help.
 *
 * Thread-safety: pure functions of what they are given.
 */
#ifndef TESTS_SIM_VERBS_COMMANDS_H
#define TESTS_SIM_VERBS_COMMANDS_H

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/verbs/perform.h"

namespace simtest {

/// What is said when a command is refused; a failure of the test when it is not.
inline std::string refusalOf(sim::Simulator &device, const std::string &command) {
    try {
        sim::perform(device, command);
    } catch (const sim::CommandError &error) {
        return error.what();
    }
    ADD_FAILURE() << command << " is carried out";
    return "";
}

inline std::vector<std::string> linesIn(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// A verb as the help shows it.
struct HelpEntry {
    std::string pattern;
    std::string example;
    bool canBeSilent = false;
};

inline std::vector<HelpEntry> helpEntries() {
    const std::string mark = "        Example: ";
    const std::string silently = " [silently]";
    const std::vector<std::string> lines = linesIn(sim::verbsHelp());
    std::vector<HelpEntry> entries;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].compare(0, mark.size(), mark) != 0)
            continue;
        HelpEntry entry;
        size_t first = i;
        while (lines[first].compare(0, 5, "     ") == 0)
            --first;
        entry.pattern = lines[first].substr(4);
        entry.example = lines[i].substr(mark.size());
        const size_t end = entry.pattern.size() - std::min(entry.pattern.size(), silently.size());
        entry.canBeSilent = entry.pattern.substr(end) == silently;
        if (entry.canBeSilent)
            entry.pattern.resize(end);
        entries.push_back(entry);
    }
    return entries;
}

} // namespace simtest

#endif // TESTS_SIM_VERBS_COMMANDS_H
