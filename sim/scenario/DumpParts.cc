// Blades and ports on their way into a scenario.

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>

#include "sim/scenario/Dump.h"

namespace sim {

namespace {

// ---- blades ------------------------------------------------------------------------------------------

constexpr const KeyField &kBladeState = kBladeFields[0];
constexpr const KeyField &kBladeType = kBladeFields[3];

/// A slot that nothing but its state speaks of.
bool isBare(const Simulator &device, unsigned slot) {
    return std::all_of(std::begin(kBladeFields), std::end(kBladeFields), [&](const KeyField &field) {
        return device.get(keyOf(field, slot)) == (&field == &kBladeState ? kEmptySlot : "");
    });
}

bool isEmpty(const Simulator &device, unsigned slot) {
    return device.get(keyOf(kBladeState, slot)) == kEmptySlot;
}

/// A blade that was pulled or inserted took its ports away or brought them.
void dumpExchange(Dump &dump, unsigned slot) {
    const std::string type = dump.now.get(keyOf(kBladeType, slot));
    const bool wasEmpty = isEmpty(*dump.other, slot);
    if (isBare(dump.now, slot)) {
        if (wasEmpty)
            return;
        dump.other->removeBlade(slot, Notify::no);
        dump.blades.flag("present", false);
        return;
    }
    const bool isAnother = wasEmpty || type != dump.other->get(keyOf(kBladeType, slot));
    if (type.empty() || isEmpty(dump.now, slot) || !isAnother)
        return;
    if (!wasEmpty)
        dump.other->removeBlade(slot, Notify::no);
    Blade blade;
    blade.type = type;
    dump.other->insertBlade(slot, blade, Notify::no);
    dump.blades.flag("present", true);
    dump.blades.line(kBladeType.name, type);
}

// ---- transceivers ------------------------------------------------------------------------------------

using Bytes = std::array<uint8_t, 64>;

// Where things stand in the identification of a transceiver.
constexpr size_t kFibreModes = 9; // says single mode for one of the long wave
constexpr size_t kVendorName = 20;
constexpr size_t kVendorOui = 37;
constexpr size_t kPartNumber = 40;
constexpr size_t kTextSize = 16;
constexpr uint8_t kSingleMode = 0x01;

std::optional<Bytes> bytesIn(const std::string &digits) {
    constexpr int hexadecimal = 16;
    Bytes bytes = {};
    if (digits.size() != 2 * bytes.size())
        return std::nullopt;
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(std::stoul(digits.substr(2 * i, 2), nullptr, hexadecimal));
    return bytes;
}

std::string trimmed(const std::string &text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string textAt(const Bytes &bytes, size_t place) {
    const auto *begin = bytes.begin() + place;
    std::string text;
    std::transform(begin, begin + kTextSize, std::back_inserter(text),
                   [](uint8_t byte) { return static_cast<char>(byte); });
    return trimmed(text);
}

using MediaTexts = std::array<std::string, std::size(kMediaFields)>;

MediaTexts mediaOf(const Simulator &device, unsigned port) {
    MediaTexts texts;
    std::transform(std::begin(kMediaFields), std::end(kMediaFields), texts.begin(),
                   [&](const KeyField &field) { return device.get(keyOf(field, port)); });
    return texts;
}

void setMedia(Simulator &device, unsigned port, const MediaTexts &texts) {
    for (size_t i = 0; i < texts.size(); ++i)
        device.set(keyOf(kMediaFields[i], port), texts[i], Notify::no);
}

/// The transceiver that a switch would read like this, if there is any: as far as it can be told.
std::optional<Transceiver> transceiverIn(const MediaTexts &texts) {
    const auto &[diagnostics, first, second, serialNumber] = texts;
    const std::optional<Bytes> bytes = bytesIn(first + second);
    if (!bytes)
        return std::nullopt;
    Transceiver transceiver;
    transceiver.identifier = bytes->front();
    transceiver.vendorOui =
        static_cast<uint32_t>((*bytes)[kVendorOui] << 16 | (*bytes)[kVendorOui + 1] << 8 | (*bytes)[kVendorOui + 2]);
    transceiver.vendorName = textAt(*bytes, kVendorName);
    transceiver.partNumber = textAt(*bytes, kPartNumber);
    transceiver.serialNumber = trimmed(serialNumber);
    transceiver.diagnostics = diagnostics == "True";
    transceiver.longWave = (*bytes)[kFibreModes] == kSingleMode;
    return transceiver;
}

/// Plugs it in; false when it cannot be, or when it reads as another one.
bool plugs(Simulator &device, unsigned port, const Transceiver &transceiver, const MediaTexts &wanted) {
    try {
        device.plugTransceiver(port, transceiver, Notify::no);
    } catch (const std::invalid_argument &) {
        return false;
    }
    return mediaOf(device, port) == wanted;
}

/// As a table on one line, of what is not as it comes.
std::string tableOf(const Transceiver &transceiver) {
    const Transceiver usual;
    std::string table = "{ serial = " + tomlValue(transceiver.serialNumber);
    if (transceiver.partNumber != usual.partNumber)
        table += ", part = " + tomlValue(transceiver.partNumber);
    if (transceiver.vendorName != usual.vendorName)
        table += ", vendor = " + tomlValue(transceiver.vendorName);
    if (transceiver.vendorOui != usual.vendorOui)
        table += ", oui = " + std::to_string(transceiver.vendorOui);
    if (transceiver.identifier != usual.identifier)
        table += ", identifier = " + std::to_string(transceiver.identifier);
    if (transceiver.diagnostics != usual.diagnostics)
        table += ", diagnostics = false";
    if (transceiver.longWave)
        table += ", long_wave = true";
    return table + " }";
}

void dumpCage(Dump &dump, unsigned port) {
    constexpr const char *name = "transceiver";
    const MediaTexts wanted = mediaOf(dump.now, port);
    if (wanted == mediaOf(*dump.other, port))
        return;
    setMedia(*dump.other, port, {});
    if (wanted == MediaTexts{}) {
        dump.ports.flag(name, false);
        return;
    }
    const std::optional<Transceiver> transceiver = transceiverIn(wanted);
    if (transceiver && plugs(*dump.other, port, *transceiver, wanted)) {
        dump.ports.plain(name, tableOf(*transceiver));
        return;
    }
    setMedia(*dump.other, port, wanted);
    for (size_t i = 0; i < wanted.size(); ++i)
        dump.ports.line(kMediaFields[i].name, wanted[i]);
}

/// The table of a thing, if there is anything to say of it.
template <class Describe>
void dumpThing(TomlText &text, const KeyThing &thing, unsigned number, const Describe &describe) {
    text.under(std::string("[[") + thing.section + "]]\n" + thing.number + " = " + std::to_string(number));
    describe();
}

} // namespace

void dumpBlades(Dump &dump) {
    for (unsigned slot = 0; slot < countOf(dump.now, kBlade); ++slot)
        dumpThing(dump.blades, kBlade, slot, [&] {
            dumpExchange(dump, slot);
            writeFields(dump, dump.blades, kBladeFields, slot);
        });
}

void dumpPorts(Dump &dump) {
    for (unsigned port = 0; port < countOf(dump.now, kPort); ++port)
        dumpThing(dump.ports, kPort, port, [&] {
            dumpCage(dump, port);
            writeFields(dump, dump.ports, kPortFields, port);
        });
}

} // namespace sim
