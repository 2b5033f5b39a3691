/*
 * Sections of a scenario file that give attributes of the switch their values. Functions of what they are given.
 */
#ifndef SIM_SCENARIO_KEYSECTIONS_H
#define SIM_SCENARIO_KEYSECTIONS_H

#include <optional>

#include "sim/scenario/KeyFields.h"
#include "sim/scenario/Plan.h"

namespace sim {

/// Plans to give an attribute a value.
void planValue(Reading &reading, Phase phase, FilePosition at, const std::string &key, const std::string &value);

/// The value of a field as the switch takes it.
std::optional<std::string> fieldValue(Fields &fields, const KeyField &field);

template <class Table> void readKeyFields(Fields &fields, Reading &reading, Phase phase, const Table &table) {
    for (const KeyField &field : table)
        if (const std::optional<std::string> value = fieldValue(fields, field))
            planValue(reading, phase, fields.at(field.name), keyOf(field), *value);
}

/// Whether the switch has the thing of this number.
bool hasThing(const Simulator &device, const KeyThing &thing, unsigned number);

/// The number of a thing, once it is sure that there is one. Plans to complain when the switch has no such thing.
std::optional<unsigned> readNumber(Fields &fields, Reading &reading, Phase phase, const KeyThing &thing);

/// The same fields of one of several. What is not there is passed over: readNumber() complains of it.
template <class Table>
void readThingFields(Fields &fields, Reading &reading, Phase phase, const KeyThing &thing, unsigned number,
                     const Table &table) {
    for (const KeyField &field : table)
        if (const std::optional<std::string> value = fieldValue(fields, field))
            reading.plan.add(phase, fields.at(field.name),
                             [&thing, number, key = keyOf(field, number), value = *value](Simulator &device) {
                                 if (hasThing(device, thing, number))
                                     device.set(key, value, Notify::no);
                             });
}

} // namespace sim

#endif // SIM_SCENARIO_KEYSECTIONS_H
