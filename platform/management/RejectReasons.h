#pragma once

#include <string>

/// The reason why a management value was refused.
enum rejectReasons : int {
    eRejectNone = 0,
    eRejectDataInvalid = 4,
    eRejectValueNotChanged = 10,
};

/// One refusal: the code and a text for the user. An empty text means no refusal.
struct RejectReason {
    rejectReasons code = eRejectNone;
    std::string text;

    [[nodiscard]] bool empty() const noexcept { return text.empty(); }
};

/// Writes the code and the text of a refusal into `reason`; `format` and the arguments are those of `printf`.
void setRejectReason(rejectReasons code, RejectReason& reason, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
