/*
 * How the switch is managed: its services, SNMP, addresses and firmware. Plain data; guarded by its owner.
 *
 * An IP version that the switch does not have is not supported: its address and whether it is enabled can neither be
 * read nor set by clients. One that it has and that is not enabled has no address: an empty text.
 */
#ifndef SIM_MODEL_SETTINGS_H
#define SIM_MODEL_SETTINGS_H

#include <string>

#include "sim/tree/Row.h"

namespace sim {

/// One version of the internet protocol.
struct IpVersion {
    bool feature;
    bool isEnabled;      ///< configured; has an effect only with the feature
    std::string address; ///< what the management port has, or will have as soon as the version is enabled
};

struct Settings {
    bool telnet = true;
    bool ssh = false;
    bool embeddedGui = true;
    bool ssl = false;
    bool snmp = true;
    std::string readCommunity = "public";
    std::string description; ///< of the product, for SNMP managers
    IpVersion ipv4 = {true, true, "192.0.2.10"};
    IpVersion ipv6 = {true, false, "2001:db8::a1b2"};
    std::string activeVersion = "8.0.4.2"; ///< of the firmware
    std::string oemActiveVersion;          ///< as the vendor numbers it who sells the switch; empty: not supported
    std::string type;
};

Rows settingsRows();

} // namespace sim

#endif // SIM_MODEL_SETTINGS_H
