#pragma once

namespace calljournal {

/// The exit status of every sub-command.
enum ExitStatus : int { eDone = 0, eFailed = 1, eWrongUsage = 2 };

}  // namespace calljournal
