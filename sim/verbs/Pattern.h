/*
 * The pattern of a command, and how far a command follows it. Constant once made, so usable from any thread.
 *
 *     port                 the word itself
 *     online|offline       one of these, the choice; at most one in a pattern
 *     PORT                 a value, of the kind that has this name
 *     MEMBER...            as many such values as there are, at the end
 *     domain=NUMBER        an option, which has to be given, anywhere after the words themselves
 *     wave=short|long      one that takes one of these
 *     [...]                any of these, but it may be left out; a word alone may then stand where options do
 */
#ifndef SIM_VERBS_PATTERN_H
#define SIM_VERBS_PATTERN_H

#include <set>
#include <string>
#include <vector>

#include "sim/verbs/Given.h"
#include "sim/verbs/Words.h"

namespace sim::verbs {

/// How a command fared with a pattern.
struct Attempt {
    bool isComplete = false;
    Given given; ///< when complete
    /// Otherwise: the index of the word that does not fit, or the number of words when there are too few,
    size_t stoppedAt = 0;
    /// what could stand there, in words,
    std::vector<std::string> expected;
    /// and the words of the language among it.
    std::vector<std::string> candidates;
};

class Pattern {
public:
    /// Throws std::logic_error for a word in capitals that is no kind of value.
    explicit Pattern(const std::string &text);

    const std::string &text() const { return _text; }
    /// The word that a command of this pattern begins with.
    const std::string &verb() const { return _elements.front().name; }
    /// Whether the words are the first ones of the pattern.
    bool beginsWith(const std::vector<std::string> &words) const;

    Attempt match(const std::vector<Word> &words) const;

private:
    enum class Form { word, choice, value, rest };

    struct Element {
        Form form = Form::word;
        std::string name; ///< the word; the kind of value; the option's name
        std::vector<std::string> choices;
        const Kind *kind = nullptr;
        bool isOptional = false;
    };

    static Element elementOf(std::string text);
    static Element optionOf(const std::string &text, size_t equals);
    static std::string shown(const Element &option);
    static void expect(const Element &element, Attempt &attempt);
    static bool take(const Element &element, const Word &word, Given &given);
    void expectOptions(const std::set<std::string> &taken, Attempt &attempt) const;
    const Element *findOption(const Word &word) const;
    static bool takeOption(const Element &option, const Word &word, Attempt &attempt);

    std::string _text;
    std::vector<Element> _elements; ///< but for the options
    std::vector<Element> _options;
};

} // namespace sim::verbs

#endif // SIM_VERBS_PATTERN_H
