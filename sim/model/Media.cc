#include "sim/model/Media.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <stdexcept>

#include "sim/Record.h"
#include "sim/tree/Rules.h"

namespace sim {

namespace {

using Bytes = std::array<uint8_t, 64>;

constexpr uint8_t kUnspecified = 0x00;
constexpr uint8_t kSfp = 0x03;

// Where things stand in the identification, the first 64 bytes of a transceiver's memory.
constexpr size_t kIdentifier = 0;
constexpr size_t kExtendedIdentifier = 1;
constexpr size_t kConnector = 2;
constexpr size_t kEncoding = 11;
constexpr size_t kNominalRate = 12;
constexpr size_t kVendorName = 20;
constexpr size_t kVendorOui = 37;
constexpr size_t kPartNumber = 40;
constexpr size_t kRevision = 56;
constexpr size_t kWavelength = 60;
constexpr size_t kCheckCode = 63;

constexpr size_t kTextSize = 16;
constexpr size_t kRevisionSize = 4;

/// What the optics are good for: the bytes about Fibre Channel, and those about reach.
struct Optics {
    size_t at;
    uint8_t shortWave;
    uint8_t longWave;
};

constexpr Optics kOptics[] = {
    {7, 0x20, 0x12},              // intermediate distance; long distance, longwave laser
    {8, 0x40, 0x00},              // shortwave laser without open fibre control
    {9, 0x0C, 0x01},              // multimode, both diameters; single mode
    {10, 0x54, 0x54},             // 200, 400 and 800 MB/s
    {14, 0, 10},                  // reach on single mode in km
    {15, 0, 100},                 // the same in 100 m
    {16, 5, 0},                   // reach on 50 um multimode (OM2) in 10 m
    {17, 2, 0},                   // reach on 62.5 um multimode (OM1) in 10 m
    {19, 15, 0},                  // reach on 50 um multimode (OM3) in 10 m
    {kWavelength, 0x03, 0x05},    // 850 nm; 1310 nm
    {kWavelength + 1, 0x52, 0x1E} // the low byte of it
};

/// Texts are filled up with blanks.
std::string filledUp(const char *what, const std::string &text, size_t size) {
    if (text.size() > size || !isPrinting(text))
        throw std::invalid_argument(std::string("the ") + what + " of a transceiver cannot be '" + escaped(text) +
                                    "'; allowed: at most " + std::to_string(size) + " printing characters");
    return text + std::string(size - text.size(), ' ');
}

void put(Bytes &bytes, size_t at, const std::string &text) {
    std::transform(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   [](char c) { return static_cast<uint8_t>(c); });
}

void putOui(Bytes &bytes, uint32_t oui) {
    if (oui > 0xFFFFFF)
        throw std::invalid_argument("the OUI of a transceiver has 24 bits");
    bytes[kVendorOui] = static_cast<uint8_t>(oui >> 16);
    bytes[kVendorOui + 1] = static_cast<uint8_t>(oui >> 8 & 0xFF);
    bytes[kVendorOui + 2] = static_cast<uint8_t>(oui & 0xFF);
}

Bytes identificationOf(const Transceiver &transceiver) {
    Bytes bytes = {};
    bytes[kIdentifier] = transceiver.identifier;
    bytes[kExtendedIdentifier] = 0x04; // told by what follows alone
    bytes[kConnector] = 0x07;          // LC
    bytes[kEncoding] = 0x01;           // 8B/10B
    bytes[kNominalRate] = 85;          // in 100 MBd
    for (const Optics &optics : kOptics)
        bytes[optics.at] = transceiver.longWave ? optics.longWave : optics.shortWave;
    put(bytes, kVendorName, filledUp("vendor name", transceiver.vendorName, kTextSize));
    putOui(bytes, transceiver.vendorOui);
    put(bytes, kPartNumber, filledUp("part number", transceiver.partNumber, kTextSize));
    put(bytes, kRevision, filledUp("revision", "A", kRevisionSize));
    bytes[kCheckCode] = static_cast<uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0U) & 0xFF);
    return bytes;
}

/// 32 of the bytes in hexadecimal.
std::string hexadecimal(const Bytes &bytes, size_t from) {
    constexpr const char *digits = "0123456789ABCDEF";
    std::string text;
    for (size_t i = from; i < from + 32; ++i)
        text.append(1, digits[bytes[i] >> 4]).append(1, digits[bytes[i] & 15]);
    return text;
}

} // namespace

Media mediaOf(const Transceiver &transceiver) {
    const Bytes bytes = identificationOf(transceiver);
    return {transceiver.diagnostics ? "True" : "False", hexadecimal(bytes, 0), hexadecimal(bytes, 32),
            filledUp("serial number", transceiver.serialNumber, kTextSize)};
}

int formatOf(const Transceiver &transceiver) {
    if (transceiver.identifier == kSfp)
        return 0;
    return transceiver.identifier == kUnspecified ? 2 : 1;
}

} // namespace sim
