#pragma once

namespace calljournal {

/// The exit status of the program, the same for every sub-command.
enum ExitStatus : int { eDone = 0, eFailed = 1, eWrongUsage = 2 };

/// Reads the command line, runs the sub-command that it names, and answers the exit status. What goes wrong is one line on
/// the standard error output, with what to do about it.
[[nodiscard]] int runCommandLine(int argc, char** argv);

}  // namespace calljournal
