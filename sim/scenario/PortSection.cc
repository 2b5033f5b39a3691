// The ports of a scenario file, and the transceivers in them.

#include "sim/scenario/KeySections.h"

namespace sim {

namespace {

/// Empties a cage whatever was in it.
void clearCage(Simulator &device, unsigned port) {
    for (const KeyField &field : kMediaFields)
        device.set(keyOf(field, port), "", Notify::no);
}

void readText(Fields &fields, const char *name, std::string &text) {
    if (const std::optional<std::string> given = fields.text(name))
        text = *given;
}

Transceiver readTransceiver(const toml::table &table, Reading &reading) {
    constexpr int64_t highestByte = 0xFF;
    constexpr int64_t highestOui = 0xFFFFFF;
    Fields fields(table, "a transceiver", reading.complaints);
    Transceiver transceiver;
    if (const auto identifier = fields.number("identifier", 0, highestByte))
        transceiver.identifier = static_cast<uint8_t>(*identifier);
    if (const auto oui = fields.number("oui", 0, highestOui))
        transceiver.vendorOui = static_cast<uint32_t>(*oui);
    readText(fields, "vendor", transceiver.vendorName);
    readText(fields, "part", transceiver.partNumber);
    readText(fields, "serial", transceiver.serialNumber);
    transceiver.diagnostics = fields.flag("diagnostics").value_or(transceiver.diagnostics);
    transceiver.longWave = fields.flag("long_wave").value_or(transceiver.longWave);
    fields.refuseOthers();
    return transceiver;
}

/// A table says what is plugged in, true that something is, false that nothing is.
void readCage(Fields &fields, Reading &reading, std::optional<unsigned> port) {
    constexpr const char *name = "transceiver";
    const toml::node *node = fields.find(name);
    if (!node)
        return;
    std::optional<Transceiver> transceiver;
    if (const toml::table *table = node->as_table())
        transceiver = readTransceiver(*table, reading);
    else if (const auto *flag = node->as_boolean()) {
        if (flag->get())
            transceiver = Transceiver();
    } else
        fields.complainOf(name, "must be a table, true or false");
    if (!port)
        return;
    reading.plan.add(Phase::blades, fields.at(name), [port = *port, transceiver](Simulator &device) {
        if (!hasThing(device, kPort, port))
            return;
        clearCage(device, port);
        if (transceiver)
            device.plugTransceiver(port, *transceiver, Notify::no);
    });
}

} // namespace

/// A cage is filled when the blades are in their slots: it comes empty with its blade.
void readPorts(Fields &file, Reading &reading) {
    for (const toml::table *table : file.tables(kPort.section)) {
        Fields port(*table, kPort.called, reading.complaints);
        const std::optional<unsigned> number = readNumber(port, reading, Phase::blades, kPort);
        readCage(port, reading, number);
        readThingFields(port, reading, Phase::parts, kPort, number.value_or(0), kPortFields);
        readThingFields(port, reading, Phase::parts, kPort, number.value_or(0), kMediaFields);
        port.refuseOthers();
    }
}

} // namespace sim
