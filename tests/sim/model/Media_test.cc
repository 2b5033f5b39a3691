#include "sim/model/Media.h"

#include <numeric>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

namespace {

/// The identification that clients read of a transceiver, 64 bytes.
std::vector<unsigned> identificationOf(const sim::Transceiver &transceiver) {
    const auto device = sim::create();
    device->plugTransceiver(23, transceiver);
    const std::string digits =
        device->get("Oper.UserPort.0.23.SFPData0_31") + device->get("Oper.UserPort.0.23.SFPData32_63");
    std::vector<unsigned> bytes;
    for (size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<unsigned>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string textIn(const std::vector<unsigned> &bytes, size_t at, size_t size) {
    std::string text;
    for (size_t i = at; i < at + size; ++i)
        text.append(1, static_cast<char>(bytes[i]));
    return text;
}

/// What the switch says to a transceiver it does not take.
std::string refusal(const sim::Transceiver &transceiver) {
    try {
        identificationOf(transceiver);
    } catch (const std::invalid_argument &error) {
        return error.what();
    }
    return "taken";
}

} // namespace

TEST(Media, IdentificationHasEverythingInItsPlace) {
    sim::Transceiver transceiver;
    transceiver.vendorName = "ACME Optics";
    transceiver.vendorOui = 0x123456;
    transceiver.partNumber = "0123456789ABCDEF";
    const std::vector<unsigned> bytes = identificationOf(transceiver);
    ASSERT_EQ(bytes.size(), 64U);
    EXPECT_EQ(bytes[0], 0x03U);
    EXPECT_EQ(bytes[2], 0x07U);
    EXPECT_EQ(textIn(bytes, 20, 16), "ACME Optics     ");
    EXPECT_EQ(std::vector<unsigned>(&bytes[37], &bytes[40]), (std::vector<unsigned>{0x12, 0x34, 0x56}));
    EXPECT_EQ(textIn(bytes, 40, 16), "0123456789ABCDEF");
    EXPECT_EQ(textIn(bytes, 56, 4), "A   ");
}

TEST(Media, CheckCodeIsTheLowByteOfTheSumOfAllBytesBeforeIt) {
    sim::Transceiver longWave;
    longWave.longWave = true;
    sim::Transceiver other;
    other.identifier = 0x11;
    other.vendorName = "";
    other.vendorOui = 0xFFFFFF;
    for (const sim::Transceiver &transceiver : {sim::Transceiver(), longWave, other}) {
        const std::vector<unsigned> bytes = identificationOf(transceiver);
        EXPECT_EQ(bytes[63], std::accumulate(bytes.begin(), bytes.end() - 1, 0U) % 256);
        EXPECT_NE(std::accumulate(bytes.begin(), bytes.end() - 1, 0U), 0U);
    }
}

TEST(Media, OpticsAreThoseOfTheFibre) {
    sim::Transceiver transceiver;
    const std::vector<unsigned> shortWave = identificationOf(transceiver);
    transceiver.longWave = true;
    const std::vector<unsigned> longWave = identificationOf(transceiver);
    using Bytes = std::vector<unsigned>;
    // Identifier, connector, Fibre Channel codes, encoding, rate, then reach: km, 100 m, OM2, OM1, none, OM3.
    EXPECT_EQ(Bytes(&shortWave[0], &shortWave[20]),
              (Bytes{0x03, 0x04, 0x07, 0, 0, 0, 0, 0x20, 0x40, 0x0C, 0x54, 0x01, 85, 0, 0, 0, 5, 2, 0, 15}));
    EXPECT_EQ(Bytes(&longWave[0], &longWave[20]),
              (Bytes{0x03, 0x04, 0x07, 0, 0, 0, 0, 0x12, 0x00, 0x01, 0x54, 0x01, 85, 0, 10, 100, 0, 0, 0, 0}));
    EXPECT_EQ(shortWave[60] * 256 + shortWave[61], 850U); // nm
    EXPECT_EQ(longWave[60] * 256 + longWave[61], 1310U);
}

TEST(Media, AnyIdentifierCanBeTold) {
    for (const uint8_t identifier : {uint8_t{0x00}, uint8_t{0x0D}, uint8_t{0x11}, uint8_t{0xFF}}) {
        sim::Transceiver transceiver;
        transceiver.identifier = identifier;
        EXPECT_EQ(identificationOf(transceiver)[0], identifier);
    }
}

TEST(Media, ATransceiverThatCannotBeIsRefusedNamingWhatIsWrong) {
    sim::Transceiver transceiver;
    transceiver.vendorName = std::string(17, 'v');
    EXPECT_EQ(refusal(transceiver), "the vendor name of a transceiver cannot be 'vvvvvvvvvvvvvvvvv'; allowed: at most "
                                    "16 printing characters");
    transceiver = {};
    transceiver.partNumber = "tab\t";
    EXPECT_EQ(refusal(transceiver),
              "the part number of a transceiver cannot be 'tab\\x09'; allowed: at most 16 printing characters");
    transceiver = {};
    transceiver.serialNumber = "01234567890123456";
    EXPECT_EQ(refusal(transceiver), "the serial number of a transceiver cannot be '01234567890123456'; allowed: at "
                                    "most 16 printing characters");
    transceiver = {};
    transceiver.vendorOui = 0x1000000;
    EXPECT_EQ(refusal(transceiver), "the OUI of a transceiver has 24 bits");
}
