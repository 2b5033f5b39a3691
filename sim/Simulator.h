/*
 * The control side of the simulated switch.
 *
 * libzovlib.so is a switch in software behind platform/zovlib.h. A program that uses only that
 * interface gets a healthy 24-port switch, made at the first connection. A test, or the tool, that
 * wants to steer the switch makes a Simulator of its own first: new connections to "localhost" then
 * reach the Simulator made last. Destroying it is switching the switch off: connections to it stay
 * dead, calls on them fail, no notification is under way when the destructor returns. To reset a
 * switch, destroy it and make a new one. Several may live side by side.
 *
 * Thread-safety: every operation may be called from any thread, also from a notification callback
 * (but for waitUntilQuiet() and the destructor, which wait for running callbacks).
 *
 * Errors: an operation given a key the switch does not know, a value the attribute cannot take or an
 * index that does not exist throws std::invalid_argument saying what is allowed, and changes nothing; so does
 * one that is refused.
 *
 * A program that may also run against a real switch library looks zovsim_create up at run time, and
 * works without it when it is not there; the interface is therefore abstract.
 */
#ifndef SIM_SIMULATOR_H
#define SIM_SIMULATOR_H

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/zovlib.h"
#include "sim/Fault.h"
#include "sim/Parts.h"
#include "sim/Record.h"

namespace sim {

/// Whether a change on the switch is announced by the notification that belongs to it.
enum class Notify { yes, no };

/// How the switch's clock goes, and with it everything that takes time: slow answers, delays, late notifications.
enum class Pace {
    byHand,  ///< the uptime goes on with passTime() and slow answers only, which take no real time; delays do
    running, ///< with real time, times a speed
    paused,  ///< with passTime() only; who is to wait waits until it has gone so far
    /// As fast as possible: with passTime(), slow answers and delays, none of which takes real time. Notifications
    /// come on the thread of passTime() and waitUntilQuiet() and only there, those that are late at their time, so
    /// that one thread can do everything, and the same again.
    driven,
};

/// The holder of admin mode or of the fabric's zoning lock when it is a management client that is not one of the
/// connections.
constexpr uint32_t kOtherClient = 0xFFFFFFFF;

/// A simulated switch.
class Simulator {
public:
    Simulator() = default;
    Simulator(const Simulator &) = delete;
    Simulator &operator=(const Simulator &) = delete;
    virtual ~Simulator() = default;

    // ---- the switch's state, by the key under which clients read it ----------------------------------
    //
    // Clients configure the switch in an edit, in admin mode; what they may not set is refused when it is set, and the edit
    // goes on without it. "Cmd.Switch.BackupConfig" keeps the running configuration, the next one replaces it;
    // "Cmd.Switch.RestoreConfig" makes it the running one again, with the notifications of a saved edit in the order of
    // the tree, but for what the switch has or supports no longer. Restoring is refused with status 30 when nothing was
    // backed up, and with status 14 while an edit is open; a saved edit goes on waiting to be activated.
    //
    // The management port has an address of an IP version only while the switch has the version's feature and the
    // version is enabled. One that is set meanwhile shows later, and its coming and going is announced by code 68 or 69.

    /// Sets an attribute as the switch itself would change it: no admin mode is needed, and state that
    /// clients can only read can be set too. With Notify::yes the notification that belongs to the
    /// attribute goes out, if there is one and the value really changed.
    virtual void set(const std::string &key, const std::string &value, Notify notify = Notify::yes) = 0;
    /// The present value of an attribute.
    virtual std::string get(const std::string &key) const = 0;
    /// Every attribute the switch has, in the order of the tree. Reading it may still be answered with a status,
    /// as the key after the last account is.
    virtual std::vector<std::string> keys() const = 0;
    /// The value that an attribute was given, also while it does not show: the address of an IP version that is off.
    virtual std::string stored(const std::string &key) const = 0;
    /// The profile that the switch was made from.
    virtual std::string profile() const = 0;

    // ---- hands on the switch -------------------------------------------------------------------------

    /// Plugs a transceiver into a port: its identification, serial number and diagnostics support can be read
    /// then. Sends code 76; the port is the third source number, and the text is
    ///
    ///     0;0;0;PORT;1;OUI;SERIAL;FORMAT
    ///
    /// with the OUI as a decimal number, the serial number at its full 16 characters, and the format 0 for an
    /// SFP, 2 for a module that does not say what it is, 1 for all others. Refused while one is plugged in.
    ///
    /// Neither this nor pulling changes the port's state: set "Oper.UserPort.0.N.OperState" for that.
    virtual void plugTransceiver(unsigned port, const Transceiver &transceiver, Notify notify = Notify::yes) = 0;
    /// Pulls it out again: what could be read of it is empty then. Sends code 77 with the text "0;0;0;PORT".
    /// Refused when there is none.
    virtual void pullTransceiver(unsigned port, Notify notify = Notify::yes) = 0;

