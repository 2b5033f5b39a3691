/*
 * One row of the switch's SML tree: everything there is to say about one attribute.
 *
 * A domain of the switch (its identity, its chassis, ...) is a plain struct and a table of such rows, in
 * one pair of files under sim/model/. A pattern may hold two placeholders, each "%u", which stands for a number, or
 * "%s", which stands for a name. A name may hold anything and comes last.
 */
#ifndef SIM_TREE_ROW_H
#define SIM_TREE_ROW_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/Status.h"
#include "sim/model/Announcement.h"

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

/// The numbers of what the placeholders of a pattern stand for; 0 where there is no placeholder.
struct Index {
    unsigned first = 0;
    unsigned second = 0;
};

/// What a placeholder can stand for: things that have numbers. `outer` is the number that the placeholder before it
/// stands for, if there is one.
struct Axis {
    /// All numbers are below this.
    unsigned (*limit)(const Switch &device, unsigned outer) = nullptr;
    /// Whether there is something of a number below the limit; null: always.
    bool (*has)(const Switch &device, unsigned outer, unsigned number) = nullptr;
    /// From names to numbers and back; null for "%u", which stands for the number itself.
    std::optional<unsigned> (*find)(const Switch &device, unsigned outer, std::string_view name) = nullptr;
    std::string (*name)(const Switch &device, unsigned outer, unsigned number) = nullptr;
};

struct Row {
    const char *pattern = nullptr;
    Access access = Access::readOnly;
    const Rule *rule = nullptr;
    int32_t notification = 0; ///< sent when the value changes; 0 for none
    std::string (*read)(const Switch &device, Index at) = nullptr;
    /// Given only values that fit the rule; null for a rule that nothing fits.
    void (*write)(Switch &device, Index at, const std::string &value) = nullptr;
    /// What the first placeholder stands for; null without one.
    const Axis *axis = nullptr;
    Source source = Source::none;
    /// What clients are answered, kOk to get the value or to have it set; null: always kOk.
    Status (*status)(const Switch &device, Index at) = nullptr;
    /// What the second placeholder stands for; null without one.
    const Axis *innerAxis = nullptr;
    /// Seconds of uptime that pass before clients are answered; null: none.
    unsigned (*seconds)(const Switch &device, Index at) = nullptr;
    /// Whether a value that fits the rule belongs to somebody else; null: never.
    bool (*isTaken)(const Switch &device, const std::string &value) = nullptr;
    /// What else a change of the value brings about, and what is sent of it, after the attribute's own notification;
    /// null: nothing.
    Announcements (*follow)(Switch &device) = nullptr;
    /// What was written, where that may be another thing than what is read; null: what is read.
    std::string (*stored)(const Switch &device, Index at) = nullptr;
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
