/*
 * The setting of the port refresh's tests: a switch whose ports are all alike, and a cache that knows its name. The test
 * calls the refresh itself.
 */
#ifndef TESTS_DATACACHE_REFRESH_PORTSTEST_H
#define TESTS_DATACACHE_REFRESH_PORTSTEST_H

#include <string>
#include <vector>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"
#include "tests/support/Ports.h"

class PortsTest : public support::CacheTest {
protected:
    explicit PortsTest(const char *profile = "fixed-24") {
        theSwitch.reset();
        theSwitch = sim::create(profile);
        support::levelPorts(*theSwitch);
    }

    void SetUp() override {
        connect();
        cache()._getSwitchInfo();
    }

    /// The refresh of all ports, or of those named.
    bool refreshAll() {
        cache().localPortRefreshSet();
        return refresh();
    }
    bool refresh() {
        forget();
        return cache()._getPortInfo() == 1;
    }

    void set(unsigned port, const std::string &attribute, const std::string &value) {
        support::setPort(*theSwitch, port, attribute, value);
    }

    static std::string failed(int line) {
        return fmt::format("DCACHE: Cache update failed: DataCache.cc:_getPortInfo:{}", line);
    }

    static std::string nameOf(unsigned port) { return support::portName(support::kSwitchWwn, port).tostring(); }
    static std::string portAdded(unsigned port) {
        return fmt::format("10: PortAdd owner={} port={} origin=0", support::kSwitchWwn, nameOf(port));
    }
    static std::string statusChanged(unsigned port, int before, int now) {
        return fmt::format("12: PortStatusChange switch={0} port={1} fabric={0} [{2}]->[{3}]", support::kSwitchWwn,
                           nameOf(port), before, now);
    }

    /// The ports that the last refresh read.
    std::vector<unsigned> portsRead() const { return support::portsRead(traffic()); }

    static std::vector<std::string> usable() {
        std::vector<std::string> indexes;
        for (std::string index = cache().getFirstRootPortIndex(); !index.empty();
             index = cache().getNextRootPortIndex(index))
            indexes.push_back(index);
        return indexes;
    }

    static SwitchCache *localSwitch() { return cache().getFabric(1)->getSwitchByWwn(support::kSwitchWwn); }
};

#endif // TESTS_DATACACHE_REFRESH_PORTSTEST_H
