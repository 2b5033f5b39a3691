/*
 * Text that is put together line by line. Plain data.
 */
#ifndef SIM_VERBS_LINES_H
#define SIM_VERBS_LINES_H

#include <string>

namespace sim::verbs {

class Lines {
public:
    void add(const std::string &line) {
        if (!_isEmpty)
            _text += '\n';
        _text += line;
        _isEmpty = false;
    }
    /// Without a newline after the last line.
    const std::string &text() const { return _text; }

private:
    std::string _text;
    bool _isEmpty = true;
};

} // namespace sim::verbs

#endif // SIM_VERBS_LINES_H
