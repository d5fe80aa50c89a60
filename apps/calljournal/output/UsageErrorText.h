#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace calljournal {

/// The error of a command line as one text line with advice: an unknown command or option comes with a
/// similar known one. Requires: `app` threw `error`, which is not a help request. Pure.
[[nodiscard]] std::string usageErrorText(const CLI::App& app, const CLI::ParseError& error);

}  // namespace calljournal
