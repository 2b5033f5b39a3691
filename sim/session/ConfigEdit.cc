#include "sim/session/ConfigEdit.h"

#include <algorithm>

namespace sim {

namespace {

void put(Edits &edits, const std::string &key, const std::string &value) {
    const auto present = std::find_if(edits.begin(), edits.end(), [&](const auto &edit) { return edit.first == key; });
    if (present != edits.end())
        present->second = value;
    else
        edits.emplace_back(key, value);
}

} // namespace

Status ConfigEdit::open(Configuration configuration) {
    if (isOpen())
        return kEditOpen;
    _open = configuration;
    return kOk;
}

Status ConfigEdit::stage(const std::string &key, const std::string &value) {
    if (!isOpen())
        return kEditRequired;
    put(_pending, key, value);
    return kOk;
}

Status ConfigEdit::saveSwitch() {
    if (_open != Configuration::wholeSwitch)
        return kEditRequired;
    for (const auto &[key, value] : _pending)
        put(_saved, key, value);
    _isSaved = true;
    drop();
    return kOk;
}

Status ConfigEdit::saveCim(Edits &running) {
    if (_open != Configuration::cim)
        return kEditRequired;
    running = std::move(_pending);
    drop();
    return kOk;
}

Status ConfigEdit::activate(Edits &running) {
    if (isOpen())
        return kEditOpen;
    if (!_isSaved)
        return kNothingSaved;
    running = std::move(_saved);
    _saved.clear();
    _isSaved = false;
    return kOk;
}

Status ConfigEdit::cancel(Configuration configuration) {
    if (_open != configuration)
        return kEditRequired;
    drop();
    return kOk;
}

void ConfigEdit::setSaved(const std::optional<Edits> &saved) {
    _isSaved = saved.has_value();
    _saved = saved.value_or(Edits());
}

void ConfigEdit::drop() {
    _open = Configuration::none;
    _pending.clear();
}

} // namespace sim