    /// Inserts a blade into a slot. Sends code 28; the slot is the second source number. Refused while the slot
    /// is occupied, that is, while its state is not NotInstalled.
    ///
    /// The ports that belong to the slot come with an I/O blade: Offline and without transceivers. Nothing but the
    /// blade's own notification is sent for them. Only the slots of a profile with blades have ports.
    virtual void insertBlade(unsigned slot, const Blade &blade, Notify notify = Notify::yes) = 0;
    /// Takes the blade out: the slot's state is NotInstalled, everything else about it empty. Sends code 29.
    /// Refused when the slot is empty. The slot's ports go with it, to NotInstalled and without transceivers.
    virtual void removeBlade(unsigned slot, Notify notify = Notify::yes) = 0;

    /// Adds an account at the end of the switch's list. Sends code 50. Names are 1 to 64 printing characters
    /// without blanks, case counts; refused when there is an account of this name.
    virtual void addAccount(const std::string &name, Notify notify = Notify::yes) = 0;
    /// Takes an account away. Sends code 50. Refused when there is none of this name.
    virtual void removeAccount(const std::string &name, Notify notify = Notify::yes) = 0;

    // ---- the fabric ----------------------------------------------------------------------------------
    //
    // The fabric is the local switch and every peer that links lead to, over other peers or not. Its principal is the
    // switch with the highest priority (the lowest number), of several the one with the lowest name; it is chosen anew
    // whenever one of these operations gives the fabric other switches or one of them another priority. What set() made
    // of "Oper.Switch.WhoIsPrincipal" stands until then.
    //
    // The link-state database has a record for every switch of the fabric, in the order of the domain IDs, with its
    // hops from the local switch and its links, numbered from 0 in the order of its ports. The record of a switch that
    // links no longer lead to stays, with 255 hops and no links, until the switch comes back or is removed. The name
    // server and the management server answer for the switches of the fabric only.
    //
    // Notifications of a change, in this order and only those that apply: code 7 when the link-state database is
    // another, code 1 when the fabric has other switches or another principal, code 80 for the name-server entries that
    // went with their switches, code 79 for those that came. The text of the latter two lists entries of
    // ADDRESS,NODEWWN,PORTWWN, separated by ";", so many to a notification as fit. Changing the local switch's name or
    // domain ID by its key sends code 7 as well, after the key's own notification; those of a peer are refused.
    //
    // In transparent mode the switch is in no fabric: the keys of the database, the name server and the management
    // server are refused as not supported, and the operations send nothing. What they do shows when the mode ends.
    //
    // Names are kept in upper case. Links and devices at a local port stay what they are, whatever becomes of the port
    // after they came.

    /// Puts a peer next to the switch, without a link and so in no fabric of its. 238 peers at most.
    virtual void addPeer(const Peer &peer) = 0;
    /// Switches a peer off: its links and name-server entries go with it.
    virtual void removePeer(const std::string &wwn, Notify notify = Notify::yes) = 0;
    /// Gives the peer of this name other properties. It keeps its links and devices, so it needs the ports they are at.
    virtual void changePeer(const Peer &peer, Notify notify = Notify::yes) = 0;
    /// The local switch's own priority in the choice of the principal, 128 at first.
    virtual void setPriority(unsigned priority, Notify notify = Notify::yes) = 0;
    /// Brings up a link. Refused when one of the ports does not exist or has a link, and within one switch. The state of
    /// a local port is set by its own key, and is not changed by this; it exists unless it is NotInstalled.
    virtual void connect(const Link &link, Notify notify = Notify::yes) = 0;
    /// Takes the link down again; its ends may be named in either order. Refused when there is no such link.
    virtual void disconnect(const Link &link, Notify notify = Notify::yes) = 0;
    /// Logs a device in and out. Sends code 79 and 80 when its switch is in the fabric. Refused for a port that does not
    /// exist or has a device, and for a port name that is not logged in.
    virtual void logIn(const NameServerEntry &entry, Notify notify = Notify::yes) = 0;
    virtual void logOut(const std::string &portWwn, Notify notify = Notify::yes) = 0;

    /// All peers in the order of their domain IDs, all links in the order in which they came up, and all entries in the
    /// order of their addresses, whether in the fabric or not.
    virtual std::vector<Peer> peers() const = 0;
    virtual std::vector<Link> links() const = 0;
    virtual std::vector<NameServerEntry> nameServer() const = 0;
    /// The local switch's own priority.
    virtual unsigned priority() const = 0;

