#pragma once

#include "platform/journal-library/ManagementMessage.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// Reads or changes settings of the running journal, and answers what it says, a refusal included. Throws `RemoteError`
/// when it says nothing that can be read.
[[nodiscard]] journalxml::ManagementResponse requestSettings(host::RemoteClient& client,
                                                             const journalxml::ManagementRequest& request);

/// Whether the running journal is switched off: its lists were emptied then. Throws as `requestSettings`.
[[nodiscard]] bool isJournalOff(host::RemoteClient& client);

}  // namespace calljournal
