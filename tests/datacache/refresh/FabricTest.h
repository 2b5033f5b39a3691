/*
 * The setting of the fabric refresh's tests: a switch that other switches are linked to, and a cache that knows its name.
 * The test calls the refresh itself. Nothing is notified. The ports are not read, unless the test says so: the local
 * switch is not in the picture then, and the switches of the fabric are the peers alone.
 */
#ifndef TESTS_DATACACHE_REFRESH_FABRICTEST_H
#define TESTS_DATACACHE_REFRESH_FABRICTEST_H

#include <string>
#include <vector>

#include <fmt/format.h>

#include "tests/support/CacheTest.h"

class FabricTest : public support::CacheTest {
protected:
    static constexpr const char *kList = "Oper.Eport.LsdbRecordList.255";
    static constexpr const char *kInfoRead = "get Oper.Switch.WhoIsPrincipal Oper.Switch.WWN Oper.Switch.DomainID";
    static constexpr const char *kListRead = "get Oper.Eport.LsdbRecordList.255";
    static std::string recordRead(const std::string &domain) {
        return fmt::format("get Oper.Eport.LsdbRecord.{0}.WWN Oper.Eport.LsdbRecord.{0}.Hops", domain);
    }

    void SetUp() override {
        connect();
        cache()._getSwitchInfo();
    }

    /// Links a peer of this domain ID to the switch. Its name is higher than the local switch's, which stays principal.
    void join(unsigned domain, unsigned ports = 1) {
        sim::Peer peer;
        peer.wwn = nameOf(domain);
        peer.domain = domain;
        peer.ports = ports;
        theSwitch->addPeer(peer);
        ++_links;
        theSwitch->connect({support::kSwitchWwn, _links - 1, peer.wwn, 0}, sim::Notify::no);
    }
    void leave(unsigned domain) { theSwitch->removePeer(nameOf(domain), sim::Notify::no); }
    void principal(const std::string &wwn) { theSwitch->set("Oper.Switch.WhoIsPrincipal", wwn, sim::Notify::no); }

    bool refresh() {
        forget();
        return cache()._getFabricInfo();
    }

    static std::string nameOf(unsigned domain) { return fmt::format("100000C0DD00B0{:02X}", domain); }
    static std::string failed(const char *routine, int line) {
        return fmt::format("DCACHE: Cache update failed: DataCache.cc:{}:{}", routine, line);
    }

    static FabricCache &fabric() { return *cache().getFabric(1); }
    static SwitchCache *switchOf(unsigned domain) { return fabric().getSwitchByWwn(nameOf(domain)); }
    static std::vector<std::string> switches() {
        std::vector<std::string> names;
        for (SwitchCache *item = fabric().getFirstSwitch(); item != nullptr; item = fabric().getNextSwitch(item))
            names.push_back(item->getWwn());
        return names;
    }

private:
    unsigned _links = 0;
};

#endif // TESTS_DATACACHE_REFRESH_FABRICTEST_H
