#include "sim/verbs/Pattern.h"

#include <algorithm>
#include <stdexcept>

#include "sim/levers/Nearest.h"

namespace sim::verbs {

namespace {

std::vector<std::string> splitAt(char separator, const std::string &text) {
    std::vector<std::string> parts;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(separator, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

const Kind &knownKind(const std::string &name) {
    const Kind *kind = findKind(name);
    if (!kind)
        throw std::logic_error("there is no kind of value " + name);
    return *kind;
}

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

/// The choice that a word makes, as the pattern writes it; empty for none.
std::string chosen(const std::vector<std::string> &choices, const std::string &text) {
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [&](const std::string &choice) { return isSameWord(choice, text); });
    return found == choices.end() ? std::string() : *found;
}

std::string joined(const std::vector<std::string> &choices) {
    std::string text;
    for (const std::string &choice : choices)
        text += (text.empty() ? "" : "|") + choice;
    return text;
}

/// The words of the language that a value of this kind can be.
std::vector<std::string> wordsOf(const Kind &kind) {
    return kind.words ? kind.words() : std::vector<std::string>();
}

std::string described(const Kind &kind) {
    return std::string(kind.name) + " (" + kind.meaning + ")";
}

} // namespace

Pattern::Pattern(const std::string &text) : _text(text) {
    for (const std::string &part : splitAt(' ', text)) {
        const bool isOptional = part.front() == '[';
        const std::string inner = isOptional ? part.substr(1, part.size() - 2) : part;
        const size_t equals = inner.find('=');
        Element element = equals == std::string::npos ? elementOf(inner) : optionOf(inner, equals);
        element.isOptional = isOptional || element.form == Form::rest;
        const bool isFlag = isOptional && element.form == Form::word;
        (equals == std::string::npos && !isFlag ? _elements : _options).push_back(element);
    }
}

Pattern::Element Pattern::elementOf(std::string text) {
    Element element;
    if (text.find('|') != std::string::npos) {
        element.form = Form::choice;
        element.choices = splitAt('|', text);
    } else if (isCapital(text.front())) {
        const size_t dots = text.find("...");
        element.form = dots == std::string::npos ? Form::value : Form::rest;
        text.resize(std::min(dots, text.size()));
        element.kind = &knownKind(text);
    }
    element.name = text;
    return element;
}

Pattern::Element Pattern::optionOf(const std::string &text, size_t equals) {
    Element option = elementOf(text.substr(equals + 1));
    if (option.form == Form::word)
        throw std::logic_error("an option takes a value or one of several words: " + text);
    option.name = text.substr(0, equals);
    return option;
}

bool Pattern::beginsWith(const std::vector<std::string> &words) const {
    if (words.size() > _elements.size())
        return false;
    for (size_t i = 0; i < words.size(); ++i) {
        const Element &element = _elements[i];
        const bool fits = element.form == Form::word     ? isSameWord(element.name, words[i])
                          : element.form == Form::choice ? !chosen(element.choices, words[i]).empty()
                                                         : element.kind->accepts(words[i]);
        if (!fits && !isSameWord(element.name, words[i]))
            return false;
    }
    return true;
}

/// An option as a command would say it.
std::string Pattern::shown(const Element &option) {
    return option.form == Form::word ? option.name
                                     : option.name + "=" + (option.kind ? option.kind->name : joined(option.choices));
}

/// Adds what could stand where an element is.
void Pattern::expect(const Element &element, Attempt &attempt) {
    if (element.form == Form::word) {
        attempt.expected.push_back(element.name);
        attempt.candidates.push_back(element.name);
    } else if (element.form == Form::choice) {
        attempt.expected.push_back(joined(element.choices));
        attempt.candidates.insert(attempt.candidates.end(), element.choices.begin(), element.choices.end());
    } else {
        attempt.expected.push_back(described(*element.kind));
        const std::vector<std::string> words = wordsOf(*element.kind);
        attempt.candidates.insert(attempt.candidates.end(), words.begin(), words.end());
    }
}

void Pattern::expectOptions(const std::set<std::string> &taken, Attempt &attempt) const {
    for (const Element &option : _options) {
        if (taken.count(option.name) != 0)
            continue;
        attempt.expected.push_back(shown(option));
        attempt.candidates.push_back(option.name + (option.form == Form::word ? "" : "="));
    }
}

/// False when the word does not fit the element.
bool Pattern::take(const Element &element, const Word &word, Given &given) {
    if (element.form == Form::word)
        return !word.isQuoted && isSameWord(word.text, element.name);
    if (element.form == Form::choice) {
        const std::string choice = word.isQuoted ? std::string() : chosen(element.choices, word.text);
        given.choose(choice);
        return !choice.empty();
    }
    if (!element.kind->accepts(word.text))
        return false;
    if (element.form == Form::rest)
        given.append(word.text);
    else
        given.put(element.name, word.text);
    return true;
}

const Pattern::Element *Pattern::findOption(const Word &word) const {
    const bool isFlag = word.equals == std::string::npos;
    if (isFlag && word.isQuoted)
        return nullptr;
    const std::string name = word.text.substr(0, word.equals);
    const auto found = std::find_if(_options.begin(), _options.end(), [&](const Element &option) {
        return isSameWord(option.name, name) && (option.form == Form::word) == isFlag;
    });
    return found == _options.end() ? nullptr : &*found;
}

/// False, with what is expected, when the option does not take the value.
bool Pattern::takeOption(const Element &option, const Word &word, Attempt &attempt) {
    if (option.form == Form::word) {
        attempt.given.put(option.name, "");
        return true;
    }
    const std::string value = word.text.substr(word.equals + 1);
    const std::string choice = chosen(option.choices, value);
    if (option.kind ? option.kind->accepts(value) : !choice.empty()) {
        attempt.given.put(option.name, option.kind ? value : choice);
        return true;
    }
    attempt.expected.push_back(option.name + "=" + (option.kind ? described(*option.kind) : joined(option.choices)));
    for (const std::string &possible : option.kind ? wordsOf(*option.kind) : option.choices)
        attempt.candidates.push_back(option.name + "=" + possible);
    return false;
}

Attempt Pattern::match(const std::vector<Word> &words) const {
    Attempt attempt;
    std::set<std::string> options;
    auto element = _elements.begin();
    for (; attempt.stoppedAt < words.size(); ++attempt.stoppedAt) {
        const Word &word = words[attempt.stoppedAt];
        const bool isWordAhead =
            std::any_of(element, _elements.end(), [](const Element &ahead) { return ahead.form == Form::word; });
        if (const Element *option = isWordAhead ? nullptr : findOption(word)) {
            if (options.count(option->name) != 0)
                attempt.expected.push_back(option->name + (option->form == Form::word ? "" : "=") + " once only");
            else if (takeOption(*option, word, attempt)) {
                options.insert(option->name);
                continue;
            }
            return attempt;
        }
        Attempt refused = attempt;
        while (element != _elements.end() && !take(*element, word, attempt.given)) {
            expect(*element, refused);
            if (!element->isOptional)
                return refused;
            ++element;
        }
        if (element == _elements.end()) {
            expectOptions(options, refused);
            return refused;
        }
        if (element->form != Form::rest)
            ++element;
    }
    element = std::find_if(element, _elements.end(), [](const Element &missing) { return !missing.isOptional; });
    if (element != _elements.end())
        expect(*element, attempt);
    for (const Element &option : _options)
        if (!option.isOptional && options.count(option.name) == 0 && attempt.expected.empty())
            attempt.expected.push_back(shown(option));
    attempt.isComplete = attempt.expected.empty();
    return attempt;
}

} // namespace sim::verbs
