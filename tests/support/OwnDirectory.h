/*
 * Where the running test program is: what it runs stands in folders beside it, of whatever build it is.
 */
#ifndef TESTS_SUPPORT_OWNDIRECTORY_H
#define TESTS_SUPPORT_OWNDIRECTORY_H

#include <array>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace support {

/// The directory of the test program.
inline std::string ownDirectory() {
    std::array<char, 4096> path = {};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0)
        throw std::runtime_error("no /proc/self/exe");
    const std::string program(path.data(), static_cast<size_t>(length));
    return program.substr(0, program.rfind('/'));
}

} // namespace support

#endif // TESTS_SUPPORT_OWNDIRECTORY_H
