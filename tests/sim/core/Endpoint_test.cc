#include "sim/core/Endpoint.h"

#include <thread>

#include <gtest/gtest.h>

#include "tests/sim/Client.h"

using simtest::Client;

TEST(Endpoint, SwitchedOffInTheMiddleOfACallItEndsTheCall) {
    auto device = sim::create();
    const Client client;
    sim::Fault fault;
    fault.call = "zov_smlGet";
    fault.delay = std::chrono::hours(1);
    device->addFault(fault);
    int32_t result = 0;
    const auto start = std::chrono::steady_clock::now();
    std::thread caller([&] {
        char *value = nullptr;
        uint32_t size = 0;
        result = zov_smlGet(client.handle, "Oper.Switch.WWN", &value, &size);
        EXPECT_EQ(value, nullptr);
    });
    device.reset(); // the call is on its way, or finds its connection dead
    caller.join();
    EXPECT_EQ(result, simtest::kBadHandle);
    EXPECT_LT(std::chrono::steady_clock::now() - start, simtest::kPatience);
}

TEST(Endpoint, IsTakenApartSafelyWhileClientsAreBusy) {
    for (int round = 0; round < 20; ++round) {
        auto device = sim::create();
        Client client;
        ASSERT_EQ(client.registerFor({33}), 0);
        std::vector<std::thread> threads;
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
