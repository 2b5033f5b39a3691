// The control interface: a simulated switch in the hands of the program that made it.

#include <algorithm>
#include <stdexcept>

#include "sim/api/ServedSwitch.h"
#include "sim/api/control.h"
#include "sim/core/Event.h"
#include "sim/core/Registry.h"
#include "sim/levers/Duration.h"
#include "sim/model/NameServer.h"
#include "sim/model/Profile.h"
#include "sim/zoning/Objects.h"

namespace sim {

namespace {

class SimulatedSwitch final : public Simulator, public Servable {
public:
    explicit SimulatedSwitch(const char *profile, std::shared_ptr<Script> script = nullptr)
        : _profile(profile ? profile : ""),
          _endpoint(std::make_shared<Endpoint>(makeSwitch(_profile), true, std::move(script))) {}

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
    std::string stored(const std::string &key) const override { return _endpoint->device.readStored(key); }
    std::string profile() const override { return _profile; }

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
    unsigned priority() const override {
        return _endpoint->device.inspect([](const Switch &device) { return device.fabric.priority; });
    }

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
    zov_fzs_zoninglimits_s zoningLimits() const override { return _endpoint->device.zoning().limits; }
    uint32_t zoningLockHolder() const override { return _endpoint->device.zoningLockHolder(); }
    void holdZoningLockElsewhere(bool hold) override { _endpoint->device.holdZoningLockElsewhere(hold); }
    ZoningObjectCounts zoningObjects() const override { return Objects::instance().liveCounts(); }
    std::vector<std::string> misuses() const override { return _endpoint->misuses.all(); }

    long uptime() const override { return static_cast<long>(_endpoint->clock.wholeSeconds().count()); }
    std::chrono::milliseconds clock() const override { return _endpoint->clock.uptime(); }
    void passTime(std::chrono::seconds time, std::chrono::milliseconds more) override {
        if (time.count() < 0 || more.count() < 0)
            throw std::invalid_argument("time does not run backwards");
        _endpoint->passTime(time, std::min<std::chrono::milliseconds>(more, kLongestDuration));
    }
    void setPace(Pace pace, double speed) override { _endpoint->clock.setPace(pace, speed); }
    Pace pace() const override { return _endpoint->clock.pace(); }
    double speed() const override { return _endpoint->clock.speed(); }
    bool waitForUptime(std::chrono::milliseconds uptime, std::chrono::milliseconds limit) override {
        return _endpoint->waitForUptime(uptime, limit);
    }

    void deliver(const zov_event_s &event) override { _endpoint->notifier.sendToAll(event); }
    void deliver(int32_t code, const std::array<int32_t, 3> &source, const std::string &text) override {
        deliver(makeEvent(code, source, text));
    }
    bool waitUntilQuiet(std::chrono::milliseconds limit) override { return _endpoint->notifier.waitUntilQuiet(limit); }

    int addFault(const Fault &fault) override { return _endpoint->faults.add(fault); }
    void removeFault(int number) override { _endpoint->faults.remove(number); }
    void clearFaults() override { _endpoint->faults.clear(); }
    std::map<int, Fault> faults() const override { return _endpoint->faults.all(); }
    void reachStep(const std::string &name) override { _endpoint->faults.reachStep(name); }
    void setSeed(uint64_t seed) override { _endpoint->faults.setSeed(seed); }

    std::vector<Record> records() const override { return _endpoint->recorder.records(); }
    void clearRecords() override { _endpoint->recorder.clear(); }
    void keepRecords(bool keep) override { _endpoint->recorder.keep(keep); }
    int addSink(std::function<void(const Record &)> sink) override {
        return _endpoint->recorder.addSink(std::move(sink));
    }
    void removeSink(int number) override { _endpoint->recorder.removeSink(number); }

    uint32_t adminModeHolder() const override { return _endpoint->device.adminModeHolder(); }
    void holdAdminModeElsewhere(bool hold) override { _endpoint->device.holdAdminModeElsewhere(hold); }
    std::shared_ptr<Served> served() override { return std::make_shared<ServedSwitch>(_endpoint); }

    unsigned connectionCount() const override { return _endpoint->connections; }
    void restart() override { _endpoint->device.restart(); }
    void acceptConnections() override { Registry::instance().add(_endpoint); }

private:
    template <class Operation> void operate(const Operation &operation, Notify notify) {
        _endpoint->device.operate(operation, notify);
    }

    const std::string _profile;
    const std::shared_ptr<Endpoint> _endpoint;
};

} // namespace

std::unique_ptr<Simulator> makeScripted(std::shared_ptr<Script> script) {
    std::unique_ptr<Simulator> device = std::make_unique<SimulatedSwitch>(kDefaultProfile, std::move(script));
    device->acceptConnections();
    return device;
}

} // namespace sim

extern "C" sim::Simulator *zovsim_createApart(const char *profile, int version) {
    return version == sim::kInterfaceVersion ? new sim::SimulatedSwitch(profile) : nullptr;
}

extern "C" sim::Simulator *zovsim_create(const char *profile, int version) {
    sim::Simulator *device = zovsim_createApart(profile, version);
    if (device)
        device->acceptConnections();
    return device;
}
