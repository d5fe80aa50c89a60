#pragma once

#include <string>
#include <utility>
#include <vector>

namespace calljournal {

/// Subjects with what is to be said of each. Plain values; texts are not escaped.
using Facts = std::vector<std::pair<std::string, std::string>>;

// Pure and thread-safe.

/// One text line for each fact, escaped for a terminal.
[[nodiscard]] std::string factsText(const Facts& facts);
/// Comma-separated values with the titles "subject" and "text".
[[nodiscard]] std::string factsCsv(const Facts& facts);

}  // namespace calljournal
