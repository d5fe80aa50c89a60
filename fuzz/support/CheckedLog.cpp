#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

#include "fuzz/support/Property.h"
#include "host/log/LogText.h"
#include "platform/logging/Logging.h"

// The logger of the fuzz targets. Every level is on, so that all log texts are built. Each is escaped as the
// program's log does it, and must then be one line of valid UTF-8.

bool loggingOnAppUni(const char* /*component*/, int /*level*/) noexcept {
    return true;
}

void logAppUni(const char* /*component*/, const char* /*sourceFile*/, int /*level*/, int /*line*/,
               const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    fuzz::require(length >= 0, "a log text cannot be formatted");
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    fuzz::requireOneLine(host::escapedLogText(text), "a log text is not one line of UTF-8");
}
