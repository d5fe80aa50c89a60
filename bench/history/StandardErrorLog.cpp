// The log of the benchmarks: every text goes to standard error.

#include <cstdarg>
#include <cstdio>

#include "platform/logging/Logging.h"

void logAppUni(const char* component, const char* /*sourceFile*/, int /*level*/, int /*line*/,
               const char* format, ...) noexcept {
    std::fprintf(stderr, "%s: ", component);
    std::va_list values;
    va_start(values, format);
    std::vfprintf(stderr, format, values);
    va_end(values);
    std::fputc('\n', stderr);
}
