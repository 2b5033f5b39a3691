// Linked into a test in addition, this puts a server before every switch the test makes, and sends its clients there by
// the socket: the same test then shows the same contract on the other road.

#include <cstdlib>
#include <deque>
#include <dlfcn.h>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "sim/Server.h"

namespace {

/// A switch may be gone before its server; that one stays to the end of the tests, for clients that were its own.
std::deque<std::unique_ptr<sim::Server>> servers;

struct EndOfServers : testing::Environment {
    void TearDown() override { servers.clear(); }
};
[[maybe_unused]] const auto *const kEndOfServers = testing::AddGlobalTestEnvironment(new EndOfServers);

void serveToTheEnd(sim::Simulator &device) {
    sim::ServerOptions options;
    options.socketPath = "/tmp/switch-" + std::to_string(servers.size());
    servers.push_back(sim::serve(device, options));
    setenv("ZOVSIM_SOCKET", options.socketPath.c_str(), 1);
}

} // namespace

/// In place of the library's own.
extern "C" __attribute__((visibility("default"))) sim::Simulator *zovsim_create(const char *profile, int version) {
    const auto create = reinterpret_cast<decltype(&zovsim_create)>(dlsym(RTLD_NEXT, "zovsim_create"));
    sim::Simulator *device = create(profile, version);
    if (device)
        serveToTheEnd(*device);
    return device;
}
