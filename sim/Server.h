/*
 * A simulated switch that stays on: a server gives clients of other processes a road to it, over a Unix-domain socket.
 * A client is a process whose environment names the socket in ZOVSIM_SOCKET: its calls of platform/zovlib.h go there.
 * For everything on the switch it is one more connection. A client that goes, in whatever way, frees what it held.
 *
 * Zoning objects stay in the client's own process; zone sets that it fetches are copied there. The levers and the recorder
 * of the switch see the calls that name a connection, and no others.
 *
 * Over the socket, a batch of more than 100000 keys and a registration for more than 4096 codes are refused with status 1.
 *
 * A client may be 16384 notifications behind. One that is further behind is sent away, and so is one that does not read
 * what it is sent: nobody else waits for it.
 *
 * A client whose server is gone finds every call failing, with a status of its own. It comes back by itself as soon as a
 * server is there again, with its number and its registration for notifications; notifications of codes 253 and 254 tell
 * those who registered for them of the loss and the return.
 *
 * Thread-safety: every operation may be called from any thread; the destructor not from a notification callback, and not
 * from a command that the server carries out.
 */
#ifndef SIM_SERVER_H
#define SIM_SERVER_H

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "sim/Simulator.h"

namespace sim {

struct ServerOptions {
    /// Empty: defaultSocketPath(). Only the user may connect to it. What a server that died left there is replaced.
    std::string socketPath;
    /// Carry out a command, and tell the present state as a text; what they throw is told to whoever asked. Without
    /// them, it is refused. They are called on threads of the server, several at once.
    std::function<std::string(const std::string &command)> perform;
    std::function<std::string()> dump;
    /// Empty: none. Otherwise the switch begins with the configuration and the zoning database that are kept in this
    /// file, if it is there, and they are kept in it whenever a client has saved some or a command was carried out,
    /// before the client is told. The file is replaced as a whole or not at all; one server at a time has it, as a file
    /// beside it, FILE.lock, says.
    std::string stateFile;
    /// Who has begun a message has so long to end it, and who has connected so long to send the first.
    std::chrono::milliseconds patience{5000};
};

/// It serves until it is destroyed. A switch that goes before its server is one that is off; what the options refer to
/// must stay.
class Server {
public:
    Server() = default;
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;
    virtual ~Server() = default;

    virtual std::string socketPath() const = 0;
    /// Clients that are connected now, those included that have not said anything yet.
    virtual size_t clientCount() const = 0;
    /// Keeps in the state file what there is now. For whoever changes the switch without a client or a command; the
    /// server does it when it ends, too.
    virtual void keep() = 0;
};

} // namespace sim

/// Serves a switch that this library made; null if `version` is not this library's. Throws std::runtime_error saying what
/// is wrong with the socket, above all that a switch is served there already, or with the state file. The caller owns
/// the result.
extern "C" __attribute__((visibility("default"))) sim::Server *
zovsim_serve(sim::Simulator *device, const sim::ServerOptions *options, int version);

/// Where a switch is served unless somebody says otherwise: in the user's run-time directory. Throws std::runtime_error
/// when there is no place that is the user's alone.
extern "C" __attribute__((visibility("default"))) void zovsim_defaultSocketPath(std::string *path);

/// Has the switch at a socket carry out a command, or with `command` null, tell its state. True, and `answer` is what it
/// had to tell; or false, and it is why not.
extern "C" __attribute__((visibility("default"))) bool zovsim_ask(const char *socketPath, const char *command,
                                                                  std::string *answer);

namespace sim {

inline std::unique_ptr<Server> serve(Simulator &device, const ServerOptions &options = {}) {
    return std::unique_ptr<Server>(zovsim_serve(&device, &options, kInterfaceVersion));
}

inline std::string defaultSocketPath() {
    std::string path;
    zovsim_defaultSocketPath(&path);
    return path;
}

} // namespace sim

#endif // SIM_SERVER_H
