/*
 * Work on the configuration of the switch, in its admin mode.
 *
 * The connection is there before. Admin mode is taken for each piece of work and given back at its end, however it ends;
 * when the switch does not take it back, that is told, and it ends with the connection.
 *
 * Thread-safety: one thread does the work. Another one may ask it to stop.
 * Errors: Failure, or Stopped with an exit code of its own, in words.
 */
#ifndef TOOLS_DCACHE_CONFIG_SESSION_H
#define TOOLS_DCACHE_CONFIG_SESSION_H

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/dcache/config/edit.h"

namespace dcache {

/// The value of a key now; none when the switch does not tell.
std::optional<std::string> readKey(const std::string &key);

/// What an edit has made of a key.
struct ConfigChange {
    std::string key;
    std::optional<std::string> before;
    std::optional<std::string> now;
};

class ConfigSession {
public:
    /// `tell` is told, in words, what goes wrong besides.
    explicit ConfigSession(std::function<void(const std::string &words)> tell) : _tell(std::move(tell)) {}

    /// All of the edits or, when the switch refuses one, none; then the message tells what is kept nevertheless.
    std::vector<ConfigChange> edit(const std::vector<ConfigEdit> &edits);
    void backUp();
    void restore();

    /// What is not on its way yet is not begun any more.
    void stop() { _stop = true; }

    /// What cannot be taken back is on its way: stopping comes too late.
    bool isFinal() const { return _final; }

private:
    std::string _stage(const std::vector<ConfigEdit> &edits) const;
    void _run(int (*command)(), const char *what);
    void _checkStop() const;

    const std::function<void(const std::string &words)> _tell;
    std::atomic<bool> _stop{false};
    std::atomic<bool> _final{false};
};

} // namespace dcache

#endif // TOOLS_DCACHE_CONFIG_SESSION_H
