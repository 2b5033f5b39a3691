#include "sim/core/Endpoint.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Endpoint, SwitchedOffInTheMiddleOfACallItEndsTheCall) {
    for (int round = 0; round < 20; ++round) { // to meet the call at every point of its way
        auto device = sim::create();
        const Client client;
        sim::Fault fault;
        fault.call = "zov_smlGet";
        fault.delay = std::chrono::hours(1);
        device->addFault(fault);
        std::atomic<bool> started{false};
        std::thread caller([&] {
            char *value = nullptr;
            uint32_t size = 0;
            started = true;
            EXPECT_EQ(zov_smlGet(client.handle, "Oper.Switch.WWN", &value, &size), simtest::kBadHandle);
            EXPECT_EQ(value, nullptr);
        });
        for (int turn = 0; turn < 200 * round || !started; ++turn)
            std::this_thread::yield();
        device.reset();
        caller.join();
    }
}

TEST(Endpoint, IsTakenApartSafelyWhileClientsAreBusy) {
    for (int round = 0; round < 20; ++round) {
        auto device = sim::create();
        Client client;
        ASSERT_EQ(client.registerFor({33}), 0);
        std::vector<std::thread> threads;
        threads.reserve(2);
        for (int number = 0; number < 2; ++number)
            threads.emplace_back([handle = client.handle] {
                SmlMessage message = simtest::messageOf("Oper.Switch.WWN");
                while (zov_smlGetBatch(handle, &message, 1) == 0)
                    EXPECT_EQ(message.status, 0);
            });
        device->deliver(33, {0, 0, 0}, "storm");
        device->set("Oper.Chassis.0.Fan.0", "Bad");
        device.reset();
        for (std::thread &thread : threads)
            thread.join();
    }
}
