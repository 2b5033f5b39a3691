#include "foundation/Wwn.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kPreset = 4096;

std::string named(const char *digits, void (*change)(Wwn &)) {
    Wwn name{std::string(digits)};
    change(name);
    return name.tostring();
}

Wwn wwn(const char *digits) {
    return Wwn(std::string(digits));
}

TEST(Wwn, DefaultIsTheZeroName) {
    EXPECT_EQ(Wwn().tostring(), "0000000000000000");
    EXPECT_EQ(Wwn(), wwn("0000000000000000"));
}

TEST(Wwn, ParsesSixteenDigitsOfEitherCaseAndPrintsThemUpperCase) {
    EXPECT_EQ(wwn("100000C0DD00A1B2").tostring(), "100000C0DD00A1B2");
    EXPECT_EQ(wwn("100000c0dd00a1b2").tostring(), "100000C0DD00A1B2");
    EXPECT_EQ(wwn("0123456789abcdef").tostring(), "0123456789ABCDEF");
    EXPECT_EQ(wwn("fedcba9876543210").tostring(), "FEDCBA9876543210");
    EXPECT_EQ(wwn("FFFFFFFFFFFFFFFF").tostring(), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(wwn("0000000000000001").tostring(), "0000000000000001");
}

TEST(Wwn, EveryPlaceMustHoldAHexadecimalDigit) {
    const std::string good = "100000C0DD00A1B2";
    for (const char bad : {'g', 'G', 'x', 'X', ' ', '+', '-', ':', '/', '@', '`', '.', '\0', '\x80', '\xC0', '\xFF'}) {
        for (size_t place = 0; place < good.size(); ++place) {
            std::string text = good;
            text[place] = bad;
            EXPECT_EQ(Wwn(text), Wwn()) << "character " << static_cast<int>(bad) << " at " << place;
        }
    }
    EXPECT_EQ(wwn("0x0000C0DD00A1B2"), Wwn()) << "no prefix of a base";
}

TEST(Wwn, OtherLengthsAreNoNames) {
    for (size_t length = 0; length <= 64; ++length) {
        if (length != 16 && length != 23) {
            EXPECT_EQ(Wwn(std::string(length, '1')), Wwn()) << length << " digits";
        }
    }
    EXPECT_EQ(wwn("10:00:00:C0:DD:00:A1:B"), Wwn());
    EXPECT_EQ(wwn("10:00:00:C0:DD:00:A1:B2:"), Wwn());
    EXPECT_EQ(wwn("1000:00C0:DD00:A1B2"), Wwn());
}

TEST(Wwn, TheColonFormReadsSevenPairsAndEndsIn00) {
    EXPECT_EQ(wwn("10:00:00:C0:DD:00:A1:B2").tostring(), "100000C0DD00A100");
    EXPECT_EQ(wwn("10:00:00:c0:dd:00:a1:b2").tostring(), "100000C0DD00A100");
    EXPECT_EQ(wwn("12:34:56:78:9A:BC:DE:F0").tostring(), "123456789ABCDE00");
    for (const char *end : {"FF", "00", "zz", "::", "  "}) {
        const std::string text = std::string("10:00:00:C0:DD:00:A1:") + end;
        EXPECT_EQ(Wwn(text).tostring(), "100000C0DD00A100") << text;
    }
}

TEST(Wwn, TheColonFormNeedsItsSevenColonsAndFourteenDigits) {
    const std::string good = "10:00:00:C0:DD:00:A1:B2";
    for (size_t place = 0; place < 21; ++place) {
        const bool colon = place % 3 == 2;
        for (const char other : {'-', ' ', 'A', ':', 'G'}) {
            std::string text = good;
            text[place] = other;
            const bool fits = colon ? other == ':' : other == 'A';
            EXPECT_EQ(Wwn(text) != Wwn(), fits) << text;
        }
    }
    EXPECT_EQ(wwn("10:00:00-C0:DD:00:A1:B2"), Wwn());
}

TEST(Wwn, EqualityComparesBothWords) {
    const Wwn name = wwn("100000C0DD00A1B2");
    EXPECT_TRUE(name == wwn("100000C0DD00A1B2"));
    EXPECT_FALSE(name != wwn("100000C0DD00A1B2"));
    for (const char *other : {"100000C0DD00A1B3", "100000C1DD00A1B2", "0000000000000000", "DD00A1B2100000C0"}) {
        EXPECT_FALSE(name == wwn(other)) << other;
        EXPECT_TRUE(name != wwn(other)) << other;
    }
}

TEST(Wwn, CopiesAreNamesOfTheirOwn) {
    const Wwn original = wwn("200100C0DD00A1B2");
    Wwn copy(original);
    Wwn assigned;
    EXPECT_EQ(&(assigned = original), &assigned);
    EXPECT_EQ(copy, original);
    EXPECT_EQ(assigned, original);
    copy.Set_Port(7);
    EXPECT_EQ(original.tostring(), "200100C0DD00A1B2");
    EXPECT_EQ(copy.tostring(), "200700C0DD00A1B2");
    EXPECT_FALSE(std::is_polymorphic_v<Wwn>);
    EXPECT_TRUE(std::is_trivially_copyable_v<Wwn>);
    EXPECT_EQ(sizeof(Wwn), 8U);
}

struct BasePair {
    const char *one;
    const char *other;
    bool same;
};

TEST(Wwn, SameBaseIgnoresThePortFieldOfTheFormat) {
    constexpr BasePair pairs[] = {
        {"2001000011223344", "2002000011223344", true},
        {"2001000011223344", "1000000011223344", false}, // another format
        {"1000000011223344", "2001000011223344", false},
        {"2000000011223344", "2FFF000011223344", true},
        {"2001000011223344", "2001000111223344", false}, // bit 0
        {"2001000011223344", "2001800011223344", false}, // bit 15
        {"2001000011223344", "2001000011223345", false}, // low word
        {"2001000011223344", "2001000091223344", false},
        {"1000ABCD11223344", "1FFFABCD11223344", true},
        {"1000ABCD11223344", "1000ABCC11223344", false},
        {"1000ABCD11223344", "1000ABCD11223340", false},
        {"3000000711223344", "3FFFFFF711223344", true},
        {"3000000711223344", "3000000611223344", false},
        {"3000000711223344", "3000000F11223344", false},
        {"3000000711223344", "3000000701223344", false},
        {"3000000711223344", "5000000711223344", false},
        {"5000000711223344", "5FFFFFF711223344", true},
        {"5000000711223344", "5000000311223344", false},
        {"5000000711223344", "5000000711223344", true},
        {"0000000000000000", "0000000000000000", false},
        {"6001000011223344", "6001000011223344", false},
        {"4001000011223344", "4001000011223344", false},
        {"7001000011223344", "7001000011223344", false},
        {"F001000011223344", "F001000011223344", false},
    };
    for (const BasePair &pair : pairs)
        EXPECT_EQ(wwn(pair.one).Same_Base(wwn(pair.other)), pair.same) << pair.one << ' ' << pair.other;
}

/// A format's port fields; every row has the same bits below its NAA nibble.
struct PortRow {
    const char *name;
    const char *onePort;  // after Set_Port(0x1ABC)
    const char *twoPorts; // after Set_Port(0x41, 0x7E)
    uint32_t port;        // Get_Port, preset to kPreset
    uint32_t first;
    uint32_t second;
};

constexpr PortRow kPortRows[] = {
    {"0765432189ABCDEF", "0765432189ABCDEF", "0765432189ABCDEF", kPreset, kPreset, kPreset},
    {"1765432189ABCDEF", "1765432189ABCDEF", "1765432189ABCDEF", kPreset, kPreset, kPreset},
    {"2765432189ABCDEF", "2ABC432189ABCDEF", "207E432189ABCDEF", 0x765, 0x1D, 0x25},
    {"3765432189ABCDEF", "3000ABC189ABCDEF", "300007E189ABCDEF", 0x432, 0x10, 0x32},
    {"4765432189ABCDEF", "4765432189ABCDEF", "4765432189ABCDEF", kPreset, kPreset, kPreset},
    {"5765432189ABCDEF", "5765432189ABCDEF", "5765432189ABCDEF", kPreset, kPreset, kPreset},
    {"6765432189ABCDEF", "6765432189ABCDEF", "6765432189ABCDEF", kPreset, kPreset, kPreset},
    {"7765432189ABCDEF", "7765432189ABCDEF", "7765432189ABCDEF", kPreset, kPreset, kPreset},
    {"8765432189ABCDEF", "8765432189ABCDEF", "8765432189ABCDEF", kPreset, kPreset, kPreset},
    {"9765432189ABCDEF", "9765432189ABCDEF", "9765432189ABCDEF", kPreset, kPreset, kPreset},
    {"A765432189ABCDEF", "A765432189ABCDEF", "A765432189ABCDEF", kPreset, kPreset, kPreset},
    {"B765432189ABCDEF", "B765432189ABCDEF", "B765432189ABCDEF", kPreset, kPreset, kPreset},
    {"C765432189ABCDEF", "C765432189ABCDEF", "C765432189ABCDEF", kPreset, kPreset, kPreset},
    {"D765432189ABCDEF", "D765432189ABCDEF", "D765432189ABCDEF", kPreset, kPreset, kPreset},
    {"E765432189ABCDEF", "E765432189ABCDEF", "E765432189ABCDEF", kPreset, kPreset, kPreset},
    {"F765432189ABCDEF", "F765432189ABCDEF", "F765432189ABCDEF", kPreset, kPreset, kPreset},
};

TEST(Wwn, EachFormatHasThePortFieldsOfItsRow) {
    for (const PortRow &row : kPortRows) {
        EXPECT_EQ(named(row.name, [](Wwn &name) { name.Set_Port(0x1ABC); }), row.onePort) << row.name;
        EXPECT_EQ(named(row.name, [](Wwn &name) { name.Set_Port(0x41, 0x7E); }), row.twoPorts) << row.name;
        uint32_t port = kPreset;
        wwn(row.name).Get_Port(port);
        EXPECT_EQ(port, row.port) << row.name;
        uint32_t first = kPreset;
        uint32_t second = kPreset;
        wwn(row.name).Get_Port(first, second);
        EXPECT_EQ(first, row.first) << row.name;
        EXPECT_EQ(second, row.second) << row.name;
    }
}

/// What the names of a format turn into.
struct NameRow {
    const char *name;
    bool sameBaseAsItself;
    const char *fabricPort; // after Make_Fabric_Port_Wwn(0x41, 0x7E), null: refused
    const char *switchName;
};

constexpr NameRow kNameRows[] = {
    {"0765432189ABCDEF", false, nullptr, "0765432189ABCDEF"},
    {"1765432189ABCDEF", true, "207E432189ABCDEF", "1765432189ABCDEF"},
    {"2765432189ABCDEF", true, "207E432189ABCDEF", "1000432189ABCDEF"},
    {"3765432189ABCDEF", true, nullptr, "5000000189ABCDEF"},
    {"4765432189ABCDEF", false, nullptr, "4765432189ABCDEF"},
    {"5765432189ABCDEF", true, nullptr, "5765432189ABCDEF"},
    {"6765432189ABCDEF", false, nullptr, "6765432189ABCDEF"},
    {"7765432189ABCDEF", false, nullptr, "7765432189ABCDEF"},
    {"8765432189ABCDEF", false, nullptr, "8765432189ABCDEF"},
    {"9765432189ABCDEF", false, nullptr, "9765432189ABCDEF"},
    {"A765432189ABCDEF", false, nullptr, "A765432189ABCDEF"},
    {"B765432189ABCDEF", false, nullptr, "B765432189ABCDEF"},
    {"C765432189ABCDEF", false, nullptr, "C765432189ABCDEF"},
    {"D765432189ABCDEF", false, nullptr, "D765432189ABCDEF"},
    {"E765432189ABCDEF", false, nullptr, "E765432189ABCDEF"},
    {"F765432189ABCDEF", false, nullptr, "F765432189ABCDEF"},
};

TEST(Wwn, EachFormatTurnsIntoOtherNamesAsItsRowSays) {
    for (const NameRow &row : kNameRows) {
        EXPECT_EQ(wwn(row.name).Same_Base(wwn(row.name)), row.sameBaseAsItself) << row.name;

        Wwn fabricPort = wwn(row.name);
        EXPECT_EQ(fabricPort.Make_Fabric_Port_Wwn(0x41, 0x7E), row.fabricPort != nullptr) << row.name;
        EXPECT_EQ(fabricPort.tostring(), row.fabricPort != nullptr ? row.fabricPort : row.name);

        Wwn nullBase = wwn(row.name);
        EXPECT_TRUE(nullBase.Make_Fabric_Port_Wwn_Null_Mac(0x41, 0x7E)) << row.name;
        EXPECT_EQ(nullBase.tostring(), "207EFFFFFFFFFFFF") << row.name;

        Wwn switchName = wwn(row.name);
        EXPECT_EQ(&switchName.convertToSwitchName(), &switchName);
        EXPECT_EQ(switchName.tostring(), row.switchName);
    }
}

TEST(Wwn, OneNumberPortsKeepTwelveBits) {
    for (const char *name : {"2000ABCD12345678", "3000000F12345678"}) {
        for (const uint32_t port : {0U, 1U, 5U, 0x3FU, 0x40U, 0xABCU, 0xFFFU, 0x1000U, 0x1ABCU, 0xFFFFFFFFU}) {
            Wwn changed = wwn(name);
            changed.Set_Port(port);
            uint32_t read = kPreset;
            changed.Get_Port(read);
            EXPECT_EQ(read, port & 0xFFFU) << name;
            changed.Set_Port(0);
            EXPECT_EQ(changed.tostring(), name) << "no other bit has moved";
        }
    }
}

TEST(Wwn, TwoNumberPortsKeepSixBitsEachAndShareTheField) {
    for (const char *name : {"2000ABCD12345678", "3000000F12345678"}) {
        for (const uint32_t first : {0U, 1U, 0x20U, 0x3FU, 0x40U, 0xFFFFFFFFU}) {
            for (const uint32_t second : {0U, 1U, 0x2AU, 0x3FU, 0x7FU, 0xFFFFFFC0U}) {
                Wwn changed = wwn(name);
                changed.Set_Port(first, second);
                uint32_t readFirst = kPreset;
                uint32_t readSecond = kPreset;
                changed.Get_Port(readFirst, readSecond);
                EXPECT_EQ(readFirst, first & 0x3FU) << name;
                EXPECT_EQ(readSecond, second & 0x3FU) << name;
                uint32_t whole = kPreset;
                changed.Get_Port(whole);
                EXPECT_EQ(whole, (first & 0x3FU) * 64 + (second & 0x3FU)) << name;
            }
        }
    }
}

TEST(Wwn, SettingThePortOfAFormat3NameClearsTheBitsAboveTheField) {
    EXPECT_EQ(named("3ABC000011223344", [](Wwn &name) { name.Set_Port(5); }), "3000005011223344");
    EXPECT_EQ(named("3ABC000011223344", [](Wwn &name) { name.Set_Port(0, 5); }), "3000005011223344");
    EXPECT_EQ(named("3ABCFFFF11223344", [](Wwn &name) { name.Set_Port(1, 0); }), "3000040F11223344");
}

TEST(Wwn, FabricPortNamesAreOfFormat2WithBothNumbers) {
    EXPECT_EQ(named("100000C0DD00A1B2", [](Wwn &name) { name.Make_Fabric_Port_Wwn(0, 0); }), "200000C0DD00A1B2");
    EXPECT_EQ(named("100000C0DD00A1B2", [](Wwn &name) { name.Make_Fabric_Port_Wwn(1, 2); }), "204200C0DD00A1B2");
    EXPECT_EQ(named("2FFF00C0DD00A1B2", [](Wwn &name) { name.Make_Fabric_Port_Wwn(1, 2); }), "204200C0DD00A1B2");
    Wwn five = wwn("500000C0DD00A1B2");
    EXPECT_FALSE(five.Make_Fabric_Port_Wwn(1, 2));
    EXPECT_EQ(five.tostring(), "500000C0DD00A1B2");
}

TEST(Wwn, FabricPortNamesOnTheNullBaseForgetWhatWasThere) {
    Wwn name;
    EXPECT_TRUE(name.Make_Fabric_Port_Wwn_Null_Mac(0, 0));
    EXPECT_EQ(name.tostring(), "2000FFFFFFFFFFFF");
    EXPECT_TRUE(name.Make_Fabric_Port_Wwn_Null_Mac(1, 2));
    EXPECT_EQ(name.tostring(), "2042FFFFFFFFFFFF");
    EXPECT_TRUE(name.Make_Fabric_Port_Wwn_Null_Mac(63, 63));
    EXPECT_EQ(name.tostring(), "2FFFFFFFFFFFFFFF");
}

struct Vendor {
    const char *name;
    bool mcdata;
    bool cisco;
};

TEST(Wwn, VendorsAreKnownByTheirCompanyIdentifier) {
    constexpr Vendor rows[] = {
        {"1000080088A0C1B2", true, false},  {"2FFF080088A0C1B2", true, false},  {"0000080088000000", true, false},
        {"F123080088FFFFFF", true, false},  {"1000080087A0C1B2", false, false}, {"1000080089A0C1B2", false, false},
        {"1000080188A0C1B2", false, false}, {"1000880088A0C1B2", false, false}, {"1000000D88A0C1B2", false, false},
        {"0800880000000000", false, false}, // the identifier in another place
        {"2000000DEC123456", false, true},  {"5FFF000DEC123456", false, true},  {"0000000DEC000000", false, true},
        {"2000000DEB123456", false, false}, {"2000000DED123456", false, false}, {"2000000CEC123456", false, false},
        {"2000800DEC123456", false, false}, {"20000800EC123456", false, false}, {"000DEC0000000000", false, false},
        {"100000C0DD00A1B2", false, false}, {"0000000000000000", false, false}, {"FFFFFFFFFFFFFFFF", false, false},
    };
    for (const Vendor &row : rows) {
        EXPECT_EQ(wwn(row.name).isMcDATA(), row.mcdata) << row.name;
        EXPECT_EQ(wwn(row.name).isCisco(), row.cisco) << row.name;
    }
}

TEST(Wwn, SwitchNamesHaveNoPort) {
    constexpr const char *rows[][2] = {
        {"2004000BEC123456", "1000000BEC123456"}, {"2FFF080088A0C1B2", "1000080088A0C1B2"},
        {"2004000DEC123456", "2000000DEC123456"}, // Cisco's stay of format 2
        {"2000000DEC123456", "2000000DEC123456"}, {"3ABC123411223344", "5000000411223344"},
        {"3004000DEC123456", "5000000DEC123456"}, // in format 3 Cisco's are as any
        {"1004000DEC123456", "1004000DEC123456"}, {"5ABC123411223344", "5ABC123411223344"},
        {"0000000000000000", "0000000000000000"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(wwn(row[0]).convertToSwitchName().tostring(), row[1]) << row[0];
}

TEST(Wwn, ASwitchNameIsItsOwnSwitchName) {
    for (const char *name : {"2004000BEC123456", "2004000DEC123456", "3ABC123411223344"}) {
        const Wwn once = wwn(name).convertToSwitchName();
        EXPECT_EQ(Wwn(once).convertToSwitchName(), once) << name;
    }
}

} // namespace
