/*
 * Finding and removing what is listed, by name or by value. For the zoning model. Pure functions of what they are given.
 */
#ifndef TESTS_SCENARIO_ZONINGFIND_H
#define TESTS_SCENARIO_ZONINGFIND_H

#include <algorithm>
#include <string>

#include "sim/Simulator.h"

namespace scenario {

/// Null for a null name, and when there is nothing of the name.
template <class Things> auto *named(Things &things, const char *name) {
    const auto found = std::find_if(things.begin(), things.end(),
                                    [name](const auto &thing) { return name != nullptr && thing.name == name; });
    return found == things.end() ? nullptr : &*found;
}

template <class Things> auto *named(Things &things, const std::string &name) {
    return named(things, name.c_str());
}

/// False when there is nothing of the name.
template <class Things> bool eraseNamed(Things &things, const char *name) {
    const auto *thing = named(things, name);
    if (thing != nullptr)
        things.erase(things.begin() + (thing - things.data()));
    return thing != nullptr;
}

template <class List, class Thing> bool contains(const List &list, const Thing &thing) {
    return std::find(list.begin(), list.end(), thing) != list.end();
}

/// False when the zone or alias does not have the member.
template <class Group> bool eraseMember(Group &group, const sim::ZoneMember &member) {
    const auto found = std::find(group.members.begin(), group.members.end(), member);
    if (found == group.members.end())
        return false;
    group.members.erase(found);
    return true;
}

} // namespace scenario

#endif // TESTS_SCENARIO_ZONINGFIND_H
