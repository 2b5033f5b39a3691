// zovsim: what comes out of it.
//
// Exit codes: 0 done, 1 failed, 2 usage. Data go to stdout, everything else to stderr.
#include <csignal>
#include <cstdio>

#include "sim/scenario/Scenario.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/output.h"
#include "tools/zovsim/commandline/commandline.h"

int main(int argc, char **argv) {
    dcache::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is noticed by the write that fails
    try {
        return zovsim::runCommandLine(argc, argv);
    } catch (const dcache::OutputFailed &failure) {
        if (failure.error != EPIPE)
            std::fprintf(stderr, "zovsim: %s\n", failure.what());
    } catch (const sim::ScenarioError &error) { // each line begins with the file
        std::fprintf(stderr, "%s\n", error.what());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "zovsim: %s\n", error.what());
    }
    return dcache::kFailedExit;
}
