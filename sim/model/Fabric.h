/*
 * The fabric around the switch: the other switches (peers), the links, the devices that are logged in, and the
 * link-state database that follows from them. Plain data; guarded by its owner.
 *
 * Names of switches and ports are in upper case, so that equal names are equal texts. The local switch is known by
 * kLocalName, because its name may change.
 */
#ifndef SIM_MODEL_FABRIC_H
#define SIM_MODEL_FABRIC_H

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/Simulator.h"
#include "sim/model/Announcement.h"

namespace sim {

struct Switch;

constexpr const char *kLocalName = "";

/// A link as a switch at one of its ends tells of it.
struct LinkEnd {
    unsigned port = 0;
    unsigned neighbour = 0; ///< domain
    unsigned neighbourPort = 0;
};

/// A record of the link-state database.
struct LinkStateRecord {
    unsigned domain = 0;
    std::string wwn;
    unsigned hops = 0;          ///< from the local switch; kOutOfReach when no links lead to the switch
    std::vector<LinkEnd> links; ///< in the order of the ports
};

constexpr unsigned kOutOfReach = 255;

/// In the order of the domain IDs.
using Database = std::vector<LinkStateRecord>;

/// A port, by the name of its switch and its number there.
using Place = std::pair<std::string, unsigned>;

/// A device that is logged in.
struct LoggedIn {
    std::string nodeWwn;
    std::string portWwn;
};

struct Fabric {
    unsigned priority = 128; ///< of the local switch
    std::vector<Peer> peers; ///< in the order of the domain IDs
    std::vector<Link> links; ///< in the order in which they came up
    std::map<Place, LoggedIn> devices;
    std::map<std::string, Place> places; ///< of the devices, by the names of their ports
    std::set<std::string> recorded;      ///< names of the peers that have a record in the database
    Database database;
};

/// Null when there is no such peer.
const Peer *peerNamed(const Fabric &fabric, const std::string &name);
const Peer *peerAt(const Fabric &fabric, unsigned domain);

/// Brings the link-state database up to date.
Announcements updateLinkState(Switch &device);

/// What can be done to the fabric; errors as in Simulator.h.
Announcements addPeer(Switch &device, const Peer &peer);
Announcements removePeer(Switch &device, const std::string &wwn);
Announcements changePeer(Switch &device, const Peer &peer);
Announcements setPriority(Switch &device, unsigned priority);
Announcements connect(Switch &device, const Link &link);
Announcements disconnect(Switch &device, const Link &link);

/// The links with the names that switches have now.
std::vector<Link> linksOf(const Switch &device);

// ---- names as they come from outside -----------------------------------------------------------------

/// A world-wide name in the form in which it is kept. Throws std::invalid_argument when it is none.
std::string keptName(const char *what, const std::string &text);
/// A port of the local switch or of a peer. Throws std::invalid_argument when there is none.
Place existingPlace(const Switch &device, const std::string &wwn, unsigned port);
/// The name that a switch known by `name` has.
std::string nameOf(const Switch &device, const std::string &name);

} // namespace sim

#endif // SIM_MODEL_FABRIC_H
