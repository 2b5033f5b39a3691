#include "sim/zoning/NameLists.h"

#include <algorithm>

#include "sim/zoning/Names.h"

namespace sim {

NameLists &NameLists::instance() {
    static NameLists &lists = *new NameLists;
    return lists;
}

char *NameLists::handOut(const std::vector<std::string> &names) {
    std::vector<char> list(std::max<size_t>(names.size() * kNameField, 1));
    for (size_t i = 0; i < names.size(); ++i)
        putName(&list[i * kNameField], names[i]);
    const std::lock_guard<std::mutex> lock(_mutex);
    std::vector<char> &kept = _lists[std::this_thread::get_id()];
    kept.swap(list);
    return kept.data();
}

/// The memory stays until the thread's next list, and still ends in a terminator.
void NameLists::expire() {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _lists.find(std::this_thread::get_id());
    if (found != _lists.end())
        std::fill(found->second.begin(), found->second.end() - 1, '?');
}

} // namespace sim
