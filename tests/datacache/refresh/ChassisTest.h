/*
 * The setting of the tests of the chassis refresh: the routine is called alone, without a pass.
 */
#ifndef TESTS_DATACACHE_REFRESH_CHASSISTEST_H
#define TESTS_DATACACHE_REFRESH_CHASSISTEST_H

#include "tests/support/CacheTest.h"

class ChassisTest : public support::CacheTest {
protected:
    void SetUp() override { connect(); }

    int refresh() {
        forget();
        DataCache *theCache = DataCache::getInstance();
        const int result = theCache->_getChassisInfo();
        DataCache::releaseInstance();
        return result;
    }

    void set(const std::string &key, const std::string &value) { theSwitch->set(key, value, sim::Notify::no); }

    /// A value that the simulated switch would not take, until clearFaults().
    int answer(const std::string &key, const std::string &value) {
        sim::Fault fault;
        fault.key = key;
        fault.value = value;
        fault.times = -1;
        return theSwitch->addFault(fault);
    }

    void failKey(const std::string &key, int32_t status = 5) {
        sim::Fault fault;
        fault.key = key;
        fault.status = status;
        theSwitch->addFault(fault);
    }

    void failExchange(unsigned skip) {
        sim::Fault fault;
        fault.call = "zov_smlGetBatch";
        fault.skip = skip;
        fault.result = 2;
        theSwitch->addFault(fault);
    }

    /// Keys of the last refresh's second exchange.
    std::vector<std::string> unitKeys() const {
        const std::vector<sim::Record> records = theSwitch->records();
        std::vector<std::string> keys;
        if (records.size() == 2) {
            for (const sim::Exchange &exchange : records[1].exchanges)
                keys.push_back(exchange.key);
        }
        return keys;
    }

    static std::vector<unsigned short> supplies() {
        std::vector<unsigned short> states;
        for (unsigned short i = 0; i < cache().getRootPowerSupplyCount(); ++i)
            states.push_back(cache().getRootPowerSupplyStatus(i));
        return states;
    }

    static std::vector<unsigned short> fans() {
        std::vector<unsigned short> states;
        for (unsigned short i = 0; i < cache().getRootFanCount(); ++i)
            states.push_back(cache().getRootFanStatus(i));
        return states;
    }
};

#endif // TESTS_DATACACHE_REFRESH_CHASSISTEST_H
