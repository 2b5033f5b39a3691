#include "sim/serve/Session.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>

#include "sim/Status.h"
#include "sim/serve/Calls.h"
#include "sim/wire/Contents.h"
#include "sim/wire/Protocol.h"

namespace sim {

namespace {

/// Calls of one client that are in progress, and what they take; with so many, or so much, it is not listened to.
constexpr size_t kMaxInProgress = 16;
constexpr size_t kMaxBurden = kMaxMessage;
/// A message is taken in by pieces: memory goes to what has come, not to what was announced.
constexpr size_t kPiece = size_t{64} << 10;
/// Notifications that a client may be behind.
constexpr size_t kMaxUntaken = 16384;
/// Bytes that wait for a client to read them.
constexpr size_t kMaxBacklog = 2 * kMaxMessage;

Json failure(const std::string &why) {
    return {{"result", static_cast<int32_t>(kInternal)}, {"text", why}};
}

/// What a call takes while it is in progress, beside its message: a batch has two of the switch library's for every key.
size_t burdenOf(const Json &message) {
    const auto keys = message.find("keys");
    return keys == message.end() ? 0 : keys->size() * 2 * sizeof(SmlMessage);
}

/// What whoever asked has to be told, good or bad.
Json told(const std::function<std::string()> &tell) {
    try {
        return {{"result", static_cast<int32_t>(kOk)}, {"text", tell()}};
    } catch (const std::exception &error) {
        return failure(error.what());
    }
}

} // namespace

Session::Session(Socket socket, const Service &service, Farewell farewell)
    : _socket(std::move(socket)), _service(service), _farewell(std::move(farewell)), _deadline(service.io) {}

void Session::start() {
    hurry();
    awaitMessage();
}

// ---- reading -----------------------------------------------------------------------------------------

void Session::awaitMessage() {
    if (_isClosed || _isReading)
        return;
    if (isBusy()) {
        awaitEnd();
        return;
    }
    _isReading = true;
    const auto rest = asio::buffer(_length.data() + _lengthCount, _length.size() - _lengthCount);
    _socket.async_read_some(rest, [self = shared_from_this()](const asio::error_code &error, size_t count) {
        self->_isReading = false;
        if (error)
            self->close();
        else
            self->takeLength(count);
    });
}

bool Session::isBusy() const {
    return _inProgress >= kMaxInProgress || _burden >= kMaxBurden;
}

/// Nothing is read meanwhile: that the client goes must be seen all the same.
void Session::awaitEnd() {
    if (_isAwaitingEnd)
        return;
    _isAwaitingEnd = true;
    _socket.async_wait(Socket::wait_error, [self = shared_from_this()](const asio::error_code &error) {
        self->_isAwaitingEnd = false;
        if (error != asio::error::operation_aborted)
            self->close();
    });
}

void Session::takeLength(size_t count) {
    if (_isClosed)
        return;
    _lengthCount += count;
    hurry();
    if (_lengthCount < _length.size())
        awaitMessage();
    else
        beginBody();
}

void Session::beginBody() {
    const size_t size = sizeFrom(_length);
    _lengthCount = 0;
    if (size == 0 || size > (_hasSpoken ? kMaxMessage : kMaxGreeting)) {
        close();
        return;
    }
    _bodyCount = 0;
    awaitBody();
}

void Session::awaitBody() {
    const size_t size = sizeFrom(_length);
    if (_body.size() == _bodyCount)
        _body.resize(std::min(size, std::max(2 * _bodyCount, kPiece)));
    _isReading = true;
    const auto piece = asio::buffer(_body.data() + _bodyCount, _body.size() - _bodyCount);
    _socket.async_read_some(piece, [self = shared_from_this()](const asio::error_code &error, size_t count) {
        self->_isReading = false;
        if (error)
            self->close();
        else
            self->takePiece(count);
    });
}

void Session::takePiece(size_t count) {
    if (_isClosed)
        return;
    _bodyCount += count;
    if (_bodyCount < sizeFrom(_length))
        awaitBody();
    else
        takeBody();
}

void Session::takeBody() {
    relax();
    _hasSpoken = true;
    std::optional<Json> message = messageFrom(_body);
    _body = Bytes(); // a large one is rare
    try {
        if (!message)
            throw std::invalid_argument("no message");
        take(std::move(*message));
    } catch (const std::exception &) {
        close();
    }
    awaitMessage();
}

void Session::take(Json message) {
    if (message.contains("taken")) {
        if (_untaken == 0)
            throw std::invalid_argument("nothing was sent");
        --_untaken;
        _service.served.acknowledge(_handle);
        return;
    }
    const auto &what = message.at("call").get_ref<const std::string &>();
    if (!message.at("number").is_number_unsigned())
        throw std::invalid_argument("no number");
    if (what == "hello")
        greet(message);
    else if (what == "do" || what == "dump")
        control(message);
    else
        call(std::make_shared<const Json>(std::move(message)));
}

// ---- what is asked -----------------------------------------------------------------------------------

/// A greeting in another version of the protocol is answered, so that the client can tell why it is refused.
void Session::greet(const Json &message) {
    if (_handle != 0 || _caller != 0)
        throw std::invalid_argument("greeted before");
    if (message.at("version") != kProtocolVersion) {
        send({{"number", message.at("number")}, {"result", static_cast<int32_t>(kNotSupported)}});
        return;
    }
    _caller = _service.served.newCaller();
    const auto handle = std::make_shared<zov_handle_t>(0);
    const std::string host = message.at("host").get<std::string>();
    const std::string client = message.at("client").get<std::string>();
    const std::string text = message.at("text").get<std::string>();
    answerBy(message, [self = shared_from_this(), caller = _caller, handle, host, client, text] {
        const int32_t result =
            self->_service.served.connect(caller, host.c_str(), client.c_str(), text.c_str(), handle.get());
        asio::post(self->_service.io, [self, handle] {
            self->_service.served.disconnect(self->_caller);
            self->_caller = 0;
            self->_handle = *handle;
            if (self->_handle == 0)
                return;
            self->_connection = self->_service.served.connection(self->_handle);
            if (self->_isClosed)
                self->_service.served.hangUp(self->_handle);
        });
        return Json{{"result", result}, {"handle", *handle}};
    });
}

void Session::call(const std::shared_ptr<const Json> &message) {
    if (!_connection)
        throw std::invalid_argument("who calls?");
    answerBy(*message, [self = shared_from_this(), connection = _connection, message] {
        Json answer = answerCall(*connection, {notify, self.get()}, *message);
        if (mayHaveSaved(*message))
            self->_service.keeper.keep();
        return answer;
    });
}

void Session::control(const Json &message) {
    const bool isCommand = message.at("call") == "do";
    const std::string command = isCommand ? message.at("text").get<std::string>() : "";
    answerBy(message, [self = shared_from_this(), isCommand, command] {
        const ServerOptions &options = self->_service.options;
        if (isCommand ? !options.perform : !options.dump)
            return failure("this switch does not take commands");
        Json answer = told([&] { return isCommand ? options.perform(command) : options.dump(); });
        if (isCommand)
            self->_service.keeper.keep();
        return answer;
    });
}

/// A client whose message cannot be answered is closed.
void Session::answerBy(const Json &message, std::function<Json()> findAnswer) {
    const uint64_t number = message.at("number").get<uint64_t>();
    const size_t burden = sizeFrom(_length) + burdenOf(message);
    _service.workers.carryOut([self = shared_from_this(), number, burden, findAnswer = std::move(findAnswer)] {
        Json answer;
        try {
            answer = findAnswer();
            answer["number"] = number;
        } catch (const std::exception &) {
            answer = nullptr;
        }
        asio::post(self->_service.io, [self, burden, answer = std::move(answer)] {
            if (answer.is_null())
                self->close();
            else
                self->send(answer);
            self->end(burden);
        });
    });
    ++_inProgress;
    _burden += burden;
}

void Session::end(size_t burden) {
    --_inProgress;
    _burden -= burden;
    if (_isClosed && _inProgress == 0)
        release();
    awaitMessage();
}

// ---- sending -----------------------------------------------------------------------------------------

/// Comes on the switch's thread, and never again once the client has hung up. A client that is too far behind is sent
/// away: it cannot have the switch keep any number for it, nor wait for it.
void Session::notify(void *, zov_event_s *event, void *context) {
    const auto self = static_cast<Session *>(context)->shared_from_this();
    const size_t untaken = ++self->_untaken;
    if (untaken > kMaxUntaken + 1)
        return; // its end is on its way
    std::optional<Bytes> frame = frameOf(eventToWire(*event, ++self->_sequence));
    asio::post(self->_service.io,
               [self, isTooMany = untaken > kMaxUntaken, frame = std::make_shared<Bytes>(std::move(frame).value())] {
                   if (isTooMany)
                       self->close();
                   else
                       self->send(frame);
               });
}

void Session::send(const Json &message) {
    std::optional<Bytes> frame = frameOf(message);
    if (frame)
        send(std::make_shared<Bytes>(std::move(*frame)));
    else
        close();
}

void Session::send(std::shared_ptr<Bytes> frame) {
    if (_isClosed)
        return;
    if (_backlog + frame->size() > kMaxBacklog) {
        close();
        return;
    }
    _backlog += frame->size();
    _outgoing.push_back(std::move(frame));
    if (_outgoing.size() == 1)
        write();
}

void Session::write() {
    const std::shared_ptr<Bytes> frame = _outgoing.front();
    asio::async_write(_socket, asio::buffer(*frame),
                      [self = shared_from_this(), frame](const asio::error_code &error, size_t) {
                          if (error || self->_isClosed) {
                              self->close();
                              return;
                          }
                          self->_backlog -= frame->size();
                          self->_outgoing.pop_front();
                          if (!self->_outgoing.empty())
                              self->write();
                      });
}

// ---- the end -----------------------------------------------------------------------------------------

/// A deadline from now, unless there is one.
void Session::hurry() {
    if (_isHurried)
        return;
    _isHurried = true;
    _deadline.expires_after(_service.options.patience);
    _deadline.async_wait([self = shared_from_this()](const asio::error_code &) {
        if (self->_isHurried && self->_deadline.expiry() <= asio::steady_timer::clock_type::now())
            self->close();
    });
}

void Session::relax() {
    _isHurried = false;
    _deadline.cancel();
}

void Session::close() {
    if (_isClosed)
        return;
    _isClosed = true;
    relax();
    asio::error_code ignored;
    _socket.close(ignored);
    for (const zov_handle_t number : {_caller, _handle})
        if (number != 0)
            _service.served.hangUp(number);
    if (_inProgress == 0)
        release();
}

void Session::release() {
    if (_handle != 0)
        _service.served.disconnect(_handle);
    _connection.reset();
    _farewell(shared_from_this());
}

} // namespace sim
