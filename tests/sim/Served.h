/*
 * A served switch as tests use it, and clients in processes of their own.
 *
 * Thread-safety: for one thread at a time.
 */
#ifndef TESTS_SIM_SERVED_H
#define TESTS_SIM_SERVED_H

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "sim/Server.h"
#include "tests/sim/Client.h"

namespace simtest {

constexpr const char *kSocket = "/tmp/switch"; ///< in the test's own /tmp
constexpr int32_t kNoConnection = 31;

inline sim::ServerOptions options() {
    sim::ServerOptions chosen;
    chosen.socketPath = kSocket;
    return chosen;
}

/// Whether a rule has met the calls that it waited for.
inline bool isUsedUp(const sim::Simulator &device, int rule) {
    const auto faults = device.faults();
    const auto found = faults.find(rule);
    return found == faults.end() || found->second.times == 0;
}

/// From now on clients of this process and of its children go to the socket.
inline void goOverTheSocket() {
    setenv("ZOVSIM_SOCKET", kSocket, 1);
}

/// A process that does something and ends; what it returns is its exit status. To be made before the process has threads.
class Process {
public:
    explicit Process(const std::function<int()> &body) : _id(fork()) {
        if (_id == 0)
            _exit(statusOf(body));
    }
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;
    ~Process() { killAndWait(); }

    pid_t id() const { return _id; }

    /// kill -9, and its end.
    void killAndWait() {
        if (_id <= 0)
            return;
        kill(_id, SIGKILL);
        wait();
    }
    /// Its exit status; a signal's number and 128 when that ended it.
    int wait() {
        int status = 0;
        while (_id > 0 && waitpid(_id, &status, 0) == -1 && errno == EINTR)
            continue;
        _id = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    static int statusOf(const std::function<int()> &body) {
        try {
            return body();
        } catch (const std::exception &error) {
            std::fprintf(stderr, "%s\n", error.what());
            return 1;
        }
    }

    pid_t _id;
};

/// Lets one process tell another that it has come to a point.
class Signal {
public:
    Signal() {
        if (pipe(_ends) == -1)
            std::abort();
    }
    Signal(const Signal &) = delete;
    Signal &operator=(const Signal &) = delete;
    ~Signal() {
        close(_ends[0]);
        close(_ends[1]);
    }

    void give() const {
        if (write(_ends[1], "!", 1) != 1)
            std::abort();
    }
    /// False when it can never come.
    bool await() const {
        char byte = 0;
        return read(_ends[0], &byte, 1) == 1;
    }

private:
    int _ends[2] = {-1, -1};
};

/// Ends the process that this is, as kill -9 does.
[[noreturn]] inline void dieAtOnce() {
    kill(getpid(), SIGKILL);
    for (;;)
        pause();
}

} // namespace simtest

#endif // TESTS_SIM_SERVED_H
