/*
 * One client of a served switch, from the moment it connects: its messages, and what goes back. It is closed when it
 * goes, when it sends what no client sends, when it takes too long over a message, and when it does not read what it is
 * sent.
 *
 * A client greets first ("hello"), and is a connection of the switch from then on. Whoever has only something to have
 * done or told ("do", "dump") need not greet.
 *
 * What a client makes the server keep is bounded: the calls that are in progress and how much they take, the answers and
 * notifications that it does not read, and the notifications that it does not say to have taken.
 *
 * Everything but the notifications happens on the thread of the server's I/O context.
 */
#ifndef SIM_SERVE_SESSION_H
#define SIM_SERVE_SESSION_H

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <asio/steady_timer.hpp>

#include "sim/Server.h"
#include "sim/serve/Served.h"
#include "sim/serve/StateKeeper.h"
#include "sim/serve/Workers.h"
#include "sim/wire/Frame.h"

namespace sim {

/// What the sessions of a server share. It outlives them.
struct Service {
    const ServerOptions &options;
    Served &served;
    asio::io_context &io;
    Workers &workers;
    StateKeeper &keeper;
};

class Session : public std::enable_shared_from_this<Session> {
public:
    using Socket = asio::local::stream_protocol::socket;
    using Farewell = std::function<void(const std::shared_ptr<Session> &session)>;

    /// `farewell` is called when the client is gone, and everything that it held is free.
    Session(Socket socket, const Service &service, Farewell farewell);

    void start();
    void close();
    /// Whether a message has come from it.
    bool hasSpoken() const { return _hasSpoken; }
    std::chrono::steady_clock::time_point since() const { return _since; }

private:
    void awaitMessage();
    void awaitEnd();
    void takeLength(size_t count);
    void beginBody();
    void awaitBody();
    void takePiece(size_t count);
    void takeBody();
    void take(Json message);
    void greet(const Json &message);
    void call(const std::shared_ptr<const Json> &message);
    void control(const Json &message);
    /// Has a worker find the answer, and sends it with the message's number.
    void answerBy(const Json &message, std::function<Json()> findAnswer);
    void end(size_t burden);
    void release();
    void send(const Json &message);
    void send(std::shared_ptr<Bytes> frame);
    void write();
    bool isBusy() const;
    void hurry();
    void relax();
    static void notify(void *handle, zov_event_s *event, void *context);

    Socket _socket;
    Service _service;
    Farewell _farewell;
    asio::steady_timer _deadline;
    bool _isHurried = false;

    Length _length = {};
    size_t _lengthCount = 0; ///< bytes of it that have come
    Bytes _body;
    size_t _bodyCount = 0; ///< bytes of it that have come
    bool _isReading = false;
    bool _isAwaitingEnd = false;
    bool _hasSpoken = false;
    const std::chrono::steady_clock::time_point _since = std::chrono::steady_clock::now();

    std::deque<std::shared_ptr<Bytes>> _outgoing;
    size_t _backlog = 0; ///< bytes of these

    zov_handle_t _caller = 0; ///< its number while it greets; 0 otherwise
    zov_handle_t _handle = 0; ///< its connection; 0 before it has one
    std::shared_ptr<Connection> _connection;
    size_t _inProgress = 0; ///< calls
    size_t _burden = 0;     ///< of these, in bytes
    bool _isClosed = false;

    uint64_t _sequence = 0;          ///< of the last notification; for the thread that notifies
    std::atomic<size_t> _untaken{0}; ///< notifications that the client has not said to have taken
};

} // namespace sim

#endif // SIM_SERVE_SESSION_H
