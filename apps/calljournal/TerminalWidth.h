#pragma once

#include <cstddef>

namespace calljournal {

/// How many columns a line on the standard output has: what the environment's COLUMNS says, else the terminal, and 80
/// where the output is none.
[[nodiscard]] std::size_t terminalWidth();

}  // namespace calljournal
