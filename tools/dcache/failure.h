/*
 * Why the tool gives up: exceptions that main() turns into a message on stderr and an exit code, 2 for Misuse, that of its
 * own for Stopped, and 1 for the others.
 */
#ifndef TOOLS_DCACHE_FAILURE_H
#define TOOLS_DCACHE_FAILURE_H

#include <stdexcept>
#include <string>
#include <system_error>

namespace dcache {

/// Something asked for cannot be done; what() is a sentence for the person at the prompt.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The exit codes of the program, beside 0.
constexpr int kFailedExit = 1;
constexpr int kUsageExit = 2;
constexpr int kLockBusyExit = 3; ///< the zoning lock or admin mode was not to be had, or was lost
constexpr int kLimitExit = 4;    ///< a zoning limit of the switch is reached
constexpr int kRejectedExit = 5; ///< the switch rejected a zoning commit, or work on its configuration

/// A failure that a script may want to tell from others.
class Stopped : public Failure {
public:
    Stopped(int code, const std::string &words) : Failure(words), exitCode(code) {}

    const int exitCode;
};

/// The command line asks for something that does not exist, which shows only once it is being carried out.
class Misuse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Standard output takes no more. With EPIPE the reader went away, which is no news to anybody.
class OutputFailed : public std::runtime_error {
public:
    explicit OutputFailed(int errorNumber)
        : std::runtime_error(std::string("cannot write to standard output: ") +
                             std::generic_category().message(errorNumber)),
          error(errorNumber) {}

    const int error;
};

} // namespace dcache

#endif // TOOLS_DCACHE_FAILURE_H
