#include "sim/core/Device.h"

#include <cstring>
#include <stdexcept>

#include "sim/Record.h"
#include "sim/Status.h"
#include "sim/core/Event.h"
#include "sim/core/Message.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

/// Throws unless the switch has the key.
Attribute knownAttribute(const Switch &device, const std::string &key) {
    const Attribute attribute = findAttribute(device, key);
    if (!attribute)
        throw std::invalid_argument("the switch has no attribute '" + escaped(key) + "'");
    return attribute;
}

std::array<int32_t, 3> sourceOf(const Attribute &attribute) {
    const auto index = static_cast<int32_t>(attribute.index.first);
    switch (attribute.row->source) {
    case Source::slot:
        return {0, index, 0};
    case Source::port:
        return {0, 0, index};
    case Source::none:
        break;
    }
    return {0, 0, 0};
}

} // namespace

int32_t Device::get(const std::string &key, std::string &value, std::chrono::seconds &time) {
    const std::lock_guard<std::mutex> lock(_mutex);
    return getLocked(key, value, time);
}

int32_t Device::set(zov_handle_t client, const std::string &key, const std::string &value) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const int32_t status = setLocked(client, key, value);
    takeNoteLocked(client, key, status);
    return status;
}

void Device::getAll(const std::vector<Request> &requests, std::chrono::seconds &time) {
    const std::lock_guard<std::mutex> lock(_mutex);
    for (const auto &[message, isAnswered] : requests) {
        if (isAnswered)
            continue;
        std::string value;
        message->status = hasTerminatedKey(*message) ? getLocked(keyOf(*message), value, time) : kBadKey;
        if (message->status == kOk)
            putValue(*message, value);
    }
}

void Device::setAll(zov_handle_t client, const std::vector<Request> &requests) {
    const std::lock_guard<std::mutex> lock(_mutex);
    for (const auto &[message, isAnswered] : requests) {
        const std::string key = keyOf(*message);
        if (!isAnswered)
            message->status =
                hasTerminatedKey(*message) ? setLocked(client, key, valueToSet(*message)) : int32_t{kBadKey};
        takeNoteLocked(client, key, message->status);
    }
}

void Device::takeNote(zov_handle_t client, const std::string &key, int32_t status) {
    const std::lock_guard<std::mutex> lock(_mutex);
    takeNoteLocked(client, key, status);
}

void Device::takeNoteLocked(zov_handle_t client, const std::string &key, int32_t status) {
    if (status != kOk && isZoningKey(key) && _zoningSession.heldBy(client))
        _zoningSession.spoil();
}

std::string Device::valueBefore(const std::string &key, const std::string &value) {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _former.before(key, value);
}

/// Adds the time that the answer takes.
int32_t Device::getLocked(const std::string &key, std::string &value, std::chrono::seconds &time) {
    const Attribute attribute = findAttribute(_switch, key);
    if (!attribute)
        return findCommand(key) ? kNotReadable : kNoSuchKey;
    time += std::chrono::seconds(attribute.seconds(_switch));
    const Status status = attribute.status(_switch);
    if (status != kOk)
        return status;
    value = attribute.read(_switch);
    _former.note(key, value);
    return kOk;
}

int32_t Device::setLocked(zov_handle_t client, const std::string &key, const std::string &value) {
    if (_gone.count(client) != 0)
        return kBadHandle;
    if (const GivenCommand command = findCommand(key))
        return run(client, command);
    const Attribute attribute = findAttribute(_switch, key);
    if (!attribute)
        return kNoSuchKey;
    if (attribute.row->access == Access::readOnly)
        return kReadOnly;
    if (const Status status = attribute.status(_switch); status != kOk)
        return status;
    if (!_admin.heldBy(client))
        return kAdminRequired;
    if (!_edit.isOpen())
        return kEditRequired;
    if (!attribute.row->rule->accepts(value))
        return kBadValue;
    return _edit.stage(key, value);
}

int32_t Device::run(zov_handle_t client, const GivenCommand &command) {
    CommandContext context{client, _admin, _edit, _zoningSession, _switch.zoning, _switch, _backup};
    const Status status = runCommand(command, context);
    bool changed = false;
    for (const auto &[key, value] : context.running) {
        const Attribute attribute = findAttribute(_switch, key);
        if (attribute && attribute.status(_switch) == kOk) // its port or its feature may have gone since
            changed |= apply(attribute, key, value, Notify::yes);
    }
    if (changed && context.changed == Configuration::cim)
        _notifier.send(makeEvent(ZOV_EVENT_CIM_CFG_CHANGE, {0, 0, 0}, "CIM configuration saved"));
    send(context.announcements);
    return status;
}

