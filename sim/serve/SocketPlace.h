/*
 * Where a served switch is found: a Unix-domain socket that only the user can reach. Of all processes, one at most holds
 * the place, until it ends, in whatever way; a file beside the socket shows it.
 *
 * For one thread.
 */
#ifndef SIM_SERVE_SOCKETPLACE_H
#define SIM_SERVE_SOCKETPLACE_H

#include <string>

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>

namespace sim {

/// In the run-time directory of the user, or else in a directory below /tmp that is the user's alone, which is made.
/// Throws std::runtime_error when somebody else's is in its place.
std::string usualSocketPath();

/// Programs that the process starts do not get the descriptor.
void keepFromPrograms(int descriptor);

class SocketPlace {
public:
    using Acceptor = asio::local::stream_protocol::acceptor;

    /// Takes the place. Throws std::runtime_error when it is taken, or is no place for a socket.
    explicit SocketPlace(const std::string &path);
    SocketPlace(const SocketPlace &) = delete;
    SocketPlace &operator=(const SocketPlace &) = delete;
    /// Takes the socket away.
    ~SocketPlace();

    const std::string &path() const { return _path; }
    /// Connections are accepted from now on. Throws std::runtime_error.
    Acceptor listen(asio::io_context &io) const;

private:
    const std::string _path;
    int _lock = -1;
};

} // namespace sim

#endif // SIM_SERVE_SOCKETPLACE_H
