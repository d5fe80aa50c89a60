#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The place of a call in the order of the calls' start: seconds since 1970 in UTC, then the id. A plain
/// value.
struct CallKey {
    std::int64_t start = 0;
    std::int64_t id = 0;

    [[nodiscard]] constexpr bool operator<(const CallKey& other) const noexcept {
        return start != other.start ? start < other.start : id < other.id;
    }

    /// Before the first call that starts in this second.
    [[nodiscard]] static constexpr CallKey before(std::int64_t start) noexcept {
        return {start, std::numeric_limits<std::int64_t>::min()};
    }
};

/// The cursor of a page (`CallQuery::cursor`) that begins after the call with that key.
[[nodiscard]] std::string cursorAfter(const CallKey& last);
/// The inverse; std::nullopt for a text that is no cursor.
[[nodiscard]] std::optional<CallKey> keyOfCursor(std::string_view cursor);

}  // namespace host
