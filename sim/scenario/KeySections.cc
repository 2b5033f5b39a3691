#include "sim/scenario/KeySections.h"

#include <limits>

#include "sim/levers/Duration.h"

namespace sim {

namespace {

unsigned countOf(const Simulator &device, const std::string &key) {
    return static_cast<unsigned>(std::stoul(device.get(key)));
}

/// Counts grow first and shrink last, so that everything can be there that was there once.
void readCounts(Fields &fields, Reading &reading) {
    for (const KeyField &field : kCountFields) {
        const std::optional<std::string> value = fieldValue(fields, field);
        if (!value)
            continue;
        const std::string key = keyOf(field);
        planValue(reading, Phase::shrinking, fields.at(field.name), key, *value);
        const auto wanted = static_cast<unsigned>(std::stoul(*value));
        reading.plan.add(Phase::growing, fields.at(field.name), [key, wanted](Simulator &device) {
            if (wanted > countOf(device, key))
                device.set(key, std::to_string(wanted), Notify::no);
        });
    }
}

/// Who is not one of the connections holds admin mode or the lock.
void readHolder(Fields &fields, Reading &reading, const char *name, void (Simulator::*hold)(bool)) {
    if (fields.word(name, {"elsewhere", "free"}) == "elsewhere")
        reading.plan.add(Phase::conditions, fields.at(name), [hold](Simulator &device) { (device.*hold)(true); });
}

/// An uptime as the clock is moved on by: whole seconds, which may be as many as the switch can tell, and the rest.
struct Uptime {
    std::chrono::seconds whole;
    std::chrono::milliseconds rest;
};

std::optional<Uptime> uptimeIn(Fields &fields) {
    constexpr const char *name = "uptime";
    const toml::node *node = fields.find(name);
    if (!node)
        return std::nullopt;
    const auto *number = node->as_integer();
    const auto *text = node->as_string();
    if (number && number->get() >= 0 && number->get() <= std::numeric_limits<long>::max())
        return Uptime{std::chrono::seconds(number->get()), {}};
    if (const auto time = text ? parseDuration(text->get()) : std::nullopt) {
        const auto whole = std::chrono::duration_cast<std::chrono::seconds>(*time);
        return Uptime{whole, *time - whole};
    }
    fields.complainOf(name,
                      "must be an hour or more: a whole number of seconds, or a text such as \"90 min\", \"2 h\", "
                      "\"400 d\", of ten years at most");
    return std::nullopt;
}

void readUptime(Fields &fields, Reading &reading) {
    const std::optional<Uptime> uptime = uptimeIn(fields);
    if (!uptime)
        return;
    reading.plan.add(Phase::conditions, fields.at("uptime"), [uptime = *uptime](Simulator &device) {
        const std::chrono::seconds now(device.uptime());
        if (uptime.whole < now)
            throw std::invalid_argument("the switch has been on for " + std::to_string(now.count()) +
                                        " s when it is made; 'uptime' must be that or more");
        device.passTime(uptime.whole - now, uptime.rest);
    });
}

/// Tables in tables are keys with dots, as bare dotted keys make them.
void readSettingsIn(const toml::table &table, const std::string &prefix, Reading &reading) {
    for (const auto &[name, node] : table) {
        const std::string key = prefix + std::string(name.str());
        const FilePosition at = positionOf(node.source());
        if (const std::optional<std::string> value = valueIn(node))
            planValue(reading, Phase::settings, at, key, *value);
        else if (node.is_table())
            readSettingsIn(*node.as_table(), key + ".", reading);
        else
            reading.complaints.add(at,
                                   "'" + escaped(key) + "' must be a text in quotes, a whole number, true or false");
    }
}

void readBlade(Fields &blade, Reading &reading) {
    const std::optional<unsigned> slot = readNumber(blade, reading, Phase::blades, kBlade);
    const std::optional<bool> present = blade.flag("present");
    Blade inserted; // its other fields are set below, like those of any blade
    if (const toml::node *type = blade.find("type"))
        inserted.type = textIn(*type).value_or(inserted.type);
    if (present == false && blade.has("type"))
        blade.complainOf("type", "needs 'present = true': there is no blade");
    if (slot && present)
        reading.plan.add(Phase::blades, blade.at("present"),
                         [slot = *slot, present = *present, inserted](Simulator &device) {
                             if (!hasThing(device, kBlade, slot))
                                 return;
                             if (device.get(keyOf(kBladeFields[0], slot)) != kEmptySlot)
                                 device.removeBlade(slot, Notify::no);
                             if (present)
                                 device.insertBlade(slot, inserted, Notify::no);
                         });
    readThingFields(blade, reading, Phase::parts, kBlade, slot.value_or(0), kBladeFields);
    blade.refuseOthers();
}

template <class Table> void readUnits(Fields &file, Reading &reading, const KeyThing &thing, const Table &fields) {
    for (const toml::table *table : file.tables(thing.section)) {
        Fields unit(*table, thing.called, reading.complaints);
        const std::optional<unsigned> number = readNumber(unit, reading, Phase::blades, thing);
        readThingFields(unit, reading, Phase::parts, thing, number.value_or(0), fields);
        unit.refuseOthers();
    }
}

} // namespace

void planValue(Reading &reading, Phase phase, FilePosition at, const std::string &key, const std::string &value) {
    reading.plan.add(phase, at, [key, value](Simulator &device) { device.set(key, value, Notify::no); });
}

std::optional<std::string> fieldValue(Fields &fields, const KeyField &field) {
    if (!field.isNumber) {
        const std::optional<std::string> text = fields.text(field.name);
        return text ? std::optional<std::string>(plainWwn(*text)) : std::nullopt;
    }
    const std::optional<int64_t> number = fields.number(field.name, field.lowest, field.highest);
    return number ? std::optional<std::string>(std::to_string(*number)) : std::nullopt;
}

bool hasThing(const Simulator &device, const KeyThing &thing, unsigned number) {
    return number < countOf(device, thing.countKey);
}

std::optional<unsigned> readNumber(Fields &fields, Reading &reading, Phase phase, const KeyThing &thing) {
    if (!fields.require(thing.number))
        return std::nullopt;
    const std::optional<int64_t> number = fields.number(thing.number, 0, kMostThings - 1);
    if (!number)
        return std::nullopt;
    const auto wanted = static_cast<unsigned>(*number);
    if (!reading.named.insert(thing.section + std::to_string(wanted)).second)
        fields.complainOf(thing.number, "is " + std::to_string(wanted) + ", and so is that of an earlier table");
    reading.plan.add(phase, fields.at(thing.number), [&thing, wanted](Simulator &device) {
        if (!hasThing(device, thing, wanted))
            throw std::invalid_argument(std::string("there is no ") + thing.section + " " + std::to_string(wanted) +
                                        "; the switch has " + std::to_string(countOf(device, thing.countKey)) +
                                        ", counted from 0");
    });
    return wanted;
}

// ---- sections ----------------------------------------------------------------------------------------

void readSwitchSection(Fields &file, Reading &reading) {
    const toml::table *table = file.table("switch");
    if (!table)
        return;
    Fields fields(*table, "the switch", reading.complaints);
    readKeyFields(fields, reading, Phase::identity, kIdentityFields);
    readKeyFields(fields, reading, Phase::settings, kSwitchFields);
    readCounts(fields, reading);
    readUptime(fields, reading);
    readHolder(fields, reading, "admin_mode", &Simulator::holdAdminModeElsewhere);
    readHolder(fields, reading, "zoning_lock", &Simulator::holdZoningLockElsewhere);
    fields.refuseOthers();
}

void readSettings(Fields &file, Reading &reading) {
    if (const toml::table *table = file.table("settings"))
        readSettingsIn(*table, "", reading);
}

void readParts(Fields &file, Reading &reading) {
    for (const toml::table *table : file.tables(kBlade.section)) {
        Fields blade(*table, kBlade.called, reading.complaints);
        readBlade(blade, reading);
    }
    readUnits(file, reading, kSupply, kSupplyFields);
    readUnits(file, reading, kFan, kFanFields);
}

void readAccounts(Fields &file, Reading &reading) {
    for (const toml::table *table : file.tables("account")) {
        Fields account(*table, "an account", reading.complaints);
        const bool present = account.flag("present").value_or(true);
        const std::optional<std::string> name = account.require("name") ? account.text("name") : std::nullopt;
        if (name)
            reading.plan.add(present ? Phase::accounts : Phase::partings, account.at("name"),
                             [name = *name, present](Simulator &device) {
                                 if (present)
                                     device.addAccount(name, Notify::no);
                                 else
                                     device.removeAccount(name, Notify::no);
                             });
        account.refuseOthers();
    }
}

} // namespace sim
