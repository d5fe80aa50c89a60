#pragma once

#include "apps/calljournal/output/ExitStatus.h"

namespace calljournal {

/// Parses the command line, runs its sub-command and returns the exit status. Writes an error as one text
/// line to the standard error output, with advice for the user.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace calljournal
