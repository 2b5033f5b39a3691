/*
 * Reading the tables of a scenario file: what is known, of the right type and in range, and what is wrong with the rest.
 *
 * A name that is asked for is a known one; whoever has read all of a table calls refuseOthers(). Whatever is wrong becomes
 * a complaint and reads as if it were not there.
 *
 * For one thread at a time.
 */
#ifndef SIM_SCENARIO_FIELDS_H
#define SIM_SCENARIO_FIELDS_H

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/scenario/Scenario.h"
#include "sim/scenario/Toml.h"

namespace sim {

/// What is wrong with a file.
class Complaints {
public:
    void add(FilePosition at, const std::string &what);
    bool any() const { return !_byPosition.empty(); }
    size_t count() const { return _byPosition.size(); }
    /// In the order of the file.
    std::vector<std::string> lines(const std::string &fileName) const;

private:
    std::multimap<std::pair<unsigned, unsigned>, std::string> _byPosition;
};

/// A text with its control characters as \x and two hexadecimal digits.
std::string onOneLine(const std::string &text);

FilePosition positionOf(const toml::source_region &region);

/// A text, or a table with the bytes of one that is no valid text: { bytes = "FF00" }. Nothing when it is neither.
std::optional<std::string> textIn(const toml::node &node);
/// What a key of the switch is given: a text as it is, a whole number in decimal, true and false as True and False.
std::optional<std::string> valueIn(const toml::node &node);

class Fields {
public:
    /// `what` says what the table is about: "a port".
    Fields(const toml::table &table, std::string what, Complaints &complaints);

    /// The node of a name, which is a known one from now on; null without one.
    const toml::node *find(const std::string &name);

    std::optional<std::string> text(const std::string &name);
    /// One of some words.
    std::optional<std::string> word(const std::string &name, const std::vector<std::string> &allowed);
    std::optional<std::string> value(const std::string &name);
    std::optional<int64_t> number(const std::string &name, int64_t lowest, int64_t highest);
    std::optional<bool> flag(const std::string &name);
    std::optional<std::chrono::milliseconds> duration(const std::string &name);
    /// A list of texts, with their places; empty without one.
    std::vector<ScenarioCommand> texts(const std::string &name);
    /// The tables of a list, or the table of a name; empty without one.
    std::vector<const toml::table *> tables(const std::string &name);
    const toml::table *table(const std::string &name);

    bool has(const std::string &name) { return find(name) != nullptr; }
    /// Complains of a name that is not there.
    bool require(const std::string &name);
    /// Complains of every name that was never asked for.
    void refuseOthers();

    void complain(const std::string &what) const { _complaints.add(at(), what); }
    void complainOf(const std::string &name, const std::string &what) const;
    FilePosition at() const { return positionOf(_table.source()); }
    /// Where a name's value stands; where the table stands without one.
    FilePosition at(const std::string &name) const;
    Complaints &complaints() const { return _complaints; }

private:
    const toml::table &_table;
    const std::string _what;
    Complaints &_complaints;
    std::vector<std::string> _known;
};

} // namespace sim

#endif // SIM_SCENARIO_FIELDS_H
