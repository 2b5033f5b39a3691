/*
 * What a command says, once it has been understood: the words that its pattern leaves open.
 *
 * Plain data. Asked for a value that the pattern has no place for, it throws std::out_of_range: an error of the
 * program.
 */
#ifndef SIM_VERBS_GIVEN_H
#define SIM_VERBS_GIVEN_H

#include <map>
#include <string>
#include <vector>

#include "sim/Simulator.h"
#include "sim/verbs/Values.h"

namespace sim::verbs {

class Given {
public:
    /// Whether an optional word or an option was given.
    bool has(const char *name) const { return _values.count(name) != 0; }
    /// What stands in the place of a word in capitals, or after NAME=.
    const std::string &text(const char *name) const { return _values.at(name); }
    /// The same as the number that it is known to be.
    unsigned number(const char *name) const { return numberIn(text(name)).value(); }
    int32_t integer(const char *name) const { return integerIn(text(name)).value(); }
    /// Whether an option that is yes or no was given as yes; `otherwise` when it was not given.
    bool isYes(const char *name, bool otherwise) const { return has(name) ? text(name) == "yes" : otherwise; }
    /// The word that was chosen, as the pattern writes it; empty when none had to be.
    const std::string &choice() const { return _choice; }
    /// The words that may be many.
    const std::vector<std::string> &rest() const { return _rest; }

    void put(const std::string &name, const std::string &value) { _values[name] = value; }
    void choose(const std::string &word) { _choice = word; }
    void append(const std::string &word) { _rest.push_back(word); }

    Notify notify = Notify::yes;

private:
    std::map<std::string, std::string> _values;
    std::string _choice;
    std::vector<std::string> _rest;
};

} // namespace sim::verbs

#endif // SIM_VERBS_GIVEN_H
