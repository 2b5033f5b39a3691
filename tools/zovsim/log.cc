#include "tools/zovsim/log.h"

#include <cerrno>
#include <fmt/format.h>

#include "tools/dcache/failure.h"

namespace zovsim {

void Log::tell(const std::string &text) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_quiet)
        return;
    try {
        _output.print(text + '\n');
    } catch (const dcache::OutputFailed &failure) {
        _quiet = true;
        if (failure.error != EPIPE)
            fmt::print(stderr, "zovsim: {}\n", failure.what());
    }
}

void Log::complain(const std::string &text) {
    const std::lock_guard<std::mutex> lock(_mutex);
    fmt::print(stderr, "{}\n", text);
}

} // namespace zovsim
