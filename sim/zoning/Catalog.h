/*
 * Things of different keys in the order in which they came, each found by its key at once. The key of a named thing is
 * its name; what is found may be changed, but for its key.
 *
 * Plain data; guarded by its owner.
 */
#ifndef SIM_ZONING_CATALOG_H
#define SIM_ZONING_CATALOG_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace sim {

inline const std::string &keyOf(const std::string &name) {
    return name;
}

template <class Thing> auto keyOf(const Thing &thing) -> decltype((thing.name)) {
    return thing.name;
}

template <class Thing> class Catalog {
public:
    /// False, and nothing changes, when there is a thing of its key.
    bool add(Thing thing) {
        const auto [place, isNew] = _places.emplace(keyOf(thing), _things.size());
        if (!isNew)
            return false;
        try {
            _things.push_back(std::move(thing));
        } catch (...) {
            _places.erase(place);
            throw;
        }
        return true;
    }

    /// Null when there is nothing of this key.
    const Thing *find(const std::string &key) const {
        const auto found = _places.find(key);
        return found == _places.end() ? nullptr : &_things[found->second];
    }
    Thing *find(const std::string &key) { return const_cast<Thing *>(std::as_const(*this).find(key)); }

    size_t size() const { return _things.size(); }
    bool empty() const { return _things.empty(); }
    auto begin() const { return _things.begin(); }
    auto end() const { return _things.end(); }

private:
    std::vector<Thing> _things;
    std::unordered_map<std::string, size_t> _places;
};

} // namespace sim

#endif // SIM_ZONING_CATALOG_H
