#pragma once

namespace calljournal {

/// Flushes the standard output and returns the exit status of a command: `eDone`, or `eFailed` if the command
/// has not `succeeded` or the output cannot be written (a full disk). Prints an error in the latter case. If
/// the reader of the output has closed its pipe, returns 141, as a shell shows a program that SIGPIPE ends.
[[nodiscard]] int statusOfOutput(bool succeeded = true);

/// False if the standard output is a pipe that its reader has closed.
[[nodiscard]] bool outputHasReader();

}  // namespace calljournal
