/*
 * The SML tree: every attribute of the switch, found by its key.
 *
 * Thread-safe: the tree is constant; the switch it is asked about is guarded by its owner.
 */
#ifndef SIM_TREE_TREE_H
#define SIM_TREE_TREE_H

#include <string>
#include <string_view>
#include <vector>

#include "sim/tree/Row.h"

namespace sim {

/// A key that was found: its row and its place in it.
struct Attribute {
    const Row *row = nullptr;
    Index index;

    explicit operator bool() const { return row != nullptr; }
    Status status(const Switch &device) const { return row->status ? row->status(device, index) : kOk; }
    unsigned seconds(const Switch &device) const { return row->seconds ? row->seconds(device, index) : 0; }
    std::string read(const Switch &device) const { return row->read(device, index); }
    void write(Switch &device, const std::string &value) const { row->write(device, index, value); }
    bool isTaken(const Switch &device, const std::string &value) const {
        return row->isTaken && row->isTaken(device, value);
    }
    Announcements follow(Switch &device) const { return row->follow ? row->follow(device) : Announcements(); }
};

/// The attribute of a key; none for an unknown key and for an index or a name that this switch does not have.
Attribute findAttribute(const Switch &device, std::string_view key);

/// Every key that this switch has, in the order of the tree.
std::vector<std::string> allKeys(const Switch &device);

} // namespace sim

#endif // SIM_TREE_TREE_H
