#pragma once

namespace calljournal {

/// Flushes the standard output and returns the exit status of a command: `eDone`, or `eFailed` if the command
/// has not `succeeded` or the output cannot be written (a full disk). Prints an error in the latter case.
[[nodiscard]] int statusOfOutput(bool succeeded = true);

}  // namespace calljournal
