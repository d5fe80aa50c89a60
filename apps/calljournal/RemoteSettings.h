#pragma once

#include "platform/journal-library/ManagementMessage.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// Reads or changes settings of the running journal. Returns the response, which may be a refusal. Throws
/// `RemoteError` if the response is invalid.
[[nodiscard]] journalxml::ManagementResponse requestSettings(host::RemoteClient& client,
                                                             const journalxml::ManagementRequest& request);

/// True if the running journal is switched off, which clears its lists. Throws as `requestSettings`.
[[nodiscard]] bool isJournalOff(host::RemoteClient& client);

}  // namespace calljournal
