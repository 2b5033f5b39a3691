#include "tests/support/PrivateTmp.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <set>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace support {
namespace {

void check(int result, const char *what) {
    if (result == -1)
        throw std::system_error(errno, std::generic_category(), what);
}

void writeFile(const char *name, const std::string &text) {
    std::ofstream(name) << text;
}

void unshareMounts() {
    if (geteuid() == 0) {
        check(unshare(CLONE_NEWNS), "unshare the mounts");
        return;
    }
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    check(unshare(CLONE_NEWUSER | CLONE_NEWNS), "unshare the mounts as a user");
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + user + " 1");
    writeFile("/proc/self/gid_map", "0 " + group + " 1");
}

/// The first folder below /tmp on the way to `path`, empty if it does not lie in /tmp.
std::string folderInTmp(const std::filesystem::path &path) {
    auto part = path.begin();
    if (part == path.end() || ++part == path.end() || *part != "tmp" || ++part == path.end())
        return {};
    return "/tmp/" + part->string();
}

} // namespace

void enterPrivateTmp() {
    std::set<std::string> kept = {folderInTmp(std::filesystem::read_symlink("/proc/self/exe")),
                                  folderInTmp(std::filesystem::current_path())};
    kept.erase("");

    unshareMounts();
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "make the mounts private");

    std::vector<std::pair<std::string, int>> open;
    for (const std::string &folder : kept) {
        const int fd = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        check(fd, folder.c_str());
        open.emplace_back(folder, fd);
    }
    const std::filesystem::path workingDirectory = std::filesystem::current_path();
    check(mount("tmpfs", "/tmp", "tmpfs", MS_NOSUID | MS_NODEV, "mode=1777"), "mount a private /tmp");
    for (const auto &[folder, fd] : open) {
        check(mkdir(folder.c_str(), 0755), folder.c_str());
        const std::string source = "/proc/self/fd/" + std::to_string(fd);
        check(mount(source.c_str(), folder.c_str(), nullptr, MS_BIND | MS_REC, nullptr), folder.c_str());
        close(fd);
    }
    check(chdir(workingDirectory.c_str()), "return to the working directory");
}

} // namespace support
