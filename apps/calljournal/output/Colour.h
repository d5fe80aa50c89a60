#pragma once

#include <string>

namespace calljournal {

/// The emphasis of a text on a terminal.
enum class Emphasis { eNone, eStrong, eAlarm, eGood, eWarning };

/// True if the standard output is a terminal with colours, and the user does not refuse them (NO_COLOR).
[[nodiscard]] bool isColoured();

/// The text with the codes that a terminal shows it with.
[[nodiscard]] std::string coloured(const std::string& text, Emphasis emphasis);

}  // namespace calljournal
