/*
 * Standard output, and what is known about it. Unbuffered: what was printed is out.
 *
 * Thread-safety: none of its own; the journal of a watch brings the lock.
 * Errors: a write that fails throws OutputFailed.
 */
#ifndef TOOLS_DCACHE_OUTPUT_H
#define TOOLS_DCACHE_OUTPUT_H

#include <string_view>

namespace dcache {

class Output {
public:
    explicit Output(int descriptor) : _descriptor(descriptor) {}

    void print(std::string_view text);

    /// It is a terminal that shows colours, and the user has not asked for none (NO_COLOR).
    bool wantsColour() const;

    int descriptor() const { return _descriptor; }

private:
    int _descriptor;
};

/// Gives the process the three standard descriptors it was started without, so that no file opened later lands
/// on them. Writing to a standard output made this way fails.
void occupyStandardDescriptors();

} // namespace dcache

#endif // TOOLS_DCACHE_OUTPUT_H
