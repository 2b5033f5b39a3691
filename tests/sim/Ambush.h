/*
 * Somebody who dies at a chosen call of a switch, its client or its server, and what the survivors find. Each scene is
 * played in a process of its own, so that a test never has a thread when it makes one.
 *
 * Thread-safety: for one thread at a time.
 */
#ifndef TESTS_SIM_AMBUSH_H
#define TESTS_SIM_AMBUSH_H

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/sim/Served.h"
#include "tests/sim/Zoning.h"
#include "tests/support/Wait.h"

namespace simtest {

/// When somebody dies: between two calls; while the call is delayed; just before it is served; when it is served and the
/// client not told.
enum class Moment { between, delayed, before, after };

inline constexpr Moment kMoments[] = {Moment::between, Moment::delayed, Moment::before, Moment::after};

/// Has the call after so many others meet with something.
inline int lieInWait(sim::Simulator &device, size_t calls, sim::Fault fault) {
    fault.skip = static_cast<unsigned>(calls);
    return device.addFault(fault);
}

inline sim::Fault endlessDelay() {
    sim::Fault fault;
    fault.delay = std::chrono::hours(1);
    return fault;
}

inline bool waitForVictim(const sim::Simulator &device, int rule) {
    return support::waitUntil([&] { return isUsedUp(device, rule); });
}

/// Zoning objects are the client's own affair.
inline bool isCall(const sim::Record &record) {
    return record.client != 0 && record.call != "notification";
}

/// Has a process do something at a moment of the call after so many others. It runs on a thread that serves the call,
/// but when the call is delayed: then `wait` has to be called for it.
class Ambush {
public:
    Ambush(sim::Simulator &device, Moment moment, size_t calls, std::function<void()> deed)
        : _device(device), _deed(std::move(deed)) {
        sim::Fault fault;
        fault.action = _deed;
        if (moment == Moment::delayed)
            _rule = lieInWait(device, calls, endlessDelay());
        else if (moment == Moment::before)
            lieInWait(device, calls, fault);
        else if (moment == Moment::after)
            device.addSink([this, calls](const sim::Record &record) {
                if (isCall(record) && _served++ == calls)
                    _deed();
            });
    }
    Ambush(const Ambush &) = delete;
    Ambush &operator=(const Ambush &) = delete;

    /// False when the call did not come.
    bool wait() {
        if (_rule == 0)
            return true;
        if (!waitForVictim(_device, _rule))
            return false;
        _deed();
        return true;
    }

private:
    sim::Simulator &_device;
    const std::function<void()> _deed;
    int _rule = 0;
    std::atomic<size_t> _served{0};
};

/// What a scene found wrong; its exit status says so.
inline int wrong(size_t step, const std::string &what) {
    std::fprintf(stderr, "step %zu: %s\n", step, what.c_str());
    return 1;
}

/// The zoning before a commit.
inline sim::ZoningDatabase seedling() {
    sim::ZoningDatabase database;
    database.zones = {{"oak", ZOV_ZT_SOFT, {}}};
    database.zonesets = {{"north", {"oak"}}};
    return database;
}

/// What the cache makes of it.
inline sim::ZoningDatabase sprouted() {
    sim::ZoningDatabase database = seedling();
    database.zones.push_back({"larch", ZOV_ZT_SOFT, {}});
    database.zonesets[0].zones.emplace_back("larch");
    return database;
}

inline std::unique_ptr<sim::Simulator> plantedSwitch() {
    auto device = sim::create();
    device->setZoning(seedling());
    return device;
}

inline bool isOldOrNew(const std::vector<sim::Zone> &zones) {
    return zones == seedling().zones || zones == orchard().zones || zones == sprouted().zones;
}

constexpr const char *kState = "/tmp/state";

/// Serves a switch that keeps its state until it is killed, or kills itself.
inline int serveForEver(const Signal &isServed, Moment moment, size_t calls) {
    const auto device = plantedSwitch();
    sim::ServerOptions chosen = options();
    chosen.stateFile = kState;
    const auto server = sim::serve(*device, chosen);
    Ambush ambush(*device, moment, calls, dieAtOnce);
    isServed.give();
    ambush.wait();
    for (;;)
        pause();
}

/// A server that dies, and another that comes in its place when it may, both without a state file at first. To be made before the process has threads.
class Servers {
public:
    /// The first server runs `begin`, if there is one, before it serves.
    Servers(Moment moment, size_t calls, const std::function<void()> &begin = {})
        : _first([this, moment, calls, begin] {
              unlink(kState);
              if (begin)
                  begin();
              return serveForEver(_isServed, moment, calls);
          }),
          _second([this] { return _mayServe.await() ? serveForEver(_isServedAgain, Moment::between, 0) : 1; }) {
        _isServed.await();
        goOverTheSocket();
    }

    /// Whether the first is killed, as it has to be by now.
    bool isFirstKilled() {
        if (!_end)
            _end = _first.wait();
        return *_end == 128 + SIGKILL;
    }
    bool killFirst() {
        kill(_first.id(), SIGKILL);
        return isFirstKilled();
    }

    /// The second one serves, if it does not yet.
    void comeBack() {
        if (_isBack || !isFirstKilled())
            return;
        _mayServe.give();
        _isBack = _isServedAgain.await();
    }

private:
    Signal _isServed;
    Signal _mayServe;
    Signal _isServedAgain;
    bool _isBack = false;
    std::optional<int> _end;
    Process _first;
    Process _second;
};

/// What a client that knew the server before its death finds when it is back.
inline int lookAround(Client &client, size_t step, std::vector<sim::Zone> &zones) {
    if (client.get("Oper.Switch.WWN").status != 0)
        return wrong(step, "the connection is not revived");
    void *zoneset = nullptr;
    if (zov_fzsGetAllZonesAndAliases(client.handle, "all", &zoneset) != 0)
        return wrong(step, "no zoning");
    zones = takeApart(zoneset).zones;
    if (!isOldOrNew(zones))
        return wrong(step, "half a commit");
    if (commit(client, kPlantOrchard) != allDone(kPlantOrchard.size()))
        return wrong(step, "something is still held");
    return 0;
}

/// What is left of a client that dies in its life: a switch that is free for the next one.
inline int watchClientDie(const std::function<int()> &life, size_t calls, Moment moment) {
    Signal isServed;
    Process client([&] {
        isServed.await();
        goOverTheSocket();
        return life();
    });
    const auto device = plantedSwitch();
    Ambush ambush(*device, moment, calls, [id = client.id()] { kill(id, SIGKILL); });
    const auto server = sim::serve(*device, options());
    isServed.give();
    if (!ambush.wait())
        return wrong(calls, "the call does not come");
    if (client.wait() != 128 + SIGKILL)
        return wrong(calls, "the client ended otherwise");
    const auto isFree = [&] {
        return server->clientCount() == 0 && device->adminModeHolder() == 0 && device->zoningLockHolder() == 0;
    };
    if (!support::waitUntil(isFree))
        return wrong(calls, "something is still held");
    if (!isOldOrNew(device->zoning().zones))
        return wrong(calls, "half a commit");
    device->clearFaults();
    goOverTheSocket();
    const Client next;
    if (commit(next, kPlantOrchard) != allDone(kPlantOrchard.size()))
        return wrong(calls, "the next client is refused");
    return 0;
}

} // namespace simtest

#endif // TESTS_SIM_AMBUSH_H
