#include "tests/scenario/Process.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace scenario {

namespace {

constexpr int kFailed = 3;

int check(int result, const char *what) {
    if (result == -1)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

void writeAll(int fd, const std::string &text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t written = write(fd, text.data() + done, text.size() - done);
        if (written == -1 && errno != EINTR)
            return;
        done += static_cast<std::size_t>(written > 0 ? written : 0);
    }
}

std::string readAll(int fd) {
    std::string text;
    std::array<char, 65536> piece{};
    for (ssize_t size = 0; (size = read(fd, piece.data(), piece.size())) != 0;) {
        if (size > 0)
            text.append(piece.data(), static_cast<std::size_t>(size));
        else if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "read what the process says");
    }
    return text;
}

/// Ends the process in the way that lets sanitizers have their say.
[[noreturn]] void workAndExit(const std::function<std::string()> &work, int fd) {
    int status = 0;
    try {
        writeAll(fd, work());
    } catch (const std::exception &error) {
        writeAll(fd, error.what());
        status = kFailed;
    }
    close(fd);
    std::exit(status); // NOLINT(concurrency-mt-unsafe): this thread is the last one
}

} // namespace

std::string inProcess(const std::function<std::string()> &work) {
    std::array<int, 2> ends{};
    check(pipe(ends.data()), "make a pipe");
    std::fflush(nullptr);
    const pid_t child = check(fork(), "start a process");
    if (child == 0) {
        close(ends[0]);
        workAndExit(work, ends[1]);
    }
    close(ends[1]);
    std::string text = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    check(waitpid(child, &status, 0), "wait for the process");
    if (WIFSIGNALED(status))
        throw std::runtime_error("the process was ended by signal " + std::to_string(WTERMSIG(status)));
    if (WEXITSTATUS(status) != 0)
        throw std::runtime_error("the process failed with " + std::to_string(WEXITSTATUS(status)) + ": " + text);
    return text;
}

} // namespace scenario
