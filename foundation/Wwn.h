/*
 * World-wide names: the 8-byte names of switches, ports and nodes.
 *
 * A value type without invariants: copied freely, owning nothing. The all-zero name means "no name"; it
 * is what a default-constructed or unparseable name is. Not synchronised: share a Wwn between threads as
 * you would share an int.
 *
 * The layout of a name depends on its Network Address Authority, the top four bits ("NAA nibble"). Formats 2
 * and 3 hold a 12-bit port field, read and written either as one number or as two numbers of 6 bits;
 * other formats hold none.
 */
#ifndef FOUNDATION_WWN_H
#define FOUNDATION_WWN_H

#include <cstdint>
#include <string>

#include "foundation/Export.h"

class DATACACHE_EXPORT Wwn {
public:
    /// The zero name.
    Wwn() = default;
    /// Parses 16 hexadecimal digits, or eight pairs of them with single colons between. Any other text gives
    /// the zero name. Of the colon form the eighth pair is not read: the last byte is always 00.
    Wwn(const std::string &text); // NOLINT(google-explicit-constructor): names arrive as text everywhere

    bool operator==(const Wwn &other) const { return _high == other._high && _low == other._low; }
    bool operator!=(const Wwn &other) const { return !(*this == other); }

    /// 16 upper-case hexadecimal digits, no separators.
    std::string tostring() const;

    /// True when both names are of the same device: equal but for the port field. False for any name
    /// whose format has no such notion (NAA other than 1, 2, 3 and 5), even against itself.
    bool Same_Base(const Wwn &other) const;

    /// Writes the port field as one number (its low 12 bits count). No change without a port field.
    void Set_Port(uint32_t port);
    /// Writes the port field as two numbers (the low 6 bits of each count). No change without a port field.
    void Set_Port(uint32_t first, uint32_t second);
    /// Reads the port field, 0 to 4095. Without a port field `port` stays as it was: preset it.
    void Get_Port(uint32_t &port) const;
    /// Reads the port field as two numbers, 0 to 63 each. Without a port field both stay as they were.
    void Get_Port(uint32_t &first, uint32_t &second) const;

    /// Turns a switch name (NAA 1 or 2) into the name of a fabric port; false and no change for other names.
    bool Make_Fabric_Port_Wwn(uint32_t first, uint32_t second);
    /// Makes this the name of a fabric port on the null base 20:00:FF:FF:FF:FF:FF:FF. Always true.
    bool Make_Fabric_Port_Wwn_Null_Mac(uint32_t first, uint32_t second);

    /// The name carries McDATA's company identifier, 08:00:88.
    bool isMcDATA() const;
    /// The name carries Cisco's company identifier, 00:0D:EC. Cisco numbers switch ports from one.
    bool isCisco() const;

    /// Turns a port's name into its switch's name; names without a port field stay as they are.
    Wwn &convertToSwitchName();

private:
    uint32_t _high = 0; // bytes 0 to 3, byte 0 on top
    uint32_t _low = 0;  // bytes 4 to 7
};

#endif // FOUNDATION_WWN_H
