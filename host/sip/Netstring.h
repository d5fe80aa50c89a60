#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// `LENGTH:TEXT,`
[[nodiscard]] std::string netstring(std::string_view text);

/// Cuts netstrings off a stream of bytes. Not thread-safe.
class NetstringReader {
public:
    /// A longer text is an error: the telephone's longest message, the state of a call, has a few KiB.
    static constexpr std::size_t kMostBytes = 256U * 1024U;

    void feed(std::string_view bytes) { m_bytes += bytes; }
    /// The next complete text; `std::nullopt` if there is none yet, or the stream is invalid.
    [[nodiscard]] std::optional<std::string> next();
    /// True if the stream has broken the form. It remains so.
    [[nodiscard]] bool isInvalid() const noexcept { return m_invalid; }

private:
    /// The length at the beginning, if it is complete.
    [[nodiscard]] std::optional<std::size_t> takeLength();

    std::string m_bytes;
    std::optional<std::size_t> m_length;
    bool m_invalid = false;
};

}  // namespace host
