#include "sim/verbs/perform.h"

#include <algorithm>

#include "sim/levers/Nearest.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"
#include "sim/verbs/Words.h"

namespace sim::verbs {

namespace {

/// A command that has been understood.
struct Understood {
    const Verb *verb = nullptr;
    Given given;
    std::string mark; ///< of its line, for errors
};

/// The question for a word: of an option the name counts, when the whole is like nothing.
std::string didYouMean(const Word &word, const std::vector<std::string> &candidates) {
    std::string question = sim::didYouMean(word.text, candidates);
    if (!question.empty() || word.equals == std::string::npos)
        return question;
    return sim::didYouMean(word.text.substr(0, word.equals + 1), candidates);
}

[[noreturn]] void refuseVerb(const std::string &typed) {
    std::vector<std::string> verbs;
    for (const KnownVerb &known : allVerbs())
        if (verbs.empty() || verbs.back() != known.pattern.verb())
            verbs.push_back(known.pattern.verb());
    std::string suggestion = sim::didYouMean(typed, verbs);
    if (suggestion.empty()) {
        suggestion = "; there are ";
        for (const std::string &verb : verbs)
            suggestion += (verb == verbs.front() ? "" : ", ") + verb;
    }
    throw CommandError("there is no verb '" + typed + "'" + suggestion);
}

void appendNew(std::vector<std::string> &texts, const std::vector<std::string> &more) {
    for (const std::string &text : more)
        if (std::find(texts.begin(), texts.end(), text) == texts.end())
            texts.push_back(text);
}

/// Tells where the command leaves the patterns that it follows for longest, and how they go on.
[[noreturn]] void refuseCommand(const std::vector<Word> &words, const std::vector<Attempt> &attempts) {
    size_t stoppedAt = 0;
    for (const Attempt &attempt : attempts)
        stoppedAt = std::max(stoppedAt, attempt.stoppedAt);
    if (stoppedAt == 0)
        refuseVerb(words.front().text);
    std::vector<std::string> expected;
    std::vector<std::string> candidates;
    for (const Attempt &attempt : attempts)
        if (attempt.stoppedAt == stoppedAt) {
            appendNew(expected, attempt.expected);
            appendNew(candidates, attempt.candidates);
        }
    const bool isShort = stoppedAt == words.size();
    std::string text = isShort ? "something is missing at the end"
                               : "'" + words[stoppedAt].text + "' cannot be word " + std::to_string(stoppedAt + 1);
    if (expected.empty())
        throw CommandError(text + "; the command ends before it; texts with blanks stand in double quotes");
    text += "; expected: ";
    for (const std::string &what : expected)
        text += (what == expected.front() ? "" : ", or ") + what;
    throw CommandError(text + (isShort ? "" : didYouMean(words[stoppedAt], candidates)));
}

Understood understand(std::vector<Word> words) {
    const bool isSilent = words.size() > 1 && !words.back().isQuoted && isSameWord(words.back().text, "silently");
    if (isSilent)
        words.pop_back();
    std::vector<Attempt> attempts;
    for (const KnownVerb &known : allVerbs()) {
        Attempt attempt = known.pattern.match(words);
        if (!attempt.isComplete) {
            attempts.push_back(std::move(attempt));
            continue;
        }
        if (isSilent && known.verb->tells == Tells::nothing)
            throw CommandError("'" + known.pattern.verb() +
                               "' sends nothing that 'silently' could keep back; in double quotes it is a text");
        if (known.verb->check)
            known.verb->check(attempt.given);
        attempt.given.notify = isSilent ? Notify::no : Notify::yes;
        return {known.verb, attempt.given, ""};
    }
    refuseCommand(words, attempts);
}

/// All commands of a text. What goes wrong is told with the number of the line, unless there is but one.
std::vector<Understood> understandAll(const std::string &commands) {
    std::vector<Understood> all;
    for (const CommandLine &line : linesOf(commands)) {
        try {
            all.push_back(understand(line.words));
        } catch (const std::invalid_argument &error) {
            throw CommandError(line.mark + error.what());
        }
        all.back().mark = line.mark;
    }
    return all;
}

} // namespace

const std::vector<VerbGroup> &verbGroups() {
    static const std::vector<VerbGroup> groups = {hardwareVerbs(), fabricVerbs(), zoningVerbs(),    clientVerbs(),
                                                  clockVerbs(),    ruleVerbs(),   attributeVerbs(), helpVerbs()};
    return groups;
}

const std::vector<KnownVerb> &allVerbs() {
    static const std::vector<KnownVerb> verbs = [] {
        std::vector<KnownVerb> all;
        for (const VerbGroup &group : verbGroups())
            for (const Verb &verb : group)
                all.push_back({&verb, Pattern(verb.pattern)});
        return all;
    }();
    return verbs;
}

} // namespace sim::verbs

namespace sim {

void checkCommands(const std::string &commands) {
    verbs::understandAll(commands);
}

int addRule(Simulator &device, Fault rule) {
    if (!rule.action && !rule.actionText.empty())
        rule.action = [&device, commands = rule.actionText] { perform(device, commands); };
    return device.addFault(rule);
}

std::string perform(Simulator &device, const std::string &commands) {
    verbs::Lines told;
    for (const auto &[verb, given, mark] : verbs::understandAll(commands)) {
        try {
            const std::string text = verb->act(device, given);
            if (!text.empty())
                told.add(text);
        } catch (const std::invalid_argument &error) {
            throw CommandError(mark + error.what());
        }
    }
    return told.text();
}

} // namespace sim
