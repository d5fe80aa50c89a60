#include <cstdarg>
#include <cstdio>

#include "platform/hardware/HardwareVersion.h"
#include "platform/logging/Logging.h"

// The three functions that the library expects of the process.
bool loggingOnAppUni(const char* /*component*/, int level) noexcept {
    return level <= 2;  // errors
}
void logAppUni(const char* component, const char* /*file*/, int level, int /*line*/, const char* format,
               ...) noexcept {
    if (loggingOnAppUni(component, level)) {
        va_list arguments;
        va_start(arguments, format);
        std::fprintf(stderr, "%s: ", component);
        std::vfprintf(stderr, format, arguments);
        std::fputc('\n', stderr);
        va_end(arguments);
    }
}
int HardwareVersion::getHWSubPlatformVariant() noexcept {
    return 0;
}
