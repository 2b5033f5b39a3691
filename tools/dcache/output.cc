#include "tools/dcache/output.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "tools/dcache/failure.h"

namespace dcache {

void Output::print(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(_descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<size_t>(written));
        } else if (errno == EAGAIN) { // a pipe that somebody made non-blocking: wait for room
            pollfd room = {_descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            throw OutputFailed(errno);
        }
    }
}

bool Output::wantsColour() const {
    const char *noColour = std::getenv("NO_COLOR");
    const char *terminal = std::getenv("TERM");
    return isatty(_descriptor) != 0 && (noColour == nullptr || *noColour == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

void occupyStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            // The lowest free descriptor is this one. Opened the wrong way round, it can only fail when used.
            open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace dcache
