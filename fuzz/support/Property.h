#pragma once

#include <string>
#include <string_view>

/// The properties that the fuzz targets check. A property that does not hold is printed and ends the program
/// by `std::abort`, which libFuzzer and `ReplayDriver.cpp` report with the input. Any thread may call.
namespace fuzz {

/// Aborts unless the property holds. `property` is a sentence about what is wrong.
void require(bool holds, const char* property) noexcept;

/// The sentence of the property that did not hold; empty before. Safe in a signal handler.
[[nodiscard]] const char* brokenProperty() noexcept;

/// True if the text has a control character other than tab and line breaks.
[[nodiscard]] bool hasControlCharacters(std::string_view text) noexcept;

/// Aborts unless the text is valid UTF-8.
void requireUtf8(std::string_view text, const char* property) noexcept;

/// Aborts unless the text is one line of valid UTF-8 without control characters, as a message for a terminal
/// is.
void requireOneLine(std::string_view text, const char* property) noexcept;

}  // namespace fuzz
