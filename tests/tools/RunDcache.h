/*
 * Runs the built dcache program and collects what it says.
 */
#ifndef TESTS_TOOLS_RUNDCACHE_H
#define TESTS_TOOLS_RUNDCACHE_H

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "tests/support/OwnDirectory.h"

namespace support {

using Arguments = std::vector<std::string>;
using Environment = std::vector<std::pair<std::string, std::string>>;

/// What the program's standard output is.
enum class Stdout { pipe, terminal, pipeWithoutReader, fullDevice, closed };

inline std::vector<std::string> splitAt(const std::string &text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

inline std::vector<std::string> lines(const std::string &text) {
    return splitAt(text, '\n');
}

/// Sets an environment variable of this process. Tests do so while no other thread looks.
inline void setVariable(const std::string &name, const std::string &value) {
    setenv(name.c_str(), value.c_str(), 1); // NOLINT(concurrency-mt-unsafe): see above
}

/// One run of the program, of the file DCACHE_PROGRAM seen from the test program's directory, behind the words of DCACHE_EMULATOR (with blanks between; none on
/// the machine it was built for). A run that takes longer than a minute is killed.
class DcacheRun {
public:
    explicit DcacheRun(const Arguments &arguments, Stdout kind = Stdout::pipe, const Environment &environment = {}) {
        std::array<int, 2> out = makeStdout(kind);
        std::array<int, 2> err = {-1, -1};
        if (pipe2(err.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        _pid = fork();
        if (_pid == 0)
            become(arguments, kind, environment, out[1], err[1]);
        if (out[1] >= 0)
            close(out[1]);
        close(err[1]);
        _out.descriptor = out[0];
        _err.descriptor = err[0];
    }
    ~DcacheRun() {
        if (_pid > 0) {
            kill(_pid, SIGKILL);
            waitpid(_pid, nullptr, 0);
        }
        closeStream(_out);
        closeStream(_err);
    }
    DcacheRun(const DcacheRun &) = delete;
    DcacheRun &operator=(const DcacheRun &) = delete;

    void sendSignal(int number) { kill(_pid, number); }

    /// Reads until stderr, or stdout, holds the text; false when the program ends first.
    bool waitForStderr(const std::string &text) { return waitFor(_err, text); }
    bool waitForStdout(const std::string &text) { return waitFor(_out, text); }

    /// Reads to the end; the exit code, or 1000 plus the signal that ended it.
    int wait() {
        while (readMore()) {
        }
        int status = 0;
        waitpid(_pid, &status, 0);
        _pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    }

    const std::string &out() const { return _out.text; }
    const std::string &err() const { return _err.text; }

private:
    struct Stream {
        int descriptor = -1;
        std::string text;
    };

    /// The reading and the writing end, -1 for none.
    static std::array<int, 2> makeStdout(Stdout kind) {
        std::array<int, 2> ends = {-1, -1};
        int result = 0;
        if (kind == Stdout::terminal)
            result = openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr);
        else if (kind == Stdout::fullDevice)
            result = ends[1] = open("/dev/full", O_WRONLY | O_CLOEXEC);
        else if (kind != Stdout::closed)
            result = pipe2(ends.data(), O_CLOEXEC);
        if (result < 0)
            throw std::runtime_error("no standard output for the program");
        if (kind == Stdout::pipeWithoutReader) {
            close(ends[0]);
            ends[0] = -1;
        }
        return ends;
    }

    [[noreturn]] static void become(const Arguments &arguments, Stdout kind, const Environment &environment, int out,
                                    int err) {
        if (kind == Stdout::closed)
            close(STDOUT_FILENO);
        else
            dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);

        std::vector<std::string> words = splitAt(DCACHE_EMULATOR, ' ');
        words.push_back(ownDirectory() + "/" + DCACHE_PROGRAM);
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char *> pointers;
        pointers.reserve(words.size() + 1);
        for (std::string &word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        // The emulator is looked for on the PATH of this process, whatever the program's own is to be.
        std::vector<std::string> variables = variablesWith(environment);
        std::vector<char *> variablePointers;
        variablePointers.reserve(variables.size() + 1);
        for (std::string &variable : variables)
            variablePointers.push_back(variable.data());
        variablePointers.push_back(nullptr);
        execvpe(pointers[0], pointers.data(), variablePointers.data());
        _exit(127);
    }

    /// This process's environment with some variables changed or added.
    static std::vector<std::string> variablesWith(const Environment &changes) {
        std::vector<std::string> variables;
        for (const auto &[name, value] : changes)
            variables.push_back(name + "=" + value);
        for (char **variable = environ; *variable != nullptr; ++variable) {
            const std::string text = *variable;
            const bool isChanged = std::any_of(changes.begin(), changes.end(), [&text](const auto &change) {
                return text.rfind(change.first + "=", 0) == 0;
            });
            if (!isChanged)
                variables.push_back(text);
        }
        return variables;
    }

    static void closeStream(Stream &stream) {
        if (stream.descriptor >= 0)
            close(stream.descriptor);
        stream.descriptor = -1;
    }

    static void readFrom(Stream &stream) {
        std::array<char, 4096> buffer = {};
        const ssize_t count = read(stream.descriptor, buffer.data(), buffer.size());
        if (count > 0)
            stream.text.append(buffer.data(), static_cast<size_t>(count));
        else if (count == 0 || errno != EINTR) // a terminal's end is an error, EIO
            closeStream(stream);
    }

    bool waitFor(const Stream &stream, const std::string &text) {
        while (stream.text.find(text) == std::string::npos)
            if (!readMore())
                return false;
        return true;
    }

    /// Waits for more; false when both streams have ended. Throws when the minute is over.
    bool readMore() {
        std::array<pollfd, 2> watched = {{{_out.descriptor, POLLIN, 0}, {_err.descriptor, POLLIN, 0}}};
        if (_out.descriptor < 0 && _err.descriptor < 0)
            return false;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(_latest - Clock::now()).count();
        if (left <= 0 || poll(watched.data(), watched.size(), static_cast<int>(left)) == 0)
            throw std::runtime_error("dcache did not end in time; it said: " + _out.text + _err.text);
        if (watched[0].revents != 0)
            readFrom(_out);
        if (watched[1].revents != 0)
            readFrom(_err);
        return true;
    }

    using Clock = std::chrono::steady_clock;

    const Clock::time_point _latest = Clock::now() + std::chrono::minutes(1);
    pid_t _pid = -1;
    Stream _out;
    Stream _err;
};

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

/// A whole run.
inline Outcome runDcache(const Arguments &arguments, Stdout kind = Stdout::pipe, const Environment &environment = {}) {
    DcacheRun run(arguments, kind, environment);
    const int exitCode = run.wait();
    return {exitCode, run.out(), run.err()};
}

/// The output of a watch with the time that begins a line, "HH:MM:SS.mmm", replaced by "TIME".
inline std::string withoutTimes(const std::string &text) {
    static const std::string shape = "dd:dd:dd.ddd";
    const auto fits = [](char c, char form) { return form == 'd' ? c >= '0' && c <= '9' : c == form; };
    std::string result;
    for (const std::string &line : lines(text)) {
        const bool timed = line.size() >= shape.size() && std::equal(shape.begin(), shape.end(), line.begin(),
                                                                     [&](char form, char c) { return fits(c, form); });
        result += (timed ? "TIME" + line.substr(shape.size()) : line) + '\n';
    }
    return result;
}

} // namespace support

#endif // TESTS_TOOLS_RUNDCACHE_H
