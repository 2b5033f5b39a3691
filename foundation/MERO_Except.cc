#include "foundation/MERO_Except.h"

#include <cstdarg>
#include <cstdio>

MERO_Except::MERO_Except(const char *sourceFile, const char *sourceFunction, int sourceLine, except_enum severity,
                         const char *format, ...)
    : file(sourceFile), function(sourceFunction), line(sourceLine), message(), kind(severity) {
    if (format == nullptr)
        return;
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof(message), format, arguments);
    va_end(arguments);
}
