#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host {

/// Why a call has another party than the one that was called, or, from `eBusy` on, why a call that was placed
/// here has failed. The database stores the values; new ones are
/// added at the end.
enum class CallReason {
    eNone,
    eTransfer,
    eForwardBusy,
    eForwardNoAnswer,
    eForwardAlways,
    ePickUp,
    eCompletedElsewhere,
    eBusy,
    eRejected,
    eUnanswered,
    eNoSuchNumber,
    eCongestion,
};

/// The words for JSON and files, by value.
inline constexpr std::array<std::string_view, 12> kCallReasonWords{"",
                                                                   "transfer",
                                                                   "forward-busy",
                                                                   "forward-no-answer",
                                                                   "forward-always",
                                                                   "pick-up",
                                                                   "completed-elsewhere",
                                                                   "busy",
                                                                   "rejected",
                                                                   "unanswered",
                                                                   "no-such-number",
                                                                   "congestion"};

/// "" for `eNone`.
[[nodiscard]] constexpr std::string_view wordOf(CallReason reason) noexcept {
    return kCallReasonWords[static_cast<std::size_t>(reason)];
}

/// The reason of a word; std::nullopt for another word.
[[nodiscard]] constexpr std::optional<CallReason> callReasonNamed(std::string_view word) noexcept {
    for (std::size_t value = 0; value < kCallReasonWords.size(); ++value) {
        if (kCallReasonWords[value] == word) {
            return static_cast<CallReason>(value);
        }
    }
    return std::nullopt;
}

}  // namespace host
