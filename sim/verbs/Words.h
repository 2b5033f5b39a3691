/*
 * Commands taken apart into words. Pure functions.
 */
#ifndef SIM_VERBS_WORDS_H
#define SIM_VERBS_WORDS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sim::verbs {

struct Word {
    std::string text;
    /// Something of it stood in quotes: it is then no word of the language.
    bool isQuoted = false;
    /// Where the first '=' outside quotes stands; npos without one. Only what begins before a quote is an option.
    size_t equals = std::string::npos;
};

/// A line that holds words.
struct CommandLine {
    std::string mark; ///< what an error begins with: "line 3: ", or nothing when there is but one line
    std::vector<Word> words;
};

/// The lines of a text that hold words. Throws CommandError for a quote that is not closed and for an unknown escape.
std::vector<CommandLine> linesOf(const std::string &text);

/// The words of one line, comments left out. Throws likewise.
std::vector<Word> wordsOf(std::string_view line);

/// A word that is read back as this text: in quotes where it has to be.
std::string wordFor(const std::string &text);

} // namespace sim::verbs

#endif // SIM_VERBS_WORDS_H
