#pragma once

#include <cstdarg>
#include <string>

namespace host {

/// The origin and the text of a log line.
struct LogMessage {
    const char* component;
    const char* sourceFile;
    int level;
    int line;
    const char* format;
};

/// "[component] text (file:line)", with the text that `std::vprintf` would print, escaped.
[[nodiscard]] std::string logLine(const LogMessage& message, std::va_list arguments);

/// The same with masked parties, for a component that logs names and numbers without a mark: each text among
/// the arguments that is no constant of the program or of a library is masked, in a warning and an error
/// only its numbers.
[[nodiscard]] std::string maskedLogLine(const LogMessage& message, std::va_list arguments);

}  // namespace host