    // ---- zoning --------------------------------------------------------------------------------------
    //
    // The database has a defined half, which clients edit, and an active one: the active zone set as it was when it was
    // activated or last committed, with its zones and the aliases these refer to. A commit, by a client or by
    // setZoning(), replaces the defined half, and the active one if it defines a set of the active set's name. Each half
    // has a checksum that is another one after every change of its content, in whatever order things are listed, and is
    // never 1. A change of either sends code 3, once.
    //
    // A client edits in admin mode and under the fabric's zoning lock, from "Cmd.Zoning.EditConfig", which begins with
    // what is defined, to "Cmd.Zoning.SaveConfig". A zoning command that is refused meanwhile, by the switch or by a
    // rule of misbehaviour, spoils the edit: saving is refused and nothing changes. Saving ends an edit, done or
    // refused; so does everything that ends the lock. What is created, added or given the type it has already is
    // accepted. In the member limit, an alias's members count once for the alias, and once more for every zone that
    // refers to it.
    //
    // A list of zone sets that a client was handed is overwritten when the thread that asked for it makes its next call.

    /// The defined half.
    virtual ZoningDatabase zoning() const = 0;
    /// The active half: one zone set with its zones and their aliases, or nothing at all.
    virtual ZoningDatabase activeZoning() const = 0;
    /// Another management client commits a database, whoever holds the lock. Refused for what a client could not commit,
    /// and for names that are there twice.
    virtual void setZoning(const ZoningDatabase &database, Notify notify = Notify::yes) = 0;
    /// Another management client activates a defined zone set, or deactivates with an empty name.
    virtual void activateZoneset(const std::string &name, Notify notify = Notify::yes) = 0;
    /// From now on no edit goes beyond these; what is there already may.
    virtual void setZoningLimits(const zov_fzs_zoninglimits_s &limits) = 0;
    virtual zov_fzs_zoninglimits_s zoningLimits() const = 0;
    /// The connection that holds the fabric's zoning lock, 0 for none, kOtherClient for another management client.
    virtual uint32_t zoningLockHolder() const = 0;
    /// Lets another management client take the lock (true) or give it back (false). It takes it even from a connection
    /// that holds it, as the fabric can; the edit that was open there is forgotten.
    virtual void holdZoningLockElsewhere(bool hold) = 0;

    /// Zoning objects belong to the process, whatever switches there are.
    virtual ZoningObjectCounts zoningObjects() const = 0;
    /// What clients did with zoning objects that a real switch library might not have survived, since this switch was
    /// made: one line for each argument that was null, or no object, or destroyed before, or of another kind. The
    /// switch made last keeps the list. Under a sanitizer a misuse is reported on the standard error output and stops
    /// the process, unless the environment variable ZOVSIM_MISUSE is "report"; in other builds it does so only when that
    /// variable is "stop".
    virtual std::vector<std::string> misuses() const = 0;

    // ---- time ----------------------------------------------------------------------------------------

    /// Seconds since the switch was switched on: 3600 at first. Who hosts the cache hands it out as the system's
    /// uptime.
    virtual long uptime() const = 0;
    /// The same to the millisecond.
    virtual std::chrono::milliseconds clock() const = 0;
    /// Moves the clock on at once, by whole seconds and what is left over. Refused for a time below 0. Of a driven clock
    /// the notifications that fall due come meanwhile, each at its time; what their callbacks do may take the clock
    /// further.
    virtual void passTime(std::chrono::seconds time, std::chrono::milliseconds more = std::chrono::milliseconds(0)) = 0;
    /// By hand at first. The speed is that of a running clock, above 0 and at most 1000000.
    virtual void setPace(Pace pace, double speed = 1) = 0;
    virtual Pace pace() const = 0;
    virtual double speed() const = 0;
    /// Waits until the clock shows this time, false if that took longer than `limit`; a driven one is moved on.
    /// Whoever plays something at its times needs nothing else, at any pace.
    virtual bool waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit) = 0;

    // ---- notifications -------------------------------------------------------------------------------

    /// Sends a notification to every client that registered for notifications, whether or not it
    /// registered for this code.
    virtual void deliver(const zov_event_s &event) = 0;
    /// The same from its parts; a text of more than 1395 characters is cut.
    virtual void deliver(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) = 0;
    /// Waits until every notification sent so far has been taken by its callbacks, but for those that are late; false
    /// if that took longer than `limit`. Not to be called while holding what a callback waits for. With a driven clock
    /// it hands them out itself.
    virtual bool waitUntilQuiet(std::chrono::milliseconds limit = std::chrono::seconds(10)) = 0;

    // ---- misbehaviour --------------------------------------------------------------------------------

