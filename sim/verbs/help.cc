// The verb that tells of all verbs.

#include <iterator>

#include "sim/levers/Nearest.h"
#include "sim/verbs/Lines.h"
#include "sim/verbs/Verb.h"
#include "sim/verbs/perform.h"

namespace sim::verbs {

namespace {

constexpr const char *kWriting =
    R"(What stands in [] may be left out. Of words with | between them, one is chosen. What has a = may stand anywhere
after the words in small letters. A text with blanks stands in double quotes; in them \" is a quote, \\ a backslash,
and \x41 the byte 0x41. "silently" as the last word keeps back the notifications of a change. What follows a # is a
comment. Of several commands, each stands on a line of its own.)";

std::vector<std::string> namesOfVerbs() {
    std::vector<std::string> names;
    for (const KnownVerb &known : allVerbs())
        names.push_back(known.pattern.verb());
    return names;
}

/// Of all verbs, or of those that begin with the given words.
std::string tellHelp(Simulator &, const Given &given) {
    if (given.rest().empty())
        return verbsHelp();
    Lines lines;
    for (const KnownVerb &known : allVerbs())
        if (known.pattern.beginsWith(given.rest()))
            lines.add(helpOn(*known.verb));
    if (!lines.text().empty())
        return lines.text();
    const std::string near = nearest(given.rest().front(), namesOfVerbs());
    throw std::invalid_argument("no command begins like this" +
                                (near.empty() ? std::string() : "; did you mean 'help " + near + "'?"));
}

constexpr Verb kVerbs[] = {
    {"help [VERB...]", "Tells of all commands, or of those that begin with these words.", "help port", Tells::nothing,
     tellHelp},
};

} // namespace

VerbGroup helpVerbs() {
    return {"Help", kVerbs, std::size(kVerbs)};
}

std::string helpOn(const Verb &verb) {
    return std::string(verb.pattern) + (verb.tells == Tells::notification ? " [silently]" : "") + "\n        " +
           verb.help + "\n        Example: " + verb.example;
}

} // namespace sim::verbs

namespace sim {

std::string verbsHelp() {
    verbs::Lines lines;
    for (const verbs::VerbGroup &group : verbs::verbGroups()) {
        lines.add(std::string(group.name) + ":");
        for (const verbs::Verb &verb : group)
            lines.add("    " + verbs::helpOn(verb));
        lines.add("");
    }
    lines.add("Words in capitals:");
    lines.add(verbs::kindsHelp());
    lines.add(verbs::kWriting);
    return lines.text();
}

} // namespace sim
