/*
 * What a simulated switch, its fabric and its zoning database are made of. Plain data. Part of the control interface,
 * sim/Simulator.h.
 */
#ifndef SIM_PARTS_H
#define SIM_PARTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/zovlib.h"

namespace sim {

/// A transceiver that can be plugged into a port. Its texts are printing characters (blanks included), and
/// are filled up with blanks to the length they have in the transceiver's memory.
struct Transceiver {
    /// What kind of module it says it is: 0x03 SFP, 0x0D QSFP+, 0x11 QSFP28, 0x00 it does not say. The bytes are
    /// laid out as an SFP's whatever this is.
    uint8_t identifier = 0x03;
    uint32_t vendorOui = 0x009065;                 ///< IEEE company identifier, 24 bits
    std::string vendorName = "FINISAR CORP.";      ///< at most 16 characters
    std::string partNumber = "FTLF8528P3BCV";      ///< at most 16 characters
    std::string serialNumber = "FNS0331A00000001"; ///< at most 16 characters
    bool diagnostics = true;                       ///< digital diagnostics (DDM)
    bool longWave = false;                         ///< 1310 nm on single mode in place of 850 nm on multimode
};

/// A blade that can be inserted into a slot; it comes up Online and Good.
struct Blade {
    std::string type = "IO";                 ///< IO, CPU, PS or FAN
    std::string partNumber = "31-80016-02";  ///< at most 255 characters
    std::string serialNumber = "0331B00001"; ///< likewise; a blade without a number counts as none for clients
    unsigned temperatureSensors = 2;         ///< at most 255
    unsigned voltageSensors = 4;             ///< likewise
};

/// How the fabric's management server answers for one switch of the fabric.
struct TopologyService {
    /// Seconds of uptime that pass before a client that reads "Oper.TopologyAll.DOMAIN.PortEntries" is answered.
    unsigned seconds = 0;
    /// False: it is refused then, with status 23, and so is every entry, at once.
    bool answers = true;
};

/// Another switch, which the simulated one, called local, can have in its fabric.
struct Peer {
    std::string wwn;         ///< 16 hexadecimal digits, of no other switch
    unsigned domain = 0;     ///< 1 to 239, of no other switch
    unsigned priority = 128; ///< in the choice of the principal: 1, the highest, to 254
    unsigned ports = 24;     ///< as the management server lists them, at most 256; numbered from 0
    TopologyService topology;
};

/// An inter-switch link: a port of one switch and a port of another, the local one or a peer.
struct Link {
    std::string wwn;
    unsigned port = 0;
    std::string otherWwn;
    unsigned otherPort = 0;
};

/// An entry of the fabric's name server: a device that is logged in at a port of a switch.
struct NameServerEntry {
    std::string switchWwn;
    unsigned port = 0;
    std::string nodeWwn; ///< of the device; 16 hexadecimal digits
    std::string portWwn; ///< likewise; of no other entry
};

/// A member of a zone or an alias, by its type and its text: 16 hexadecimal digits for a port name, "domain:port" in
/// decimal, 6 hexadecimal digits for an address, the name of an alias. What the switch hands out has capital digits.
struct ZoneMember {
    zov_fzs_zonemember_type_e type = ZOV_ZMT_PORTWWN;
    std::string text;
};

struct Zone {
    std::string name;
    zov_fzs_zone_type_e type = ZOV_ZT_SOFT;
    std::vector<ZoneMember> members;
};

struct ZoneAlias {
    std::string name;
    std::vector<ZoneMember> members; ///< no aliases
};

struct ZoneSet {
    std::string name;
    std::vector<std::string> zones; ///< names
};

/// A zoning database, everything in the order in which it was defined.
struct ZoningDatabase {
    std::vector<ZoneSet> zonesets;
    std::vector<Zone> zones;
    std::vector<ZoneAlias> aliases;
};

inline bool operator==(const ZoneMember &left, const ZoneMember &right) {
    return left.type == right.type && left.text == right.text;
}

inline bool operator==(const Zone &left, const Zone &right) {
    return left.name == right.name && left.type == right.type && left.members == right.members;
}

inline bool operator==(const ZoneAlias &left, const ZoneAlias &right) {
    return left.name == right.name && left.members == right.members;
}

inline bool operator==(const ZoneSet &left, const ZoneSet &right) {
    return left.name == right.name && left.zones == right.zones;
}

inline bool operator==(const ZoningDatabase &left, const ZoningDatabase &right) {
    return left.zonesets == right.zonesets && left.zones == right.zones && left.aliases == right.aliases;
}

/// How many zoning objects of each kind are alive in the process: made by a client or fetched for one, and not
/// destroyed.
struct ZoningObjectCounts {
    size_t zonesets = 0;
    size_t zones = 0;
    size_t aliases = 0;
    size_t members = 0;
};

inline bool operator==(const ZoningObjectCounts &left, const ZoningObjectCounts &right) {
    return left.zonesets == right.zonesets && left.zones == right.zones && left.aliases == right.aliases &&
           left.members == right.members;
}

} // namespace sim

#endif // SIM_PARTS_H
