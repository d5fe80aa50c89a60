#pragma once

#include <string>

#include "platform/journal-library/ObserverMessage.h"

namespace calljournal {

// A change of the journal as `watch` prints it. The functions are pure and thread-safe.

/// True for the two messages that contain a count.
[[nodiscard]] bool isCount(const journalxml::ObserverMessage& message) noexcept;

/// A sentence with control characters escaped: "missed call from Ann Müller (4711)".
[[nodiscard]] std::string watchText(const journalxml::ObserverMessage& message);

/// {"event":"missedCallsUpdate","data":{"action":0,"entryId":"","item":{...}}}, with item null if the event
/// has none; {"event":"missedCallsCountUpdate","data":{"count":3}}.
[[nodiscard]] std::string watchJson(const journalxml::ObserverMessage& message);

}  // namespace calljournal
