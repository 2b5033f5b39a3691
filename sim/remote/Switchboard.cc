#include "sim/remote/Switchboard.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <thread>
#include <unistd.h>
#include <utility>

#include "sim/Status.h"
#include "sim/core/Event.h"
#include "sim/core/Handle.h"
#include "sim/wire/Contents.h"
#include "sim/wire/Protocol.h"

namespace sim {

namespace {

/// How long it is until a server is looked for again.
constexpr std::chrono::milliseconds kFirstWait{20};
constexpr std::chrono::milliseconds kLongestWait{1000};

/// Calls that no client has made have this number.
constexpr uint64_t kOwnCall = 0;

bool sendMessage(Line &line, const Json &message) {
    const std::optional<Bytes> frame = frameOf(message);
    return frame && line.send(*frame);
}

bool isNotification(const Json &message) {
    return message.contains("sequence");
}

bool isDone(const Json &answer) {
    return answer.at("result") == static_cast<int32_t>(kOk);
}

} // namespace

Switchboard::Switchboard(std::string socketPath, Greeting greeting)
    : _socketPath(std::move(socketPath)), _greeting(std::move(greeting)), _process(getpid()) {}

// ---- beginning ---------------------------------------------------------------------------------------

std::optional<Json> Switchboard::connect() {
    const std::shared_ptr<Line> line = Line::open(_socketPath);
    if (!line)
        return std::nullopt;
    std::optional<Json> answer = greet(*line);
    const std::lock_guard<std::mutex> lock(_mutex);
    _line = line;
    return answer;
}

void Switchboard::start(zov_handle_t number) {
    _number = number;
    std::thread([this] { listen(); }).detach();
    std::thread([this] { callBack(); }).detach();
}

std::optional<Json> Switchboard::greet(Line &line) const {
    const Json hello = {{"call", "hello"},        {"number", kOwnCall},         {"version", kProtocolVersion},
                        {"host", _greeting.host}, {"client", _greeting.client}, {"text", _greeting.text}};
    return sendMessage(line, hello) ? line.receive() : std::nullopt;
}

// ---- calls -------------------------------------------------------------------------------------------

/// A server that went unnoticed has not seen the call: another one may.
std::optional<Json> Switchboard::ask(const Json &message) {
    constexpr int kAttempts = 2;
    for (int attempt = 0; attempt < kAttempts && getpid() == _process; ++attempt) {
        const std::shared_ptr<Line> line = presentLine();
        bool isSent = true;
        std::optional<Json> answer = line ? askOn(line, message, isSent) : std::nullopt;
        if (isSent)
            return answer;
    }
    return std::nullopt;
}

std::optional<Json> Switchboard::askOn(const std::shared_ptr<Line> &line, Json message, bool &isSent) {
    std::unique_lock<std::mutex> lock(_mutex);
    isSent = _line == line;
    if (!isSent)
        return std::nullopt;
    const uint64_t number = ++_lastCall;
    message["number"] = number;
    const std::optional<Bytes> frame = frameOf(message);
    if (!frame)
        return std::nullopt;
    Pending &pending = _pending[number];
    lock.unlock();
    isSent = line->send(*frame);
    if (!isSent)
        lose(line);
    lock.lock();
    _changed.wait(lock, [&] { return pending.isOver; });
    std::optional<Json> answer = std::move(pending.answer);
    _pending.erase(number);
    return answer;
}

Registration Switchboard::replaceRegistration(Registration registration) {
    const std::lock_guard<std::mutex> lock(_mutex);
    std::swap(_registration, registration);
    return registration;
}

// ---- loss and return ---------------------------------------------------------------------------------

std::shared_ptr<Line> Switchboard::presentLine() {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_line)
            return _line;
    }
    return revive();
}

