#pragma once

#include <string_view>

namespace host {

/// True if the standard error output is a stream to the journal of systemd, so that `sendToJournal` reaches
/// the same place with more fields.
[[nodiscard]] bool isJournalStream() noexcept;

/// Sends a log line of the form "[component] text (file:line)" with the fields MESSAGE, PRIORITY,
/// CALLJOURNAL_COMPONENT, CODE_FILE and CODE_LINE. `level` is that of `logAppUni`. Returns false if it could
/// not be sent. Thread-safe.
[[nodiscard]] bool sendToJournal(int level, std::string_view line) noexcept;

}  // namespace host
