#include "tests/support/CacheTest.h"

#include <map>

namespace support {

CacheTest::CacheTest() {
    setUptimeSource([this] { return theSwitch->uptime(); });
}

// Takes the switch off the wire while what its notifications reach is still there.
CacheTest::~CacheTest() {
    setUptime(theSwitch ? theSwitch->uptime() : 0);
    theSwitch.reset();
}

DataCache &CacheTest::cache() {
    DataCache *theCache = DataCache::getInstance();
    DataCache::releaseInstance();
    return *theCache;
}

void CacheTest::connectAnotherClient() {
    zov_handle_t handle = 0;
    EXPECT_EQ(zov_IPConnect("localhost", "another", "", &handle), 0);
}

void CacheTest::connect() {
    connectAnotherClient();
    DataCache::init();
    cache().startEventMonitor(recordEvent);
    forget();
}

void CacheTest::forget() {
    takeEvents();
    theSwitch->clearRecords();
    _logMark = logMark();
}

bool CacheTest::pass() {
    forget();
    return cache().evaluateCaches();
}

bool CacheTest::passAfterNotifications() {
    EXPECT_TRUE(theSwitch->waitUntilQuiet());
    return pass();
}

void CacheTest::load() {
    connect();
    pass();
    forget();
}

int CacheTest::fail(const std::string &key, int32_t status, int times) {
    sim::Fault fault;
    fault.key = key;
    fault.status = status;
    fault.times = times;
    return theSwitch->addFault(fault);
}

int CacheTest::cut(const std::string &key) {
    sim::Fault fault;
    fault.key = key;
    fault.result = 2;
    return theSwitch->addFault(fault);
}

int CacheTest::lie(const std::string &key, const std::string &value) {
    sim::Fault fault;
    fault.key = key;
    fault.value = value;
    fault.times = -1;
    return theSwitch->addFault(fault);
}

std::vector<std::string> CacheTest::traffic() const {
    static const std::map<std::string, std::string> verbs = {
        {"zov_smlGet", "get"}, {"zov_smlGetBatch", "get"}, {"zov_smlSet", "set"}, {"zov_smlSetBatch", "set"}};
    std::vector<std::string> lines;
    for (const sim::Record &record : theSwitch->records()) {
        const auto verb = verbs.find(record.call);
        std::string line = verb != verbs.end() ? verb->second : record.call;
        for (const sim::Exchange &exchange : record.exchanges)
            line += " " + exchange.key;
        lines.push_back(line);
    }
    return lines;
}

} // namespace support
