/*
 * Runs the built zovsim, of the file ZOVSIM_PROGRAM seen from the test program's directory. What it says goes to files in the test's own /tmp.
 *
 * For one thread at a time.
 */
#ifndef TESTS_TOOLS_ZOVSIM_RUNZOVSIM_H
#define TESTS_TOOLS_ZOVSIM_RUNZOVSIM_H

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/OwnDirectory.h"
#include "tests/support/Wait.h"

namespace zovsimtest {

constexpr const char *kSocket = "/tmp/switch";

inline std::string contentsOf(const std::string &file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::string &file, const std::string &text) {
    std::ofstream(file, std::ios::binary) << text;
}

class Program {
public:
    /// The arguments as a shell understands them, redirections included, and what the shell does before.
    explicit Program(const std::string &arguments, const std::string &before = "") {
        static int count = 0;
        _place = "/tmp/run" + std::to_string(++count);
        const std::string script =
            "exec >" + _place + ".out 2>" + _place + ".err\n" + before + "\nexec \"$0\" " + arguments;
        const std::string program = support::ownDirectory() + "/" + ZOVSIM_PROGRAM;
        _id = fork();
        if (_id == 0) {
            execl("/bin/sh", "sh", "-c", script.c_str(), program.c_str(), nullptr);
            _exit(127);
        }
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    ~Program() {
        if (_id > 0) {
            kill(_id, SIGKILL);
            wait();
        }
    }

    /// Waits until it has said this; false when it ends without.
    bool says(const std::string &text) { return hasSaid(text, &Program::out); }
    bool complains(const std::string &text) { return hasSaid(text, &Program::err); }

    /// Sends a signal, waits for the end, and returns the exit status; a signal's number and 128 when that ended it.
    int endBy(int signal) {
        kill(_id, signal);
        return wait();
    }
    int wait() {
        while (_id > 0 && waitpid(_id, &_status, 0) == -1 && errno == EINTR)
            continue;
        _id = 0;
        return WIFEXITED(_status) ? WEXITSTATUS(_status) : 128 + WTERMSIG(_status);
    }

    pid_t id() const { return _id; }
    std::string out() const { return contentsOf(_place + ".out"); }
    std::string err() const { return contentsOf(_place + ".err"); }

private:
    bool hasSaid(const std::string &text, std::string (Program::*stream)() const) {
        bool isThere = false;
        support::waitUntil([&] {
            const bool isOver = _id == 0 || waitpid(_id, &_status, WNOHANG) == _id;
            isThere = (this->*stream)().find(text) != std::string::npos;
            if (isOver)
                _id = 0;
            return isThere || isOver;
        });
        return isThere;
    }

    std::string _place;
    pid_t _id = -1;
    int _status = 0;
};

/// A program that serves at kSocket; `arguments` say what.
struct Serving : Program {
    explicit Serving(const std::string &arguments, const std::string &before = "")
        : Program(arguments + " --socket " + kSocket, before), isServed(says("export ZOVSIM_SOCKET=")) {}

    const bool isServed;
};

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

/// A whole run.
inline Outcome run(const std::string &arguments) {
    Program program(arguments);
    const int exitCode = program.wait();
    return {exitCode, program.out(), program.err()};
}

/// What the switch at kSocket says to a command.
inline std::string toldBy(const std::string &command) {
    const Outcome outcome = run("do --socket " + std::string(kSocket) + " '" + command + "'");
    return outcome.out + outcome.err;
}

/// From now on this process's clients go to kSocket.
inline void goOverTheSocket() {
    setenv("ZOVSIM_SOCKET", kSocket, 1); // NOLINT(concurrency-mt-unsafe): no other thread looks yet
}

} // namespace zovsimtest

#endif // TESTS_TOOLS_ZOVSIM_RUNZOVSIM_H
