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

/// The error of a command line that has options, but no command. Pure.
[[nodiscard]] std::string missingCommandText(const CLI::App& app);

/// "there is no command X; did you mean Y?", of the commands below `app`. Pure.
[[nodiscard]] std::string unknownCommandText(const CLI::App& app, const std::string& word);

}  // namespace calljournal
