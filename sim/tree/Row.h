/*
 * One row of the switch's SML tree: everything there is to say about one attribute.
 *
 * A domain of the switch (its identity, its chassis, ...) is a plain struct and a table of such rows, in
 * one pair of files under sim/model/. A pattern may hold one "%u", which stands for an index.
 */
#ifndef SIM_TREE_ROW_H
#define SIM_TREE_ROW_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace sim {

struct Switch;

/// Which values an attribute takes.
struct Rule {
    bool (*accepts)(const std::string &value);
    const char *allowed; ///< the same in words
};

/// What clients may do with an attribute. All of them may be read.
enum class Access {
    readOnly,      ///< the switch alone changes it
    configuration, ///< clients may set it in admin mode, inside an edit of the configuration
};

struct Row {
    const char *pattern = nullptr;
    Access access = Access::readOnly;
    const Rule *rule = nullptr;
    int32_t notification = 0; ///< sent when the value changes; 0 for none
    std::string (*read)(const Switch &device, unsigned index) = nullptr;
    /// Given only values that fit the rule.
    void (*write)(Switch &device, unsigned index, const std::string &value) = nullptr;
    /// How many indexes there are; null without "%u".
    unsigned (*count)(const Switch &device) = nullptr;
    /// Whether clients get at the attribute as the switch is equipped; null: always.
    bool (*supported)(const Switch &device) = nullptr;
};

/// The rows of one domain.
struct Rows {
    const Row *first;
    size_t count;

    const Row *begin() const { return first; }
    const Row *end() const { return first + count; }
};

} // namespace sim

#endif // SIM_TREE_ROW_H
