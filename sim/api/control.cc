// The control interface: a simulated switch in the hands of the program that made it.

#include <stdexcept>

#include "sim/core/Event.h"
#include "sim/core/Registry.h"
#include "sim/model/NameServer.h"
#include "sim/model/Profile.h"
#include "sim/zoning/Objects.h"

namespace sim {

namespace {

class SimulatedSwitch final : public Simulator {
public:
    explicit SimulatedSwitch(const char *profile)
        : _endpoint(std::make_shared<Endpoint>(makeSwitch(profile ? profile : ""), true)) {
        Registry::instance().add(_endpoint);
    }

    ~SimulatedSwitch() override {
        _endpoint->notifier.close(); // first of all: a client that finds the switch gone hears nothing more of it
        Registry::instance().remove(_endpoint);
        _endpoint->switchOff();
    }

    void set(const std::string &key, const std::string &value, Notify notify) override {
        _endpoint->device.change(key, value, notify);
    }
    std::string get(const std::string &key) const override { return _endpoint->device.read(key); }
    std::vector<std::string> keys() const override { return _endpoint->device.keys(); }

    void plugTransceiver(unsigned port, const Transceiver &transceiver, Notify notify) override {
        operate([&](Switch &device) { return sim::plugTransceiver(device, port, transceiver); }, notify);
    }
    void pullTransceiver(unsigned port, Notify notify) override {
        operate([&](Switch &device) { return sim::pullTransceiver(device, port); }, notify);
    }
    void insertBlade(unsigned slot, const Blade &blade, Notify notify) override {
        operate([&](Switch &device) { return sim::insertBlade(device, slot, blade); }, notify);
    }
    void removeBlade(unsigned slot, Notify notify) override {
        operate([&](Switch &device) { return sim::removeBlade(device, slot); }, notify);
    }
    void addAccount(const std::string &name, Notify notify) override {
        operate([&](Switch &device) { return sim::addAccount(device, name); }, notify);
    }
    void removeAccount(const std::string &name, Notify notify) override {
        operate([&](Switch &device) { return sim::removeAccount(device, name); }, notify);
    }

    void addPeer(const Peer &peer) override {
        operate([&](Switch &device) { return sim::addPeer(device, peer); }, Notify::yes);
    }
    void removePeer(const std::string &wwn, Notify notify) override {
        operate([&](Switch &device) { return sim::removePeer(device, wwn); }, notify);
    }
    void changePeer(const Peer &peer, Notify notify) override {
        operate([&](Switch &device) { return sim::changePeer(device, peer); }, notify);
    }
    void setPriority(unsigned priority, Notify notify) override {
        operate([&](Switch &device) { return sim::setPriority(device, priority); }, notify);
    }
    void connect(const Link &link, Notify notify) override {
        operate([&](Switch &device) { return sim::connect(device, link); }, notify);
    }
    void disconnect(const Link &link, Notify notify) override {
        operate([&](Switch &device) { return sim::disconnect(device, link); }, notify);
    }
    void logIn(const NameServerEntry &entry, Notify notify) override {
        operate([&](Switch &device) { return sim::logIn(device, entry); }, notify);
    }
    void logOut(const std::string &portWwn, Notify notify) override {
        operate([&](Switch &device) { return sim::logOut(device, portWwn); }, notify);
    }
    std::vector<Peer> peers() const override {
        return _endpoint->device.inspect([](const Switch &device) { return device.fabric.peers; });
    }
    std::vector<Link> links() const override { return _endpoint->device.inspect(linksOf); }
    std::vector<NameServerEntry> nameServer() const override { return _endpoint->device.inspect(nameServerOf); }

    ZoningDatabase zoning() const override { return shownDatabase(*_endpoint->device.zoning().defined.database); }
    ZoningDatabase activeZoning() const override { return shownDatabase(*_endpoint->device.zoning().active.database); }
    void setZoning(const ZoningDatabase &database, Notify notify) override {
        operate([&](Switch &device) { return sim::setZoning(device, database); }, notify);
    }
    void activateZoneset(const std::string &name, Notify notify) override {
        operate([&](Switch &device) { return sim::activateZoneset(device, name); }, notify);
    }
    void setZoningLimits(const zov_fzs_zoninglimits_s &limits) override {
        operate([&](Switch &device) { return sim::setZoningLimits(device, limits); }, Notify::no);
    }
    uint32_t zoningLockHolder() const override { return _endpoint->device.zoningLockHolder(); }
    void holdZoningLockElsewhere(bool hold) override { _endpoint->device.holdZoningLockElsewhere(hold); }
    ZoningObjectCounts zoningObjects() const override { return Objects::instance().liveCounts(); }
    std::vector<std::string> misuses() const override { return _endpoint->misuses.all(); }

    long uptime() const override { return static_cast<long>(_endpoint->device.uptime().count()); }
    void passTime(std::chrono::seconds time) override { _endpoint->device.passTime(time); }

    void deliver(const zov_event_s &event) override { _endpoint->notifier.sendToAll(event); }
    void deliver(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) override {
        deliver(makeEvent(code, source, text));
    }
    bool waitUntilQuiet(std::chrono::milliseconds limit) override { return _endpoint->notifier.waitUntilQuiet(limit); }

    int addFault(const Fault &fault) override { return _endpoint->faults.add(fault); }
    void removeFault(int number) override { _endpoint->faults.remove(number); }
    void clearFaults() override { _endpoint->faults.clear(); }

    std::vector<Record> records() const override { return _endpoint->recorder.records(); }
    void clearRecords() override { _endpoint->recorder.clear(); }

    uint32_t adminModeHolder() const override { return _endpoint->device.adminModeHolder(); }
    void holdAdminModeElsewhere(bool hold) override { _endpoint->device.holdAdminModeElsewhere(hold); }
    unsigned connectionCount() const override { return _endpoint->connections; }
    void restart() override { _endpoint->device.restart(); }

private:
    template <class Operation> void operate(const Operation &operation, Notify notify) {
        _endpoint->device.operate(operation, notify);
    }

    const std::shared_ptr<Endpoint> _endpoint;
};

} // namespace

} // namespace sim

extern "C" sim::Simulator *zovsim_create(const char *profile, int version) {
    return version == sim::kInterfaceVersion ? new sim::SimulatedSwitch(profile) : nullptr;
}
