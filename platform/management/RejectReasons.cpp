#include "platform/management/RejectReasons.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <vector>

void setRejectReason(rejectReasons code, RejectReason& reason, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        std::vector<char> text(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        reason.code = code;
        reason.text.assign(text.data(), static_cast<std::size_t>(length));
    }
    va_end(again);
}
