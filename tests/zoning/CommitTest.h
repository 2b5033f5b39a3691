/*
 * The setting of the tests of the fabric lock and the commit: the database of ZoningTest.h, and a switch that takes
 * batches of commands.
 */
#ifndef TESTS_ZONING_COMMITTEST_H
#define TESTS_ZONING_COMMITTEST_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Lock.h"
#include "tests/support/Memory.h"
#include "tests/support/Uptime.h"
#include "tests/swlib/ScriptedSwitch.h"
#include "tests/zoning/ZoningTest.h"

class CommitTest : public ZoningTest {
protected:
    static constexpr zov_handle_t kHandle = 0x80000007;

    CommitTest() {
        scripted::zoning.connection = hSwitch = kHandle;
        support::setUptime(1000);
        scripted::setBatch = [this](zov_handle_t handle, SmlMessage *messages, int32_t count) {
            support::calls_until_failure = 0;
            EXPECT_EQ(handle, kHandle);
            _sent.emplace_back();
            for (int32_t i = 0; i < count; ++i) {
                _sent.back().emplace_back(messages[i].key);
                messages[i].status = messages[i].key == _refused ? 5 : 0;
            }
            if (_whileSending)
                _whileSending();
            return _result;
        };
    }
    ~CommitTest() override {
        scripted::setBatch = nullptr;
        hSwitch = 0;
    }

    /// The batches sent since this was last asked.
    std::vector<Lines> sent() { return std::exchange(_sent, {}); }

    /// The switch refuses this command, or none; or a whole exchange fails with this result.
    void refuse(const std::string &command) { _refused = command; }
    void breakDown(int32_t result) { _result = result; }
    void whileSending(std::function<void()> action) { _whileSending = std::move(action); }

    bool isHeldBy(const char *id) const {
        bool expired = true;
        const bool held = cache->LockIdOK(id, expired);
        EXPECT_FALSE(expired);
        return held;
    }

    /// The blocks of memory that an operation keeps.
    long keptBy(const std::function<void()> &operation) {
        long kept = 0;
        for (int i = 0; i < 2; ++i) { // the first time, other things may come to stay
            forgetAll();
            const long before = support::blocks_held;
            operation();
            forgetAll();
            kept = support::blocks_held - before;
        }
        return kept;
    }

private:
    void forgetAll() {
        sent();
        calls();
    }

    std::vector<Lines> _sent;
    std::string _refused;
    int32_t _result = 0;
    std::function<void()> _whileSending;
};

#endif // TESTS_ZONING_COMMITTEST_H
