#pragma once

#include <string>

namespace calljournal {

/// The emphasis of a text on a terminal.
enum class Emphasis { eNone, eStrong, eAlarm, eGood, eWarning };

enum class ColourUse {
    eAuto,  ///< on a terminal with colours, unless the user refuses them (NO_COLOR, TERM=dumb)
    eAlways,
    eNever,
};

/// The use of colours from now on; at the start `eAuto`. Call before other threads are started.
void setColourUse(ColourUse use) noexcept;

/// True if the standard output gets colours.
[[nodiscard]] bool isColoured();

/// The text with the codes that a terminal shows it with.
[[nodiscard]] std::string coloured(const std::string& text, Emphasis emphasis);

}  // namespace calljournal
