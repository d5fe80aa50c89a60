#pragma once

#include <cstddef>

namespace calljournal {

/// The number of columns of the standard output: the environment's COLUMNS, else the terminal's width, else
/// 80.
[[nodiscard]] std::size_t terminalWidth();

}  // namespace calljournal
