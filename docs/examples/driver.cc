#include "docs/examples/driver.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <thread>
#include <unistd.h>

#include "datacache/DataCache.h"
#include "platform/host.h"
#include "tests/support/PrivateTmp.h"

namespace {

constexpr const char *kOutput = "/tmp/output";

std::unique_ptr<sim::Simulator> current;

[[noreturn]] void fail(const std::string &why) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", why.c_str());
    _exit(EXIT_FAILURE); // other threads may be anywhere
}

std::string contentOf(const char *file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Nothing waits, nothing is asked for, and no pass is under way: the lock is held while this is looked at.
bool isSettled() {
    DataCache *cache = DataCache::getInstance();
    const bool settled = cache->isCacheReady() && !cache->workToDo() && cache->getQueuedNotificationCount() == 0;
    DataCache::releaseInstance();
    return settled;
}

} // namespace

// The system has been up for as long as the switch has; an example may have an uptime() of its own.
__attribute__((weak)) int uptime(long *seconds) {
    *seconds = current != nullptr ? current->uptime() : 0;
    return 0;
}

int example::run(const char *profile, const char *expected, void (*body)()) {
    try {
        support::enterPrivateTmp();
        current = sim::create(profile);
        const int terminal = dup(STDOUT_FILENO);
        if (std::freopen(kOutput, "w", stdout) == nullptr)
            fail("no file for the output");
        body();
        std::fflush(stdout);
        const std::string printed = contentOf(kOutput);
        dup2(terminal, STDOUT_FILENO);
        std::printf("%s", printed.c_str());
        if (expected != nullptr && printed != expected + (*expected == '\n' ? 1 : 0))
            fail(std::string("---- this was expected:") + expected);
        std::fflush(stdout);
        _exit(EXIT_SUCCESS); // as a provider ends: the EVAL thread is still there
    } catch (const std::exception &error) {
        fail(error.what());
    }
}

sim::Simulator &example::theSwitch() {
    return *current;
}

void example::waitUntil(const char *what, const std::function<bool()> &condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            fail(std::string("waited in vain for ") + what);
        std::this_thread::yield();
    }
}

void example::waitUntilSettled() {
    if (!theSwitch().waitUntilQuiet())
        fail("the switch does not come to rest");
    waitUntil("the cache to settle", isSettled);
}

std::vector<std::string> example::messagesIn(const char *file) {
    std::ifstream stream(file);
    std::vector<std::string> messages;
    for (std::string line; std::getline(stream, line);) {
        std::size_t at = 0; // "11/14 22:13:28.042 1234/1240 "
        for (int blank = 0; blank < 3; ++blank)
            at = line.find(' ', at) + 1;
        messages.push_back(line.substr(at));
    }
    return messages;
}