    /// Adds a rule; the number it returns takes it away again. Earlier rules win. Refused for one that contradicts
    /// itself.
    virtual int addFault(const Fault &fault) = 0;
    virtual void removeFault(int number) = 0;
    virtual void clearFaults() = 0;
    /// The rules by their numbers, as much of them as is left: what they have skipped, done, waited and drawn is gone,
    /// so that adding them to another switch like this goes on where this one is.
    virtual std::map<int, Fault> faults() const = 0;
    /// A step of what is being played with the switch was taken: the rules that wait for it begin.
    virtual void reachStep(const std::string &name) = 0;
    /// Rules that are added from now on without a seed of their own draw from one that follows from this and their
    /// number; 0 at first.
    virtual void setSeed(uint64_t seed) = 0;

    // ---- recorder ------------------------------------------------------------------------------------

    /// Everything recorded since construction or the last clearRecords(), in order.
    virtual std::vector<Record> records() const = 0;
    virtual void clearRecords() = 0;
    /// Whether records are kept, as they are at first. A switch that stays on for long does better without; sinks are
    /// told in any case.
    virtual void keepRecords(bool keep) = 0;
    /// Tells `sink` of every record from now on, in order, as it is made; the number it returns ends that. A sink is
    /// told on the thread of the call, or of the notification, and must use nothing of this interface.
    virtual int addSink(std::function<void(const Record &)> sink) = 0;
    virtual void removeSink(int number) = 0;

    // ---- who is on the switch ------------------------------------------------------------------------

    /// The connection that holds admin mode, 0 for none, kOtherClient for another management client.
    virtual uint32_t adminModeHolder() const = 0;
    /// Lets another management client take admin mode (true) or give it back (false). It takes it even from a
    /// connection that holds it, as an operator at the console can; what was being edited there is forgotten.
    virtual void holdAdminModeElsewhere(bool hold) = 0;
    /// The number of connections made since construction.
    virtual unsigned connectionCount() const = 0;
    /// The switch reboots in no time: nobody holds admin mode or the zoning lock any more, and edits that were not saved
    /// are gone. Everything else stays: the configuration, what was saved, the backup, the clock, connections and their
    /// registrations. Sends nothing.
    virtual void restart() = 0;
    /// Puts a switch that was made apart on the network: new connections to "localhost" reach it, until another switch
    /// comes after it.
    virtual void acceptConnections() = 0;
};

/// Number of the interface above; it changes whenever a member is added, removed or changed.
constexpr int kInterfaceVersion = 5;

} // namespace sim

/// Makes a switch from a named profile, all of them healthy:
///
///     fixed-24       one box of 24 ports with two power supplies and three fans
///     director-8     8 slots: CPU, three I/O blades, two power supplies, fans, an I/O blade; 16 ports per I/O blade;
///                    reached by IPv6 too, and with its vendor's own number of the firmware
///     fixed-128      one box of 128 ports
///     claims-200     like fixed-24, but with 200 ports, more than such a switch can have
///     second-naming  like fixed-24, but named as Cisco's switches are: an NAA 2 name, and ports numbered from one;
///                    without IPv6
///     fabric-2       a box of 24 ports linked to one like it
///     fabric-12      a box of 24 ports at the edge of a fabric of 12: two linked cores, every edge on both
///     fabric-60      the same with 60 switches and four cores, every edge on two of them
///     fabric-239     the same with 239 switches, as many as a fabric can have, and nine cores
///
/// The first two thirds of the ports are Online, with a device logged in at each; the last sixth have empty cages. Only
/// the last four switches have peers, linked to the ports from 16 on. In fabric-2 the local switch is the principal;
/// in the others, where the cores have 64 ports, it is the first core. The last edge of fabric-12 is named as Cisco's
/// switches are.
///
/// `version` is kInterfaceVersion as the caller was compiled with; null if it is not this library's. Throws
/// std::invalid_argument for an unknown profile. The caller owns the result.
extern "C" __attribute__((visibility("default"))) sim::Simulator *zovsim_create(const char *profile, int version);

/// The same, but no connection reaches the switch before acceptConnections(): so it can be prepared, or serve to try
/// something out.
extern "C" __attribute__((visibility("default"))) sim::Simulator *zovsim_createApart(const char *profile, int version);

namespace sim {

/// The switch as tests and other programs linked with this library make it.
inline std::unique_ptr<Simulator> create(const char *profile = "fixed-24") {
    return std::unique_ptr<Simulator>(zovsim_create(profile, kInterfaceVersion));
}
inline std::unique_ptr<Simulator> createApart(const char *profile = "fixed-24") {
    return std::unique_ptr<Simulator>(zovsim_createApart(profile, kInterfaceVersion));
}

} // namespace sim

#endif // SIM_SIMULATOR_H
