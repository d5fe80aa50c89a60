#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace calljournal {

/// What is wrong with a command line, in one line that says what to do: an unknown command or option comes with the known
/// one that it resembles. `app` is what has just thrown `error` (which is none of the requests for help). Pure.
[[nodiscard]] std::string usageError(const CLI::App& app, const CLI::ParseError& error);

}  // namespace calljournal
