/*
 * The fabric as the cache knows it: a FabricCache holds SwitchCache elements, and a SwitchCache hands out its ports as
 * PortCache values.
 *
 * Thread-safety: these are parts of the cache object and are guarded by its lock. A client that got a FabricCache or
 * SwitchCache pointer holds the lock (DataCache::getInstance()) while it uses it; the pointer of a fabric is good for
 * the life of the cache, that of a switch only until the lock is given back: the next refresh of the fabric may delete
 * it. A PortCache is a value and the client's own.
 *
 * Errors: every miss is the null port, a null pointer or an empty text; nothing throws.
 */
#ifndef DATACACHE_FABRICCACHE_H
#define DATACACHE_FABRICCACHE_H

#include <array>
#include <cstdint>
#include <string>

#include "common/include/list_t"
#include "foundation/Export.h"
#include "foundation/Wwn.h"

/// "true" or "false", for log lines.
DATACACHE_EXPORT const char *booltostr(bool value);

/// One port.
class DATACACHE_EXPORT PortCache {
public:
    /// The null port: no such port.
    PortCache() = default;
    PortCache(const Wwn &wwn, unsigned short portIndex) : _wwn(wwn), _port_index(portIndex) {}

    bool isNull() const;
    /// The port's name as text, empty for the null port.
    std::string getWwn() const;

    Wwn _wwn;                       ///< all-zero means no such port
    unsigned short _port_index = 0; ///< as the switch library numbers the port
    uint32_t _value = 0;            ///< not used by the cache
    std::string _text;              ///< not used by the cache
};

/// One switch of the fabric. It keeps a table of its ports, one row per port in the order in which they were found; a
/// port's name is the base port name with the row's port number in its port field.
class DATACACHE_EXPORT SwitchCache {
public:
    static constexpr unsigned kMaxPorts = 256;

    SwitchCache() = default;

    Wwn getWorldWideName() const { return _wwn; }
    std::string getWwn() const { return _wwn.tostring(); }
    unsigned char getDomainID() const { return _domain_id; }
    bool isLocal() const { return _local != 0; }
    /// Always 2: nothing tells another switch's status.
    unsigned char getStatus() const { return _status; }

    /// Walks the ports. A port's successor is looked up by its index; the null port follows the last one.
    PortCache getFirstPort() const;
    PortCache getNextPort(const PortCache &current) const;
    /// The port that the link-state database gives this index: decimal, hexadecimal with "0x" or octal with a leading
    /// 0.
    PortCache getPortByLSDBPortIndex(const std::string &text) const;
    PortCache getPortByWorldWideName(const Wwn &wwn) const;
    PortCache getPortByWwn(const std::string &text) const;

    /// Adds a row; a full table takes no more.
    void addPort(unsigned short wwnPortNumber, unsigned char portIndex);

    Wwn _wwn;
    Wwn _port_wwn;                                       ///< base port name; zero: the ports are not known
    unsigned short _num_ports = 0;                       ///< rows of the two tables
    std::array<unsigned short, kMaxPorts> _wwn_portno{}; ///< port number for the name's port field
    std::array<unsigned char, kMaxPorts> _port_index{};  ///< index as the switch library numbers the port
    unsigned char _domain_id = 0;
    unsigned char _mserver_timeout =
        0; ///< its ports could not be read in time: not asked again while it is in the fabric
    unsigned char _mserver_errors = 0; ///< refusals in a row to tell its ports
    unsigned char _stale = 0;          ///< not seen by the fabric refresh that is going on
    unsigned char _local = 0;          ///< the switch this software runs on
    unsigned char _status = 2;

private:
    unsigned rows() const { return _num_ports < kMaxPorts ? _num_ports : kMaxPorts; }
    PortCache portInRow(unsigned row) const;
    /// The first row with this port number; null if there is none.
    const unsigned short *findPortNumber(uint32_t number) const;
};

/// The fabric that the local switch belongs to.
class DATACACHE_EXPORT FabricCache {
public:
    FabricCache() = default;
    ~FabricCache();
    FabricCache(const FabricCache &) = delete;
    FabricCache &operator=(const FabricCache &) = delete;

    /// The name of the principal switch; zero until it has been read.
    Wwn getFabricWorldWideName() const { return _fabric_name; }
    std::string getFabricWwn() const { return _fabric_name.tostring(); }
    /// Always 0 once the fabric has been read.
    uint32_t getOperatingMode() const { return _operating_mode; }
    unsigned short getSwitchCount() const { return static_cast<unsigned short>(_switches.size()); }

    /// Walks the switches in the order in which they were found.
    SwitchCache *getFirstSwitch() const;
    SwitchCache *getNextSwitch(const SwitchCache *current) const;
    /// The domain ID as decimal text; its low eight bits count.
    SwitchCache *getSwitchByDomainID(const std::string &text) const;
    SwitchCache *getSwitchByWwn(const std::string &text) const;
    /// The first switch that has a port of this name.
    SwitchCache *getSwitchByPortWwn(const std::string &text) const;

    /// Adds a switch of this name at the end of the list, which owns it.
    SwitchCache &addSwitch(const Wwn &wwn);

    /// The list elements themselves, for the refreshes that find and delete switches.
    Element<SwitchCache> *findSwitchCacheElement(unsigned char domainId) const;
    Element<SwitchCache> *findSwitchCacheElement(const Wwn &wwn) const;

    Wwn _fabric_name;
    Wwn _second_name;
    unsigned char _first_flag = 0;
    uint32_t _operating_mode = 0;
    std::array<unsigned short, 2> _values{};
    List<Element<SwitchCache>> _switches; ///< owns its elements, and they their switches
    unsigned char _second_flag = 0;
};

#endif // DATACACHE_FABRICCACHE_H
