#pragma once

#include <optional>
#include <string>
#include <vector>

#include "journal-items/MissedCallItem.h"
#include "platform/journal-library/MethodId.h"

/// What a remote client sends to the journal. Pure functions; any thread may call.
namespace journalxml {

/// The request text of a method. `docs/messages.md` lists which method reads which argument: most read the
/// entry ids (those for one entry only the first), `eDeleteCalls` also the flag, and
/// `eSetJournalServiceCallLogEventsDisabling` the value.
[[nodiscard]] std::string buildRequest(MethodId method, const std::vector<std::string>& entryIds = {},
                                       const std::optional<std::string>& value = std::nullopt,
                                       const std::optional<bool>& sendDeleteRequest = std::nullopt);

/// The request of `eUpdateMissedCall`, which carries an item. Its answer is the failure text even when it
/// ran.
[[nodiscard]] std::string buildUpdateMissedCallRequest(const MissedCallItem& item);

}  // namespace journalxml
