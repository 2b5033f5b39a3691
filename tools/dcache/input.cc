#include "tools/dcache/input.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <system_error>
#include <unistd.h>

#include "tools/dcache/failure.h"
#include "tools/dcache/words.h"

namespace dcache {
namespace {

constexpr size_t kLargest = size_t{16} << 20; // a database at the limits of a switch takes one

/// A descriptor that is closed in the end, unless it is standard input.
class Descriptor {
public:
    explicit Descriptor(const std::string &file)
        : _number(file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Descriptor() {
        if (_number > STDIN_FILENO)
            close(_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const { return _number; }

private:
    int _number;
};

[[noreturn]] void cannotRead(const std::string &file, const std::string &why) {
    throw Failure(fmt::format("cannot read {}: {}", file == "-" ? "standard input" : printable(file), why));
}

} // namespace

std::string readInput(const std::string &file) {
    const Descriptor descriptor(file);
    if (descriptor.number() < 0)
        cannotRead(file, std::generic_category().message(errno));
    std::string text;
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(descriptor.number(), buffer.data(), buffer.size());
        if (count == 0)
            return text;
        if (count < 0 && errno != EINTR)
            cannotRead(file, std::generic_category().message(errno));
        if (count > 0)
            text.append(buffer.data(), static_cast<size_t>(count));
        if (text.size() > kLargest)
            cannotRead(file, "it is too large for a script");
    }
}

} // namespace dcache
