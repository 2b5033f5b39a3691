/*
 * A switch on its way into a scenario.
 *
 * Beside the switch there is another one apart, fresh from the profile. Whatever is written down is done to the other one
 * at once, as loading the scenario would do it and in the same order. So only what is different is written, and nothing
 * that follows from something else.
 *
 * For one thread at a time; the switch should be left alone meanwhile.
 */
#ifndef SIM_SCENARIO_DUMP_H
#define SIM_SCENARIO_DUMP_H

#include <memory>
#include <string>

#include "sim/Simulator.h"
#include "sim/scenario/KeyFields.h"
#include "sim/scenario/TomlText.h"

namespace sim {

/// Tables that begin with a list's header come after those without one.
struct Dump {
    explicit Dump(const Simulator &device) : now(device), other(createApart(device.profile().c_str())) {}

    const Simulator &now;
    const std::unique_ptr<Simulator> other;

    TomlText theSwitch, settings, blades, supplies, fans, ports, accounts, fabric, peers, links, logins, zoning, rules;
};

/// Whether an attribute is another one; it is the same from then on.
bool takeOver(Dump &dump, const std::string &key);

/// Writes a field if it is another one.
void writeField(Dump &dump, TomlText &text, const KeyField &field, unsigned number = 0);

template <class Table> void writeFields(Dump &dump, TomlText &text, const Table &fields, unsigned number = 0) {
    for (const KeyField &field : fields)
        writeField(dump, text, field, number);
}

unsigned countOf(const Simulator &device, const KeyThing &thing);

// ---- the parts of a switch -------------------------------------------------------------------------------

/// What goes: logins, links, peers.
void dumpPartings(Dump &dump);
void dumpPeers(Dump &dump);
void dumpCables(Dump &dump);
void dumpBlades(Dump &dump);
void dumpPorts(Dump &dump);
void dumpZoning(Dump &dump);

} // namespace sim

#endif // SIM_SCENARIO_DUMP_H
