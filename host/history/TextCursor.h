#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// Reads a text from its front. A plain value.
class TextCursor {
public:
    explicit constexpr TextCursor(std::string_view text) noexcept : m_rest(text) {}

    [[nodiscard]] constexpr bool atEnd() const noexcept { return m_rest.empty(); }
    [[nodiscard]] constexpr std::string_view rest() const noexcept { return m_rest; }

    /// Takes one of the characters; '\0' if none of them is next.
    constexpr char takeOneOf(std::string_view characters) noexcept {
        if (m_rest.empty() || characters.find(m_rest.front()) == std::string_view::npos) {
            return '\0';
        }
        const char taken = m_rest.front();
        m_rest.remove_prefix(1);
        return taken;
    }

    /// Takes a number of `least` to `most` digits.
    constexpr std::optional<std::int64_t> takeNumber(std::size_t least, std::size_t most) noexcept {
        std::int64_t number = 0;
        std::size_t digits = 0;
        while (digits < most && digits < m_rest.size() && m_rest[digits] >= '0' && m_rest[digits] <= '9') {
            number = 10 * number + (m_rest[digits++] - '0');
        }
        if (digits < least) {
            return std::nullopt;
        }
        m_rest.remove_prefix(digits);
        return number;
    }

private:
    std::string_view m_rest;
};

}  // namespace host
