/*
 * What a client has with a server, beyond any one line: its name, its registration for notifications, the calls that wait
 * for their answers. When the line dies, they all fail; it then looks for a server until one is there, at every call and
 * now and again in between, and takes up there what it had.
 *
 * Two threads belong to it, one that listens and one that calls back. It lives as long as the process: no call ends a
 * connection. In a process that was forked from its own it is dead.
 *
 * Thread-safe.
 */
#ifndef SIM_REMOTE_SWITCHBOARD_H
#define SIM_REMOTE_SWITCHBOARD_H

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "platform/zovlib.h"
#include "sim/remote/Line.h"

namespace sim {

/// What a client said when it connected.
struct Greeting {
    std::string host;
    std::string client;
    std::string text;
};

struct Registration {
    zov_eventcallback_t callback = nullptr;
    void *context = nullptr;
    std::vector<int32_t> codes;
};

class Switchboard {
public:
    Switchboard(std::string socketPath, Greeting greeting);
    Switchboard(const Switchboard &) = delete;
    Switchboard &operator=(const Switchboard &) = delete;

    /// The server's answer to the greeting; none when there is no server. To be asked once, first of all.
    std::optional<Json> connect();
    /// The client knows the connection by this number. Begins to listen.
    void start(zov_handle_t number);

    /// The answer to a call; none when the line is dead, or died before it came.
    std::optional<Json> ask(const Json &message);

    /// Where notifications go from now on. Hands out what was there before.
    Registration replaceRegistration(Registration registration);

private:
    struct Pending {
        bool isOver = false;
        std::optional<Json> answer;
    };
    struct Delivery {
        zov_event_s event;
        std::shared_ptr<Line> line; ///< which wants to know of its end; may be null
    };

    /// `isSent` becomes false when the server cannot have seen the call.
    std::optional<Json> askOn(const std::shared_ptr<Line> &line, Json message, bool &isSent);
    std::shared_ptr<Line> presentLine();
    std::shared_ptr<Line> revive();
    std::optional<Json> greet(Line &line) const;
    bool registerAgain(const std::shared_ptr<Line> &line, std::deque<Delivery> &early, uint64_t &sequence);
    void lose(const std::shared_ptr<Line> &line);
    void putOwn(int32_t code, const char *text);
    [[noreturn]] void listen();
    bool take(const std::shared_ptr<Line> &line, Json message);
    [[noreturn]] void callBack();

    const std::string _socketPath;
    const Greeting _greeting;
    const pid_t _process;
    zov_handle_t _number = 0;

    std::mutex _reviving; ///< one at a time; locked before _mutex
    std::mutex _mutex;
    std::condition_variable _changed; ///< the line, or a call that waits
    std::condition_variable _arrived; ///< something in the inbox
    std::shared_ptr<Line> _line;      ///< null while there is none
    uint64_t _sequence = 0;           ///< of the last notification on the line
    uint64_t _lastCall = 0;
    std::map<uint64_t, Pending> _pending;
    Registration _registration;
    std::deque<Delivery> _inbox;
};

} // namespace sim

#endif // SIM_REMOTE_SWITCHBOARD_H
