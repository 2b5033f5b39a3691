/*
 * Why the tool gives up: exceptions that main() turns into a message on stderr and an exit code, 2 for Misuse
 * and 1 for the others.
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
