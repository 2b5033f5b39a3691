#include "sim/serve/LocalServer.h"

#include <algorithm>
#include <utility>

#include <asio/post.hpp>

namespace sim {

namespace {

/// Who comes after these is sent away, unless one of them has said nothing yet.
constexpr size_t kMaxClients = 64;

} // namespace

LocalServer::LocalServer(std::shared_ptr<Served> served, const ServerOptions &options)
    : _options(options), _served(std::move(served)), _keeper(*_served, options.stateFile),
      _place(options.socketPath.empty() ? usualSocketPath() : options.socketPath), _work(_io.get_executor()),
      _acceptor(_io), _breath(_io) {
    _keeper.restore(); // before anybody can connect
    _acceptor = _place.listen(_io);
    accept();
    _thread = std::thread([this] { run(); });
}

/// The I/O thread ends when every session has, with its calls in progress.
LocalServer::~LocalServer() {
    asio::post(_io, [this] {
        asio::error_code ignored;
        _acceptor.close(ignored);
        _breath.cancel();
        for (const std::shared_ptr<Session> &session : std::set<std::shared_ptr<Session>>(_sessions))
            session->close();
        _isEnding = true;
        endWhenEmpty();
    });
    _thread.join();
    _workers.reset();
    _keeper.keepChanges();
}

void LocalServer::endWhenEmpty() {
    if (_isEnding && _sessions.empty())
        _work.reset();
}

/// Ends when there are no clients any more, and no calls.
void LocalServer::run() {
    for (;;) {
        try {
            _io.run();
            return;
        } catch (const std::exception &) { // out of memory: who asked for it gets no answer
            continue;
        }
    }
}

void LocalServer::accept() {
    _acceptor.async_accept([this](const asio::error_code &error, Session::Socket socket) {
        if (!_acceptor.is_open())
            return;
        if (!error) {
            accept(); // whatever becomes of this one
            welcome(std::move(socket));
            return;
        }
        _breath.expires_after(std::chrono::milliseconds(100)); // out of descriptors, most likely
        _breath.async_wait([this](const asio::error_code &) {
            if (_acceptor.is_open())
                accept();
        });
    });
}

/// Who has said nothing yet makes room, whoever came first. False when all have.
bool LocalServer::makeRoom() {
    const auto isEarlier = [](const auto &left, const auto &right) {
        return left->hasSpoken() != right->hasSpoken() ? right->hasSpoken() : left->since() < right->since();
    };
    const auto first = std::min_element(_sessions.begin(), _sessions.end(), isEarlier);
    if ((*first)->hasSpoken())
        return false;
    std::shared_ptr<Session> silent = *first; // its end takes it from the list
    silent->close();
    return true;
}

void LocalServer::welcome(Session::Socket socket) {
    if (_sessions.size() >= kMaxClients && !makeRoom())
        return;
    keepFromPrograms(socket.native_handle());
    const Service service{_options, *_served, _io, *_workers, _keeper};
    const auto session =
        std::make_shared<Session>(std::move(socket), service, [this](const std::shared_ptr<Session> &gone) {
            _sessions.erase(gone);
            _clientCount = _sessions.size();
            endWhenEmpty();
        });
    _sessions.insert(session);
    _clientCount = _sessions.size();
    session->start();
}

} // namespace sim
