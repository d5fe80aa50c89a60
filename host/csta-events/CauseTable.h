#pragma once

#include <string_view>

namespace host {

/// The kind of event that carries a cause. The same word has a different meaning in different events.
enum class CauseContext {
    eOther,
    eDeliveredHere,       ///< the own phone rings
    eDeliveredElsewhere,  ///< another phone rings, for a call that the own phone made
    eEstablished,
    eHeld,
    eFailed,
    eConnectionCleared,
};

/// Returns the phone's `CSTAEventCause` for the ECMA-323 value: `CSTA_EC_None` for an empty word,
/// `CSTA_EC_Unknown` for an unknown one. In a Failed event both become `CSTA_EC_Other`, because 0 and 1 mean
/// there that the failure belongs to no call.
[[nodiscard]] int causeNumber(std::string_view word, CauseContext context) noexcept;

}  // namespace host
