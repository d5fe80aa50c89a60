#pragma once

#include <string>

namespace calljournal {

/// Prints "calljournal: " and the text as one line to standard error. It is one write, so that no line of a
/// server's log, which another thread writes, comes between its parts.
void printError(const std::string& text);

}  // namespace calljournal
