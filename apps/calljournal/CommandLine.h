#pragma once

namespace calljournal {

/// The exit status of every sub-command.
enum ExitStatus : int { eDone = 0, eFailed = 1, eWrongUsage = 2 };

/// Parses the command line, runs its sub-command and returns the exit status. Writes an error as one text
/// line to the standard error output, with advice for the user.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace calljournal
