#include "sim/serve/SocketPlace.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace sim {

namespace {

constexpr const char *kName = "zovsim.socket";

[[noreturn]] void failed(const std::string &what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

bool isMyDirectory(const std::string &path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

bool isNobodyElses(const std::string &path) {
    struct stat status = {};
    return isMyDirectory(path) && lstat(path.c_str(), &status) == 0 && (status.st_mode & 0077) == 0;
}

/// A socket, or nothing, is at the path: what is something else stays.
void removeSocket(const std::string &path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) == -1)
        return;
    if (!S_ISSOCK(status.st_mode))
        throw std::runtime_error(path + ": there is something that is no socket");
    if (unlink(path.c_str()) == -1)
        failed(path, errno);
}

} // namespace

std::string usualSocketPath() {
    const char *runTime = std::getenv("XDG_RUNTIME_DIR");
    if (runTime && *runTime == '/')
        return std::string(runTime) + "/" + kName;
    const std::string user = std::to_string(geteuid());
    const std::string systems = "/run/user/" + user;
    if (isMyDirectory(systems))
        return systems + "/" + kName;
    const std::string own = "/tmp/zovsim-" + user;
    if (mkdir(own.c_str(), 0700) == -1 && errno != EEXIST)
        failed(own, errno);
    if (!isNobodyElses(own))
        throw std::runtime_error(own + ": not a directory of yours alone");
    return own + "/" + kName;
}

void keepFromPrograms(int descriptor) {
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

SocketPlace::SocketPlace(const std::string &path) : _path(path) {
    if (path.size() >= sizeof sockaddr_un::sun_path)
        throw std::runtime_error(path + ": the path of a socket has at most " +
                                 std::to_string(sizeof sockaddr_un::sun_path - 1) + " characters");
    const std::string lock = path + ".lock";
    _lock = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (_lock == -1)
        failed(lock, errno);
    try {
        if (flock(_lock, LOCK_EX | LOCK_NB) == -1)
            throw std::runtime_error(path + ": a switch is served there already");
        removeSocket(path); // its server is dead: nobody holds the place
    } catch (...) {
        ::close(_lock);
        throw;
    }
}

SocketPlace::~SocketPlace() {
    unlink(_path.c_str());
    ::close(_lock);
}

/// Nobody can connect before it listens, and by then only the user may.
SocketPlace::Acceptor SocketPlace::listen(asio::io_context &io) const {
    try {
        Acceptor acceptor(io);
        acceptor.open();
        keepFromPrograms(acceptor.native_handle());
        acceptor.bind(asio::local::stream_protocol::endpoint(_path));
        if (chmod(_path.c_str(), 0600) == -1)
            failed(_path, errno);
        acceptor.listen();
        return acceptor;
    } catch (const asio::system_error &error) {
        throw std::runtime_error(_path + ": " + error.code().message());
    }
}

} // namespace sim
