#include "foundation/cim_log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <syslog.h>
#include <unistd.h>

namespace {

constexpr const char *kMainFile = "/tmp/cim.out";
constexpr const char *kCriticalFile = "/tmp/cim.crit.out";
constexpr int kGenerations = 5;
constexpr int kLinesPerFile = 1000;
constexpr std::size_t kLineSize = 2056;
constexpr unsigned int kLevelBits = 0xF;

// State of the one log, guarded by log_mutex. None of it has a destructor: threads log while the process exits.
pthread_mutex_t log_mutex = PTHREAD_MUTEX_INITIALIZER;
int main_fd = -1;
int critical_fd = -1;
int line_counter = 0;

class LogLock {
public:
    LogLock() { pthread_mutex_lock(&log_mutex); }
    ~LogLock() { pthread_mutex_unlock(&log_mutex); }
    LogLock(const LogLock &) = delete;
    LogLock &operator=(const LogLock &) = delete;
};

/// The caller's errno, so that logging does not change it and "%m" in a message means what the caller meant.
class ErrnoGuard {
public:
    ErrnoGuard() : _saved(errno) {}
    ~ErrnoGuard() { restore(); }
    ErrnoGuard(const ErrnoGuard &) = delete;
    ErrnoGuard &operator=(const ErrnoGuard &) = delete;

    void restore() const { errno = _saved; }

private:
    int _saved;
};

/// The files get the mode they are opened with, whatever mask the host process has set.
class NoUmask {
public:
    NoUmask() : _saved(umask(0)) {}
    ~NoUmask() { umask(_saved); }
    NoUmask(const NoUmask &) = delete;
    NoUmask &operator=(const NoUmask &) = delete;

private:
    mode_t _saved;
};

/// One line under construction, in a buffer of fixed size. What does not fit is dropped.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): 2 KiB a line that nobody reads beyond its length
class Line {
public:
    char *place() { return _text.data() + _length; }
    std::size_t room() const { return kLineSize - _length; }
    /// Takes what a formatting function reported: the length it wanted, or a negative number.
    void advance(int reported) {
        if (reported > 0)
            _length += std::min(static_cast<std::size_t>(reported), room());
    }
    /// A line that filled the buffer lost its end; it leaves without a newline so that a reader can see that.
    void finish() {
        if (_length >= kLineSize) {
            _length = kLineSize - 1;
            _text[_length] = '\0';
        }
    }
    void writeTo(int fd) const {
        const ssize_t ignored = write(fd, _text.data(), _length);
        static_cast<void>(ignored);
    }

private:
    std::array<char, kLineSize> _text;
    std::size_t _length = 0;
};

/// The time is converted for every line, so that a change of time zone, or a conversion that fails, is seen at once.
void startLine(Line &line) {
    struct timeval now = {};
    gettimeofday(&now, nullptr);
    const time_t second = now.tv_sec;
    const struct tm *local = localtime(&second); // NOLINT(concurrency-mt-unsafe): under log_mutex, and read at once
    if (local != nullptr) {
        line.advance(static_cast<int>(strftime(line.place(), line.room(), "%m/%d %H:%M:%S", local)));
        line.advance(snprintf(line.place(), line.room(), ".%.03ld ", static_cast<long>(now.tv_usec) / 1000));
    }
    line.advance(snprintf(line.place(), line.room(), "%d/%d ", static_cast<int>(getpid()),
                          static_cast<int>(syscall(SYS_gettid))));
}

int openLogFile(const char *name) {
    const int fd = open(name, O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0666);
    if (fd == -1)
        return fd;
    const int flags = fcntl(fd, F_GETFD);
    const bool closedOnExec = flags != -1 && ((flags & FD_CLOEXEC) != 0 || fcntl(fd, F_SETFD, flags | FD_CLOEXEC) !=
                                                                               -1); // NOLINT(hicpp-signed-bitwise)
    if (!closedOnExec)
        syslog(LOG_INFO, "fcntl failed, errno = %d\n", errno);
    return fd;
}

void openLogFiles() {
    const NoUmask guard;
    if (main_fd == -1)
        main_fd = openLogFile(kMainFile);
    if (critical_fd == -1)
        critical_fd = openLogFile(kCriticalFile);
}

void closeLogFile(int &fd) {
    if (fd >= 0)
        close(fd);
    fd = -1;
}

/// Moves the main file to generation 1 and the older ones up by one, the oldest out. The critical file has no
/// generations: opening it empties it.
void rotate() {
    using Name = std::array<char, 100>;
    const auto generation = [](int number) {
        Name name{};
        snprintf(name.data(), name.size(), "%s.%d", kMainFile, number);
        return name;
    };
    closeLogFile(main_fd);
    closeLogFile(critical_fd);
    unlink(generation(kGenerations).data());
    for (int number = kGenerations - 1; number >= 1; --number)
        rename(generation(number).data(), generation(number + 1).data());
    rename(kMainFile, generation(1).data());
    openLogFiles();
}

void logWrite(unsigned int level, const char *format, va_list args) {
    if ((level & kLevelBits) == 0)
        return;
    const ErrnoGuard callersErrno;
    const LogLock lock;

    Line line;
    startLine(line);
    callersErrno.restore();
    line.advance(vsnprintf(line.place(), line.room(), format != nullptr ? format : "", args));
    line.finish();

    if (main_fd == -1)
        openLogFiles();
    if ((level & CIM_LOG_CRIT) != 0 && critical_fd != -1)
        line.writeTo(critical_fd);
    if (line_counter == kLinesPerFile) {
        line_counter = 0;
        rotate();
    } else {
        ++line_counter;
    }
    if (main_fd != -1)
        line.writeTo(main_fd);
}

} // namespace

extern "C" void cim_log(unsigned int level, const char *format, ...) {
    va_list args;
    va_start(args, format);
    logWrite(level, format, args);
    va_end(args);
}

extern "C" void DataCacheLogger(const char *format, ...) {
    va_list args;
    va_start(args, format);
    logWrite(CIM_LOG_CLIENT, format, args);
    va_end(args);
}
