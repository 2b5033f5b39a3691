// dcache: what comes out of it.
//
// Exit codes: 0 done, 1 failed, 2 usage, and those in failure.h. Data go to stdout, everything else to stderr.
#include <csignal>
#include <cstdio>

#include "tools/dcache/commandline/commandline.h"
#include "tools/dcache/failure.h"
#include "tools/dcache/output.h"

int main(int argc, char **argv) {
    dcache::occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is noticed by the write that fails
    try {
        return dcache::runCommandLine(argc, argv);
    } catch (const dcache::OutputFailed &failure) {
        if (failure.error != EPIPE)
            std::fprintf(stderr, "dcache: %s\n", failure.what());
    } catch (const dcache::Stopped &stopped) {
        std::fprintf(stderr, "dcache: %s\n", stopped.what());
        return stopped.exitCode;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "dcache: %s\n", error.what());
    }
    return dcache::kFailedExit;
}
