/*
 * Whoever connects to the socket of a served switch and speaks for himself, and the messages that a client would send.
 *
 * Thread-safety: for one thread at a time.
 */
#ifndef TESTS_SIM_STRANGER_H
#define TESTS_SIM_STRANGER_H

#include <cstdio>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "sim/wire/Frame.h"
#include "tests/sim/Served.h"

namespace simtest {

using sim::Bytes;
using sim::Json;

inline Json hello() {
    return {{"call", "hello"}, {"number", 0}, {"version", 1}, {"host", "localhost"}, {"client", ""}, {"text", ""}};
}

inline Json callOf(const char *call) {
    return {{"call", call}, {"number", 1}};
}

inline Json with(Json message, const char *name, const Json &value) {
    message[name] = value;
    return message;
}

/// Whoever connects to the socket, and what comes back.
class Stranger {
public:
    Stranger() : _socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::snprintf(address.sun_path, sizeof address.sun_path, "%s", kSocket);
        isConnected = ::connect(_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;
    ~Stranger() { close(_socket); }

    /// As far as the server takes it.
    void send(const Bytes &bytes) const {
        for (size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::send(_socket, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
            if (count <= 0)
                return;
            done += static_cast<size_t>(count);
        }
    }
    void send(const Json &message) const { send(sim::frameOf(message).value()); }
    /// Greets, and is welcome.
    bool isTaken() const {
        send(hello());
        return receive().value("result", -1) == 0;
    }

    /// Whether the server ends the connection; what it sends before is passed over.
    bool isClosed() const {
        char bytes[4096];
        for (;;) {
            const ssize_t count = recv(_socket, bytes, sizeof bytes, 0);
            if (count <= 0)
                return true;
        }
    }
    /// The next message.
    Json receive() const {
        sim::Length length = {};
        if (recv(_socket, length.data(), length.size(), MSG_WAITALL) != static_cast<ssize_t>(length.size()))
            return {{"gone", true}};
        Bytes body(sim::sizeFrom(length));
        if (recv(_socket, body.data(), body.size(), MSG_WAITALL) != static_cast<ssize_t>(body.size()))
            return {{"gone", true}};
        return sim::messageFrom(body).value_or(Json{{"nonsense", true}});
    }

    int descriptor() const { return _socket; }

    bool isConnected;

private:
    const int _socket;
};

} // namespace simtest

#endif // TESTS_SIM_STRANGER_H
