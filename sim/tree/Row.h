/*
 * One row of the switch's SML tree: everything there is to say about one attribute.
 *
 * A domain of the switch (its identity, its chassis, ...) is a plain struct and a table of such rows, in
 * one pair of files under sim/model/. A pattern may hold one "%u", which stands for an index, or one "%s",
 * which stands for a name.
 */
#ifndef SIM_TREE_ROW_H
#define SIM_TREE_ROW_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "sim/Status.h"

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

/// Which source number of its notification tells the index of an attribute.
enum class Source {
    none, ///< all three are 0
    slot, ///< the second
    port, ///< the third
};

struct Row {
    const char *pattern = nullptr;
    Access access = Access::readOnly;
    const Rule *rule = nullptr;
    int32_t notification = 0; ///< sent when the value changes; 0 for none
    std::string (*read)(const Switch &device, unsigned index) = nullptr;
    /// Given only values that fit the rule; null for a rule that nothing fits.
    void (*write)(Switch &device, unsigned index, const std::string &value) = nullptr;
    /// How many indexes there are; null without "%u" and "%s".
    unsigned (*count)(const Switch &device) = nullptr;
    Source source = Source::none;
    /// What clients are answered, kOk to get the value; null: always kOk.
    Status (*status)(const Switch &device, unsigned index) = nullptr;
    /// The name that "%s" stands for at an index; null without "%s".
    std::string (*name)(const Switch &device, unsigned index) = nullptr;
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
