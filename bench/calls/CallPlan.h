#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace bench {

/// The kind of a call, which selects the list that shows it.
enum class CallKind { eReceived, eMissed, eDialled, eForwarded };

/// The calls of a run by their position: the other party, the call id. A plain value.
struct CallPlan {
    CallKind kind = CallKind::eReceived;
    /// The position of the first call's party among all parties.
    std::size_t firstParty = 0;
    /// The calls repeat so many parties; each call has a new party if it is 0.
    std::size_t parties = 0;
    /// Repeated parties come in steps of this size; no common divisor with `parties`.
    std::size_t stride = 1;
    /// Call ids are decimal numbers, else texts that are none.
    bool decimalIds = true;
    /// A text in every call id, which makes the ids of several runs differ. Decimal digits.
    std::string idPrefix = "1";

    /// The position of the party of call `call`.
    [[nodiscard]] std::size_t partyOf(std::size_t call) const {
        return firstParty + (parties == 0 ? call : call * stride % parties);
    }
    [[nodiscard]] std::string callId(std::size_t call) const;
    /// "+493020000017" for party 17.
    [[nodiscard]] static std::string numberOf(std::size_t party);
    [[nodiscard]] static std::string nameOf(std::size_t party);
    /// The position of the party whose number begins `text`; std::nullopt if the number is incomplete or
    /// none.
    [[nodiscard]] static std::optional<std::size_t> partyIn(std::string_view text);

    /// The begin of all numbers.
    static constexpr std::string_view kNumberPrefix = "+49302";
    static constexpr std::size_t kDigits = 7;
};

/// "received", "missed", "dialled" or "forwarded"; throws std::invalid_argument for another name.
[[nodiscard]] CallKind callKindNamed(std::string_view name);

}  // namespace bench
