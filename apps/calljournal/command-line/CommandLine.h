#pragma once

#include <functional>

#include "apps/calljournal/output/ExitStatus.h"

namespace CLI {
class App;
}

namespace calljournal {

/// Parses the command line, runs its sub-command and returns the exit status. Writes an error as one text
/// line to the standard error output, with advice for the user.
[[nodiscard]] int runCommandLine(int argc, char** argv);

/// Calls `read` once with the program, its options and all its sub-commands, as `runCommandLine` parses them.
void readCommandLine(const std::function<void(const CLI::App&)>& read);

}  // namespace calljournal
