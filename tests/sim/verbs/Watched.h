/*
 * A simulated switch that notes which of its operations are used, and passes all of them on.
 *
 * Thread-safety: for one thread at a time.
 */
#ifndef TESTS_SIM_VERBS_WATCHED_H
#define TESTS_SIM_VERBS_WATCHED_H

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/Simulator.h"

namespace simtest {

class Watched final : public sim::Simulator {
public:
    using Notify = sim::Notify;

    explicit Watched(sim::Simulator &device) : _device(device) {}

    /// The operations used so far.
    std::set<std::string> used() const { return _used; }

    void set(const std::string &key, const std::string &value, Notify notify) override {
        note(__func__).set(key, value, notify);
    }
    std::string get(const std::string &key) const override { return note(__func__).get(key); }
    std::vector<std::string> keys() const override { return note(__func__).keys(); }
    std::string stored(const std::string &key) const override { return note(__func__).stored(key); }
    std::string profile() const override { return note(__func__).profile(); }
    void plugTransceiver(unsigned port, const sim::Transceiver &transceiver, Notify notify) override {
        note(__func__).plugTransceiver(port, transceiver, notify);
    }
    void pullTransceiver(unsigned port, Notify notify) override { note(__func__).pullTransceiver(port, notify); }
    void insertBlade(unsigned slot, const sim::Blade &blade, Notify notify) override {
        note(__func__).insertBlade(slot, blade, notify);
    }
    void removeBlade(unsigned slot, Notify notify) override { note(__func__).removeBlade(slot, notify); }
    void addAccount(const std::string &name, Notify notify) override { note(__func__).addAccount(name, notify); }
    void removeAccount(const std::string &name, Notify notify) override { note(__func__).removeAccount(name, notify); }

    void addPeer(const sim::Peer &peer) override { note(__func__).addPeer(peer); }
    void removePeer(const std::string &wwn, Notify notify) override { note(__func__).removePeer(wwn, notify); }
    void changePeer(const sim::Peer &peer, Notify notify) override { note(__func__).changePeer(peer, notify); }
    void setPriority(unsigned priority, Notify notify) override { note(__func__).setPriority(priority, notify); }
    void connect(const sim::Link &link, Notify notify) override { note(__func__).connect(link, notify); }
    void disconnect(const sim::Link &link, Notify notify) override { note(__func__).disconnect(link, notify); }
    void logIn(const sim::NameServerEntry &entry, Notify notify) override { note(__func__).logIn(entry, notify); }
    void logOut(const std::string &portWwn, Notify notify) override { note(__func__).logOut(portWwn, notify); }
    unsigned priority() const override { return note(__func__).priority(); }
    std::vector<sim::Peer> peers() const override { return note(__func__).peers(); }
    std::vector<sim::Link> links() const override { return note(__func__).links(); }
    std::vector<sim::NameServerEntry> nameServer() const override { return note(__func__).nameServer(); }

    sim::ZoningDatabase zoning() const override { return note(__func__).zoning(); }
    sim::ZoningDatabase activeZoning() const override { return note(__func__).activeZoning(); }
    void setZoning(const sim::ZoningDatabase &database, Notify notify) override {
        note(__func__).setZoning(database, notify);
    }
    void activateZoneset(const std::string &name, Notify notify) override {
        note(__func__).activateZoneset(name, notify);
    }
    void setZoningLimits(const zov_fzs_zoninglimits_s &limits) override { note(__func__).setZoningLimits(limits); }
    zov_fzs_zoninglimits_s zoningLimits() const override { return note(__func__).zoningLimits(); }
    uint32_t zoningLockHolder() const override { return note(__func__).zoningLockHolder(); }
    void holdZoningLockElsewhere(bool hold) override { note(__func__).holdZoningLockElsewhere(hold); }
    sim::ZoningObjectCounts zoningObjects() const override { return note(__func__).zoningObjects(); }
    std::vector<std::string> misuses() const override { return note(__func__).misuses(); }

    long uptime() const override { return note(__func__).uptime(); }
    std::chrono::milliseconds clock() const override { return note(__func__).clock(); }
    void passTime(std::chrono::seconds time, std::chrono::milliseconds more) override {
        note(__func__).passTime(time, more);
    }
    void setPace(sim::Pace pace, double speed) override { note(__func__).setPace(pace, speed); }
    sim::Pace pace() const override { return note(__func__).pace(); }
    double speed() const override { return note(__func__).speed(); }
    bool waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit) override {
        return _device.waitForUptime(uptime, limit);
    }

    void deliver(const zov_event_s &event) override { note(__func__).deliver(event); }
    void deliver(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) override {
        note(__func__).deliver(code, source, text);
    }
    bool waitUntilQuiet(std::chrono::milliseconds limit) override { return note(__func__).waitUntilQuiet(limit); }

    int addFault(const sim::Fault &fault) override { return note(__func__).addFault(fault); }
    void removeFault(int number) override { note(__func__).removeFault(number); }
    void clearFaults() override { note(__func__).clearFaults(); }
    std::map<int, sim::Fault> faults() const override { return note(__func__).faults(); }
    void setSeed(uint64_t seed) override { note(__func__).setSeed(seed); }
    void reachStep(const std::string &name) override { note(__func__).reachStep(name); }

    std::vector<sim::Record> records() const override { return note(__func__).records(); }
    void clearRecords() override { note(__func__).clearRecords(); }
    void keepRecords(bool keep) override { note(__func__).keepRecords(keep); }
    int addSink(std::function<void(const sim::Record &)> sink) override { return _device.addSink(std::move(sink)); }
    void removeSink(int number) override { _device.removeSink(number); }

    uint32_t adminModeHolder() const override { return note(__func__).adminModeHolder(); }
    void holdAdminModeElsewhere(bool hold) override { note(__func__).holdAdminModeElsewhere(hold); }
    unsigned connectionCount() const override { return note(__func__).connectionCount(); }
    void restart() override { note(__func__).restart(); }
    void acceptConnections() override { _device.acceptConnections(); }

private:
    sim::Simulator &note(const char *operation) const {
        _used.insert(operation);
        return _device;
    }

    sim::Simulator &_device;
    mutable std::set<std::string> _used;
};

/// Every operation that is noted above: who adds one there adds it here, and a verb for it. The others are for programs
/// alone.
inline const std::set<std::string> kOperations = {
    "set",
    "get",
    "keys",
    "stored",
    "profile",
    "plugTransceiver",
    "pullTransceiver",
    "insertBlade",
    "removeBlade",
    "addAccount",
    "removeAccount",
    "addPeer",
    "removePeer",
    "changePeer",
    "setPriority",
    "priority",
    "connect",
    "disconnect",
    "logIn",
    "logOut",
    "peers",
    "links",
    "nameServer",
    "zoning",
    "activeZoning",
    "setZoning",
    "activateZoneset",
    "setZoningLimits",
    "zoningLimits",
    "zoningLockHolder",
    "holdZoningLockElsewhere",
    "zoningObjects",
    "misuses",
    "uptime",
    "clock",
    "passTime",
    "setPace",
    "pace",
    "speed",
    "deliver",
    "waitUntilQuiet",
    "addFault",
    "removeFault",
    "clearFaults",
    "faults",
    "reachStep",
    "setSeed",
    "records",
    "clearRecords",
    "keepRecords",
    "adminModeHolder",
    "holdAdminModeElsewhere",
    "connectionCount",
    "restart",
};

} // namespace simtest

#endif // TESTS_SIM_VERBS_WATCHED_H
