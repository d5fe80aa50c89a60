#pragma once

#include <string_view>

namespace host {

/// Where a cause stands. The same word means different things to a phone in different events.
enum class CauseContext {
    eOther,
    eDeliveredHere,       ///< the own phone rings
    eDeliveredElsewhere,  ///< another phone rings, for a call that the own phone made
    eEstablished,
    eHeld,
    eFailed,
    eConnectionCleared,
};

/// The phone's number (`CSTAEventCause`) for the standard's word. A missing word is `CSTA_EC_None`, an unknown one
/// `CSTA_EC_Unknown`, except in a Failed event: 0 and 1 say there that the failure belongs to no call, so both become
/// `CSTA_EC_Other`.
[[nodiscard]] int causeNumber(std::string_view word, CauseContext context) noexcept;

}  // namespace host
