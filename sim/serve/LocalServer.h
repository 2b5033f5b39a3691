/*
 * The server of a switch of this process: who connects, and the threads that serve.
 *
 * Thread-safe. The destructor waits for every call in progress.
 */
#ifndef SIM_SERVE_LOCALSERVER_H
#define SIM_SERVE_LOCALSERVER_H

#include <atomic>
#include <memory>
#include <set>
#include <thread>

#include <asio/executor_work_guard.hpp>

#include "sim/Server.h"
#include "sim/serve/Session.h"
#include "sim/serve/SocketPlace.h"

namespace sim {

class LocalServer final : public Server {
public:
    LocalServer(std::shared_ptr<Served> served, const ServerOptions &options);
    ~LocalServer() override;

    std::string socketPath() const override { return _place.path(); }
    size_t clientCount() const override { return _clientCount; }
    void keep() override { _keeper.keepChanges(); }

private:
    void accept();
    void welcome(Session::Socket socket);
    bool makeRoom();
    void run();
    void endWhenEmpty();

    const ServerOptions _options;
    const std::shared_ptr<Served> _served;
    StateKeeper _keeper;
    const SocketPlace _place;
    asio::io_context _io{1};
    asio::executor_work_guard<asio::io_context::executor_type> _work; ///< keeps the thread until the end
    SocketPlace::Acceptor _acceptor;
    asio::steady_timer _breath;
    std::set<std::shared_ptr<Session>> _sessions;
    std::atomic<size_t> _clientCount{0};
    bool _isEnding = false;
    std::unique_ptr<Workers> _workers = std::make_unique<Workers>();
    std::thread _thread;
};

} // namespace sim

#endif // SIM_SERVE_LOCALSERVER_H
