/*
 * Writing TOML: tables and their lines, one after another.
 *
 * For one thread at a time.
 */
#ifndef SIM_SCENARIO_TOMLTEXT_H
#define SIM_SCENARIO_TOMLTEXT_H

#include <cstdint>
#include <string>
#include <vector>

namespace sim {

/// A text as a value: in quotes, or as the table of its bytes when it is not plain ASCII.
std::string tomlValue(const std::string &text);

/// Tables of one kind. A table begins with its first line.
class TomlText {
public:
    /// The lines that follow stand under this header, which is written if there are any.
    void under(const std::string &header);
    /// Whether there are lines under the last header.
    bool hasLines() const { return _pending.empty(); }

    void line(const std::string &name, const std::string &text) { plain(name, tomlValue(text)); }
    void line(const std::string &name, int64_t number) { plain(name, std::to_string(number)); }
    void flag(const std::string &name, bool value) { plain(name, value ? "true" : "false"); }
    void list(const std::string &name, const std::vector<std::string> &texts);
    /// A value that is written already.
    void plain(const std::string &name, const std::string &value);
    void comment(const std::string &text);

    const std::string &text() const { return _text; }

private:
    std::string _text;
    std::string _pending; ///< the header that is not written yet
};

} // namespace sim

#endif // SIM_SCENARIO_TOMLTEXT_H
