// The main program of every test.
#include <cstdlib>
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
    for (const char *variable : {"ZOVSIM_SOCKET", "XDG_RUNTIME_DIR"})
        unsetenv(variable);  // a test has a switch of its own, whatever the shell that runs it has
    setenv("TZ", "UTC0", 1); // the same times everywhere, and no file of time zones to read
#if defined(__powerpc__)
    testing::FLAGS_gtest_death_test_style = "fast"; // an emulated program cannot start itself again
#else
    testing::FLAGS_gtest_death_test_style = "threadsafe";
#endif
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
