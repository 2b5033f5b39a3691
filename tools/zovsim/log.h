/*
 * What a program that goes on by itself has to tell meanwhile: on stdout what happens, on stderr what goes wrong. When
 * nobody reads stdout any more, the program goes on all the same, and keeps it to itself.
 *
 * Thread-safe.
 */
#ifndef TOOLS_ZOVSIM_LOG_H
#define TOOLS_ZOVSIM_LOG_H

#include <mutex>
#include <string>

#include "tools/dcache/output.h"

namespace zovsim {

class Log {
public:
    /// A quiet one tells what goes wrong and nothing else.
    Log(dcache::Output &output, bool quiet) : _output(output), _quiet(quiet) {}

    /// Text of one line or several, without a newline after the last.
    void tell(const std::string &text);
    void complain(const std::string &text);

private:
    dcache::Output &_output;
    std::mutex _mutex;
    bool _quiet;
};

} // namespace zovsim

#endif // TOOLS_ZOVSIM_LOG_H
