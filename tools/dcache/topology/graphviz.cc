#include "tools/dcache/topology/graphviz.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr int kNotFound = 127; // how a spawned process ends when there was no program to become, as a shell has it too

struct Closer {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
/// A file without a name, gone when it is closed. With files rather than pipes neither side ever waits for the other.
using Scratch = std::unique_ptr<std::FILE, Closer>;

[[noreturn]] void giveUp(const char *what, int error) {
    throw Failure(fmt::format("{}: {}", what, std::generic_category().message(error)));
}

Scratch makeScratch(const std::string &content) {
    Scratch file(std::tmpfile());
    if (file == nullptr)
        giveUp("no temporary file for the picture", errno);
    // The program must not inherit it but as what it is given.
    fcntl(fileno(file.get()), F_SETFD, FD_CLOEXEC);
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() || std::fflush(file.get()) != 0)
        giveUp("the temporary file for the picture cannot be written", errno);
    std::rewind(file.get());
    return file;
}

std::string contentOf(const Scratch &file) {
    std::string content;
    std::array<char, 4096> buffer{};
    std::rewind(file.get());
    for (size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), file.get())) != 0;)
        content.append(buffer.data(), count);
    return content;
}

/// How a program is started: what its standard files are, and signals as they come by default.
class SpawnSettings {
public:
    SpawnSettings(const Scratch &in, const Scratch &out, const Scratch &err) {
        posix_spawn_file_actions_init(&_files);
        posix_spawn_file_actions_adddup2(&_files, fileno(in.get()), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&_files, fileno(out.get()), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&_files, fileno(err.get()), STDERR_FILENO);
        sigset_t pipe;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE); // ignored by the tool, which a program would inherit
        posix_spawnattr_init(&_attributes);
        posix_spawnattr_setsigdefault(&_attributes, &pipe);
        posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings() {
        posix_spawnattr_destroy(&_attributes);
        posix_spawn_file_actions_destroy(&_files);
    }
    SpawnSettings(const SpawnSettings &) = delete;
    SpawnSettings &operator=(const SpawnSettings &) = delete;

    const posix_spawn_file_actions_t *files() const { return &_files; }
    const posix_spawnattr_t *attributes() const { return &_attributes; }

private:
    posix_spawn_file_actions_t _files{};
    posix_spawnattr_t _attributes{};
};

/// Runs `dot -Tsvg` to its end and returns its wait status.
int run(const SpawnSettings &settings) {
    std::array<std::string, 2> words = {"dot", "-Tsvg"};
    std::array<char *, 3> arguments = {words[0].data(), words[1].data(), nullptr};
    pid_t process = -1;
    const int error =
        posix_spawnp(&process, arguments[0], settings.files(), settings.attributes(), arguments.data(), environ);
    if (error == ENOENT)
        return kNotFound << 8; // as if it had been noticed a moment later
    if (error != 0)
        giveUp("Graphviz's program \"dot\" cannot be run", error);
    int status = 0;
    while (waitpid(process, &status, 0) < 0)
        if (errno != EINTR)
            giveUp("Graphviz's program \"dot\" was lost", errno);
    return status;
}

std::string firstLine(const std::string &text) {
    return printable(text.substr(0, text.find('\n')));
}

} // namespace

std::string svgFrom(const std::string &dot) {
    const Scratch in = makeScratch(dot);
    const Scratch out = makeScratch("");
    const Scratch err = makeScratch("");
    const int status = run(SpawnSettings(in, out, err));
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotFound)
        throw Failure("an SVG picture takes Graphviz, whose program \"dot\" is not on the PATH: install the package "
                      "graphviz, or ask for --format dot");
    if (WIFSIGNALED(status))
        throw Failure(fmt::format("Graphviz's program \"dot\" was ended by signal {}", WTERMSIG(status)));
    if (WEXITSTATUS(status) != 0) {
        const std::string reason = firstLine(contentOf(err));
        throw Failure(fmt::format("Graphviz's program \"dot\" failed with status {}{}{}", WEXITSTATUS(status),
                                  reason.empty() ? "" : ": ", reason));
    }
    std::string picture = contentOf(out);
    if (picture.empty())
        throw Failure("Graphviz's program \"dot\" drew nothing");
    return picture;
}

} // namespace dcache
