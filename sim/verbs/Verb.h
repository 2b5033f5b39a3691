/*
 * The verbs of the command language, a row each. Constant tables, readable from any thread.
 */
#ifndef SIM_VERBS_VERB_H
#define SIM_VERBS_VERB_H

#include <cstddef>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "sim/verbs/Given.h"
#include "sim/verbs/Pattern.h"

namespace sim::verbs {

/// Whether a verb sends notifications that "silently" can keep back.
enum class Tells { notification, nothing };

struct Verb {
    const char *pattern = nullptr; ///< see Pattern.h
    const char *help = nullptr;    ///< one sentence, and lines that explain words if they need it
    const char *example = nullptr;
    Tells tells = Tells::nothing;
    /// Carries it out, and returns what there is to tell: lines without a newline after the last. Throws
    /// std::invalid_argument when that is refused.
    std::string (*act)(Simulator &device, const Given &given) = nullptr;
    /// Throws std::invalid_argument for what can be known to be refused without a switch.
    void (*check)(const Given &given) = nullptr;
};

/// The verbs of one field, with its name.
struct VerbGroup {
    const char *name;
    const Verb *first;
    size_t count;

    const Verb *begin() const { return first; }
    const Verb *end() const { return first + count; }
};

VerbGroup attributeVerbs();
VerbGroup hardwareVerbs();
VerbGroup fabricVerbs();
VerbGroup zoningVerbs();
VerbGroup clientVerbs();
VerbGroup clockVerbs();
VerbGroup ruleVerbs();
VerbGroup helpVerbs();

/// All groups in the order of the help.
const std::vector<VerbGroup> &verbGroups();

/// A verb with its pattern taken apart.
struct KnownVerb {
    const Verb *verb = nullptr;
    Pattern pattern;
};

/// All verbs in the same order. Of those that fit a command, the first is meant.
const std::vector<KnownVerb> &allVerbs();

/// What a verb does, in the form in which the help shows it.
std::string helpOn(const Verb &verb);

} // namespace sim::verbs

#endif // SIM_VERBS_VERB_H
