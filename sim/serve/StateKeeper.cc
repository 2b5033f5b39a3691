#include "sim/serve/StateKeeper.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace sim {

namespace {

[[noreturn]] void failed(const std::string &what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

/// A file of the process's, open to write.
class Output {
public:
    explicit Output(const std::string &name)
        : _name(name), _descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
        if (_descriptor == -1)
            failed(name, errno);
    }
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;
    ~Output() { ::close(_descriptor); }

    void write(const std::string &text) const {
        for (size_t done = 0; done < text.size();) {
            const ssize_t count = ::write(_descriptor, text.data() + done, text.size() - done);
            if (count == -1 && errno != EINTR)
                failed(_name, errno);
            done += count > 0 ? static_cast<size_t>(count) : 0;
        }
        if (fsync(_descriptor) == -1)
            failed(_name, errno);
    }

private:
    const std::string &_name;
    const int _descriptor;
};

/// The new name of a file is lasting only with its directory.
void syncDirectory(const std::string &file) {
    const size_t slash = file.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : file.substr(0, slash + 1);
    const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor == -1)
        failed(directory, errno);
    const int result = fsync(descriptor);
    const int error = errno;
    ::close(descriptor);
    if (result == -1 && error != EINVAL) // there are file systems that cannot
        failed(directory, error);
}

} // namespace

StateKeeper::~StateKeeper() {
    if (_lock != -1)
        ::close(_lock);
}

void StateKeeper::take() {
    const std::string lock = _file + ".lock";
    _lock = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (_lock == -1)
        failed(lock, errno);
    if (flock(_lock, LOCK_EX | LOCK_NB) == -1)
        throw std::runtime_error(_file + ": another switch keeps its state there");
}

void StateKeeper::restore() {
    if (_file.empty())
        return;
    take();
    std::ifstream input(_file, std::ios::binary);
    if (!input) {
        if (errno != ENOENT)
            failed(_file, errno);
        const std::lock_guard<std::mutex> lock(_mutex);
        _asMade = _served.savedState();
        return;
    }
    const std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
    try {
        _served.restoreState(text);
    } catch (const std::exception &error) {
        throw std::runtime_error(_file + ": " + error.what());
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    _kept = text;
}

void StateKeeper::keep() {
    keepUnlessLike(std::string());
}

void StateKeeper::keepChanges() {
    keepUnlessLike(_asMade);
}

void StateKeeper::keepUnlessLike(const std::string &before) {
    if (_file.empty())
        return;
    const std::lock_guard<std::mutex> lock(_mutex);
    try {
        std::string text = _served.savedState();
        if (text == (_kept.empty() ? before : _kept))
            return;
        replace(text);
        _kept = std::move(text);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "the simulated switch cannot keep its state: %s\n", error.what());
    }
}

void StateKeeper::replace(const std::string &text) const {
    const std::string draft = _file + ".new";
    Output(draft).write(text);
    if (std::rename(draft.c_str(), _file.c_str()) == -1)
        failed(_file, errno);
    syncDirectory(_file);
}

} // namespace sim
