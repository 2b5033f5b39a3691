#include "sim/remote/Line.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace sim {

namespace {

/// Until all of it is done, or nothing more can be.
template <class Part> bool inParts(size_t size, const Part &part) {
    for (size_t done = 0; done < size;) {
        const ssize_t count = part(done);
        if (count > 0)
            done += static_cast<size_t>(count);
        else if (count == 0 || errno != EINTR)
            return false;
    }
    return true;
}

/// As connect(), which a signal may interrupt: on such a socket nothing has happened then.
int connectTo(int descriptor, const sockaddr_un &address) {
    int result = 0;
    do
        result = connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    while (result == -1 && errno == EINTR);
    return result;
}

} // namespace

std::shared_ptr<Line> Line::open(const std::string &socketPath) {
    sockaddr_un address = {};
    if (socketPath.size() >= sizeof address.sun_path)
        return nullptr;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor == -1)
        return nullptr;
    const std::shared_ptr<Line> line(new Line(descriptor));
    return connectTo(descriptor, address) == 0 ? line : nullptr;
}

Line::~Line() {
    ::close(_descriptor);
}

bool Line::send(const Bytes &frame) {
    const std::lock_guard<std::mutex> lock(_sending);
    return inParts(frame.size(), [&](size_t done) {
        return ::send(_descriptor, frame.data() + done, frame.size() - done, MSG_NOSIGNAL);
    });
}

bool Line::read(uint8_t *bytes, size_t size) const {
    return inParts(size, [&](size_t done) { return recv(_descriptor, bytes + done, size - done, 0); });
}

std::optional<Json> Line::receive() {
    Length length = {};
    if (!read(length.data(), length.size()))
        return std::nullopt;
    const size_t size = sizeFrom(length);
    if (size == 0 || size > kMaxMessage)
        return std::nullopt;
    Bytes body(size);
    return read(body.data(), body.size()) ? messageFrom(body) : std::nullopt;
}

/// The descriptor stays until nobody uses it.
void Line::close() {
    shutdown(_descriptor, SHUT_RDWR);
}

} // namespace sim
