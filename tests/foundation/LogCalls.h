/*
 * The system calls of the log, as they come, and made to fail where a test asks for it.
 *
 * This header DEFINES open(), write() and the others below, so include it in the one source file of a test program that
 * needs it. Calls that do not concern the log's files pass through. For one thread.
 */
#ifndef TESTS_FOUNDATION_LOGCALLS_H
#define TESTS_FOUNDATION_LOGCALLS_H

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace log_calls {

/// What the next calls do instead of what they should.
struct Faults {
    int failGetFlags = 0;        // so many fcntl(F_GETFD)
    int failSetFlags = 0;        // so many fcntl(F_SETFD)
    bool isClosedOnExec = false; // F_GETFD tells so
    int otherFlags = 0;          // F_GETFD tells these besides, and F_SETFD is to keep them
    bool failWrites = false;
    bool shortWrites = false; // half of what was asked for
    bool failRenames = false;
    bool failUnlinks = false;
    bool failCloses = false; // after closing, as Linux does
};

inline Faults faults;
inline std::vector<std::string> calls;          // "open cim.out", ... in order
inline std::vector<std::string> system_log;     // "priority: text"
inline std::array<std::string, 256> open_files; // by descriptor: "cim.out", ...
inline std::string last_written;

inline std::vector<std::string> taken() {
    std::vector<std::string> result;
    result.swap(calls);
    return result;
}

/// How often a call was made.
inline int count(const std::vector<std::string> &in, const std::string &call) {
    int found = 0;
    for (const std::string &one : in)
        found += one == call ? 1 : 0;
    return found;
}

/// "cim.out" and its like, empty for files that are not the log's.
inline std::string nameOf(const char *path) {
    return std::strncmp(path, "/tmp/cim.", 9) == 0 ? path + 5 : "";
}

inline std::string nameOf(int fd) {
    return fd >= 0 && static_cast<size_t>(fd) < open_files.size() ? open_files[static_cast<size_t>(fd)] : "";
}

/// The descriptor of an open log file, -1 if it is not open.
inline int descriptorOf(const std::string &name) {
    for (size_t fd = 0; fd < open_files.size(); ++fd) {
        if (open_files[fd] == name)
            return static_cast<int>(fd);
    }
    return -1;
}

template <class Function> Function next(const char *name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

inline int failed(int error) {
    errno = error;
    return -1;
}

} // namespace log_calls

// NOLINTBEGIN(misc-definitions-in-headers): see above
extern "C" {

int open(const char *file, int oflag, ...) {
    va_list args;
    va_start(args, oflag);
    const mode_t mode = (oflag & O_CREAT) != 0 ? va_arg(args, mode_t) : 0;
    va_end(args);
    static const auto real = log_calls::next<int (*)(const char *, int, ...)>("open");
    const int fd = real(file, oflag, mode);
    const std::string name = log_calls::nameOf(file);
    if (!name.empty()) {
        const bool asItShould = oflag == (O_RDWR | O_CREAT | O_TRUNC | O_APPEND) && mode == 0666;
        log_calls::calls.push_back((asItShould ? "open " : "open wrongly ") + name);
        if (fd >= 0)
            log_calls::open_files.at(static_cast<size_t>(fd)) = name;
    }
    return fd;
}

int close(int fd) {
    static const auto real = log_calls::next<int (*)(int)>("close");
    const std::string name = log_calls::nameOf(fd);
    if (!name.empty()) {
        log_calls::calls.push_back("close " + name);
        log_calls::open_files[static_cast<size_t>(fd)].clear();
    }
    const int result = real(fd);
    return !name.empty() && log_calls::faults.failCloses ? log_calls::failed(EIO) : result;
}

ssize_t write(int fd, const void *buf, size_t n) {
    static const auto real = log_calls::next<ssize_t (*)(int, const void *, size_t)>("write");
    const std::string name = log_calls::nameOf(fd);
    if (name.empty())
        return real(fd, buf, n);
    log_calls::calls.push_back("write " + name);
    log_calls::last_written.assign(static_cast<const char *>(buf), n);
    if (log_calls::faults.failWrites)
        return log_calls::failed(ENOSPC);
    return real(fd, buf, log_calls::faults.shortWrites ? n / 2 : n);
}

int rename(const char *_old, const char *_new) noexcept {
    static const auto real = log_calls::next<int (*)(const char *, const char *)>("rename");
    const std::string name = log_calls::nameOf(_old);
    if (!name.empty())
        log_calls::calls.push_back("rename " + name + " " + log_calls::nameOf(_new));
    return !name.empty() && log_calls::faults.failRenames ? log_calls::failed(EACCES) : real(_old, _new);
}

int unlink(const char *name) noexcept {
    static const auto real = log_calls::next<int (*)(const char *)>("unlink");
    const std::string log = log_calls::nameOf(name);
    if (!log.empty())
        log_calls::calls.push_back("unlink " + log);
    return !log.empty() && log_calls::faults.failUnlinks ? log_calls::failed(EACCES) : real(name);
}

mode_t umask(mode_t mask) noexcept {
    static const auto real = log_calls::next<mode_t (*)(mode_t)>("umask");
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "umask %03o", mask);
    log_calls::calls.emplace_back(text.data());
    return real(mask);
}

int fcntl(int fd, int cmd, ...) {
    va_list args;
    va_start(args, cmd);
    void *argument = va_arg(args, void *);
    va_end(args);
    static const auto real = log_calls::next<int (*)(int, int, ...)>("fcntl");
    const std::string name = log_calls::nameOf(fd);
    if (name.empty())
        return real(fd, cmd, argument);
    if (cmd == F_GETFD) {
        log_calls::calls.push_back("getfd " + name);
        if (log_calls::faults.failGetFlags > 0 && log_calls::faults.failGetFlags-- > 0)
            return log_calls::failed(EBADF);
        return (log_calls::faults.isClosedOnExec ? FD_CLOEXEC : real(fd, cmd, argument)) | log_calls::faults.otherFlags;
    }
    const bool asItShould = cmd == F_SETFD && static_cast<int>(reinterpret_cast<intptr_t>(argument)) ==
                                                  (FD_CLOEXEC | log_calls::faults.otherFlags);
    log_calls::calls.push_back((asItShould ? "setfd " : "fcntl wrongly ") + name);
    if (log_calls::faults.failSetFlags > 0 && log_calls::faults.failSetFlags-- > 0)
        return log_calls::failed(EINVAL);
    return real(fd, cmd, argument);
}

void syslog(int pri, const char *fmt, ...) {
    va_list args;
    va_start(args, fmt);
    std::array<char, 256> text{};
    std::vsnprintf(text.data(), text.size(), fmt, args);
    va_end(args);
    log_calls::system_log.push_back(std::to_string(pri) + ": " + text.data());
}

} // extern "C"
// NOLINTEND(misc-definitions-in-headers)

#endif // TESTS_FOUNDATION_LOGCALLS_H