/// True when the value is another one than before.
bool Device::apply(const Attribute &attribute, const std::string &key, const std::string &value, Notify notify) {
    const std::string before = attribute.read(_switch);
    attribute.write(_switch, value);
    const std::string after = attribute.read(_switch);
    if (after == before)
        return false;
    _former.note(key, before);
    _former.note(key, after);
    const Announcements others = attribute.follow(_switch);
    if (notify == Notify::no)
        return true;
    if (attribute.row->notification != 0)
        send({{attribute.row->notification, sourceOf(attribute), key + " is now " + value}});
    send(others);
    return true;
}

void Device::hangUp(zov_handle_t client) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _gone.insert(client);
    freeAllOf(client);
}

void Device::disconnect(zov_handle_t client) {
    const std::lock_guard<std::mutex> lock(_mutex);
    freeAllOf(client);
    _gone.erase(client);
}

/// As when it gave back admin mode: what was being edited is forgotten.
void Device::freeAllOf(zov_handle_t client) {
    if (_zoningSession.heldBy(client))
        _zoningSession.force(0);
    if (!_admin.heldBy(client))
        return;
    _edit.drop();
    _admin.force(0);
}

Zoning Device::zoning() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _switch.zoning;
}

void Device::change(const std::string &key, const std::string &value, Notify notify) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const Attribute attribute = knownAttribute(_switch, key);
    if (!attribute.row->rule->accepts(value))
        throw std::invalid_argument("'" + key + "' cannot be '" + escaped(value) +
                                    "'; allowed: " + attribute.row->rule->allowed);
    if (attribute.isTaken(_switch, value))
        throw std::invalid_argument("'" + key + "' cannot be '" + escaped(value) + "'; another switch has it");
    apply(attribute, key, value, notify);
}

void Device::operate(const std::function<Announcements(Switch &)> &operation, Notify notify) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const Announcements announcements = operation(_switch);
    if (notify == Notify::yes)
        send(announcements);
}

void Device::send(const Announcements &announcements) {
    for (const Announcement &announcement : announcements)
        _notifier.send(makeEvent(announcement.code, announcement.source, announcement.text));
}

std::string Device::read(const std::string &key) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return knownAttribute(_switch, key).read(_switch);
}

std::string Device::readStored(const std::string &key) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    const Attribute attribute = knownAttribute(_switch, key);
    return attribute.row->stored ? attribute.row->stored(_switch, attribute.index) : attribute.read(_switch);
}

std::vector<std::string> Device::keys() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return allKeys(_switch);
}

zov_handle_t Device::adminModeHolder() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _admin.holder();
}

/// The other client takes admin mode even from a connection that holds it, as an operator at the console can. What
/// admin mode gave the connection ends with it.
void Device::holdAdminModeElsewhere(bool hold) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (hold == _admin.heldBy(kOtherClient))
        return;
    if (hold) {
        _edit.drop();
        if (!_zoningSession.heldBy(kOtherClient))
            _zoningSession.force(0);
    }
    _admin.force(hold ? kOtherClient : 0);
}

zov_handle_t Device::zoningLockHolder() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _zoningSession.holder();
}

void Device::holdZoningLockElsewhere(bool hold) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (hold != _zoningSession.heldBy(kOtherClient))
        _zoningSession.force(hold ? kOtherClient : 0);
}

void Device::restart() {
    const std::lock_guard<std::mutex> lock(_mutex);
    _admin.force(0);
    _edit.drop();
    _zoningSession.force(0);
}

Memory Device::memory() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return {configurationOf(_switch), _edit.saved(), _backup.kept(), shownDatabase(*_switch.zoning.defined.database),
            shownDatabase(*_switch.zoning.active.database)};
}

/// The active half may hold a zone set that is defined no longer, or otherwise.
void Device::remember(const Memory &memory) {
    const std::lock_guard<std::mutex> lock(_mutex);
    for (const auto &[key, value] : memory.running) {
        const Attribute attribute = findAttribute(_switch, key);
        if (attribute && !attribute.row->rule->accepts(value))
            throw std::invalid_argument("'" + key + "' cannot be '" + escaped(value) + "'");
    }
    databaseFrom(memory.defined, _switch.zoning.limits); // before anything changes
    sim::setZoning(_switch, memory.active);
    sim::activateZoneset(_switch, memory.active.zonesets.empty() ? "" : memory.active.zonesets[0].name);
    sim::setZoning(_switch, memory.defined);
    for (const auto &[key, value] : memory.running)
        if (const Attribute attribute = findAttribute(_switch, key))
            apply(attribute, key, value, Notify::no);
    _edit.setSaved(memory.saved);
    _backup.setKept(memory.backup);
}

} // namespace sim
