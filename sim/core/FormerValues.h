/*
 * What attributes were before they changed, as far as somebody has seen or made the change. One thread at a time.
 */
#ifndef SIM_CORE_FORMERVALUES_H
#define SIM_CORE_FORMERVALUES_H

#include <string>
#include <unordered_map>
#include <utility>

namespace sim {

class FormerValues {
public:
    /// The attribute has this value now.
    void note(const std::string &key, const std::string &value) {
        const auto [known, isNew] = _known.try_emplace(key, Values{value, value});
        Values &values = known->second;
        if (isNew || values.present == value)
            return;
        values.former = std::move(values.present);
        values.present = value;
    }

    /// The value before the last change of an attribute that has this value now; the same without a change.
    const std::string &before(const std::string &key, const std::string &value) {
        note(key, value);
        return _known[key].former;
    }

private:
    struct Values {
        std::string present;
        std::string former;
    };

    std::unordered_map<std::string, Values> _known;
};

} // namespace sim

#endif // SIM_CORE_FORMERVALUES_H