/// Takes up with a server what there was before; null when there is none, or it will not have it.
std::shared_ptr<Line> Switchboard::revive() {
    const std::lock_guard<std::mutex> reviving(_reviving);
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_line)
            return _line;
    }
    std::shared_ptr<Line> line = Line::open(_socketPath);
    if (!line)
        return nullptr;
    const std::optional<Json> greeted = greet(*line);
    std::deque<Delivery> early;
    uint64_t sequence = 0;
    if (!greeted || !isDone(*greeted) || greeted->at("handle") == 0 || !registerAgain(line, early, sequence))
        return nullptr;
    const std::lock_guard<std::mutex> lock(_mutex);
    putOwn(ZOV_EVENT_CONNECTION_RESTORED, "connection restored");
    std::move(early.begin(), early.end(), std::back_inserter(_inbox));
    _line = line;
    _sequence = sequence;
    _changed.notify_all();
    _arrived.notify_all();
    return line;
}

/// Notifications may come before the answer does.
bool Switchboard::registerAgain(const std::shared_ptr<Line> &line, std::deque<Delivery> &early, uint64_t &sequence) {
    Json message = {{"call", "register"}, {"number", kOwnCall}};
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_registration.callback)
            return true;
        message["codes"] = _registration.codes;
    }
    if (!sendMessage(*line, message))
        return false;
    for (;;) {
        const std::optional<Json> received = line->receive();
        if (!received)
            return false;
        if (!isNotification(*received))
            return isDone(*received);
        if (received->at("sequence") != ++sequence)
            return false;
        early.push_back({eventFromWire(*received), line});
    }
}

void Switchboard::lose(const std::shared_ptr<Line> &line) {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_line != line)
            return;
        _line.reset();
        for (auto &[number, pending] : _pending)
            pending.isOver = true;
        putOwn(ZOV_EVENT_CONNECTION_LOST, "connection lost"); // before anybody can tell of the return
        _changed.notify_all();
    }
    line->close();
}

/// A notification of this library's own; with the mutex locked.
void Switchboard::putOwn(int32_t code, const char *text) {
    if (std::count(_registration.codes.begin(), _registration.codes.end(), code) == 0)
        return;
    _inbox.push_back({makeEvent(code, {0, 0, 0}, text), nullptr});
    _arrived.notify_all();
}

// ---- the threads -------------------------------------------------------------------------------------

void Switchboard::listen() {
    std::chrono::milliseconds wait = kFirstWait;
    for (;;) {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, wait, [this] { return _line != nullptr; });
        const std::shared_ptr<Line> line = _line;
        lock.unlock();
        try {
            if (!line) {
                wait = std::min(2 * wait, kLongestWait);
                revive();
                continue;
            }
            wait = kFirstWait;
            for (std::optional<Json> message = line->receive(); message && take(line, std::move(*message));)
                message = line->receive();
        } catch (const std::exception &) { // what came is no answer, or there is no memory for it
        }
        if (line)
            lose(line);
    }
}

/// False when it is nothing that a server sends.
bool Switchboard::take(const std::shared_ptr<Line> &line, Json message) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (isNotification(message)) {
        if (_line != line || message.at("sequence") != ++_sequence)
            return false;
        _inbox.push_back({eventFromWire(message), line});
        _arrived.notify_all();
    } else {
        const auto found = _pending.find(message.at("number").get<uint64_t>());
        if (found == _pending.end() || found->second.isOver)
            return false;
        found->second.answer = std::move(message);
        found->second.isOver = true;
        _changed.notify_all();
    }
    return true;
}

/// Callbacks run one after another, with no lock held.
void Switchboard::callBack() {
    Json message = Json::object();
    message["taken"] = true;
    const Bytes taken = frameOf(message).value();
    for (;;) {
        std::unique_lock<std::mutex> lock(_mutex);
        _arrived.wait(lock, [this] { return !_inbox.empty(); });
        Delivery delivery = std::move(_inbox.front());
        _inbox.pop_front();
        const zov_eventcallback_t callback = _registration.callback;
        void *context = _registration.context;
        lock.unlock();
        if (callback)
            callback(pointerOf(_number), &delivery.event, context);
        if (delivery.line)
            delivery.line->send(taken);
    }
}

} // namespace sim
