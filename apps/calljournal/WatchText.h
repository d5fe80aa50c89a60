#pragma once

#include <string>

#include "platform/journal-library/ObserverMessage.h"

namespace calljournal {

/// A change of the journal as `watch` prints it. Pure functions; any thread may call.

/// Whether the message is one of the two that carry a count.
[[nodiscard]] bool isCount(const journalxml::ObserverMessage& message) noexcept;

/// A sentence that is safe to show: "missed call from Ann Müller (4711)".
[[nodiscard]] std::string watchText(const journalxml::ObserverMessage& message);

/// {"event":"missedCallsUpdate","data":{"action":0,"entryId":"","item":{...}}}, the item null where the event carries none;
/// {"event":"missedCallsCountUpdate","data":{"count":3}}.
[[nodiscard]] std::string watchJson(const journalxml::ObserverMessage& message);

}  // namespace calljournal
