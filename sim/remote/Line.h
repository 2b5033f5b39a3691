/*
 * A line to a server: whole messages go through it, until one end is gone. Calls block.
 *
 * Nothing here refers to an object that ends with the process: threads may be on the line then.
 *
 * Thread-safe; for one reader at a time.
 */
#ifndef SIM_REMOTE_LINE_H
#define SIM_REMOTE_LINE_H

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "sim/wire/Frame.h"

namespace sim {

class Line {
public:
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;
    ~Line();

    /// Null when nobody is there.
    static std::shared_ptr<Line> open(const std::string &socketPath);

    /// False when the line is dead.
    bool send(const Bytes &frame);
    /// The next message; none when the line is dead, or what came is no message.
    std::optional<Json> receive();
    /// Nothing goes through any more; who waits for a message gets none.
    void close();

private:
    explicit Line(int descriptor) : _descriptor(descriptor) {}
    bool read(uint8_t *bytes, size_t size) const;

    std::mutex _sending;
    const int _descriptor;
};

} // namespace sim

#endif // SIM_REMOTE_LINE_H
