#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/journal-library/MethodId.h"

/// Builders for the requests of remote clients. Pure functions; any thread may call.
namespace journalxml {

/// Returns the request text of a method. `docs/messages.md` lists the arguments of each method: most read the
/// entry ids (a method for one entry reads the first), `eDeleteCalls` also reads the flag, and
/// `eSetJournalServiceCallLogEventsDisabling` the value.
[[nodiscard]] std::string buildRequest(MethodId method, const std::vector<std::string>& entryIds = {},
                                       const std::optional<std::string>& value = std::nullopt,
                                       const std::optional<bool>& sendDeleteRequest = std::nullopt);

}  // namespace journalxml
