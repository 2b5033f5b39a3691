/*
 * The library's one exception class: where a failure was found, what it is, and how loudly it is to be logged.
 *
 * It is thrown and caught inside the commit of the zoning database and never leaves the library. It owns no memory, so
 * throwing it needs none beyond the exception object itself; nothing about it can fail.
 *
 * Thread-safety: a plain value.
 */
#ifndef FOUNDATION_MERO_EXCEPT_H
#define FOUNDATION_MERO_EXCEPT_H

#include <cstdint>

#include "foundation/Export.h"

/// How a failure is logged. Any other value counts as EXCEPT_INFO.
enum except_enum : int32_t { // NOLINT(performance-enum-size): clients know it by this size
    EXCEPT_CRIT = 0,         ///< in the main and the critical log file
    EXCEPT_INFO = 1          ///< in the main log file
};

class DATACACHE_EXPORT MERO_Except {
public:
    /// Keeps what it is given; `sourceFile` and `sourceFunction` are string literals. The message is formatted at once
    /// and cut to 2023 characters; a null format makes an empty one.
    MERO_Except(const char *sourceFile, const char *sourceFunction, int sourceLine, except_enum severity,
                const char *format, ...) __attribute__((format(printf, 6, 7)));

    const char *file;
    const char *function;
    int line;
    char message[2024];
    except_enum kind;
};

#endif // FOUNDATION_MERO_EXCEPT_H
