// The main program of every test.
#include <cstring>
#include <exception>
#include <iostream>

#include <gmock/gmock.h>

#include "tests/support/PrivateTmp.h"

int main(int argc, char **argv) {
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    try {
        if (!listing)
            support::enterPrivateTmp();
    } catch (const std::exception &error) {
        std::cerr << "no private /tmp for this test: " << error.what() << '\n';
        return 1;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
