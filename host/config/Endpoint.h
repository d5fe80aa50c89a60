#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// A host with a TCP port. A plain value.
struct Endpoint {
    /// An address or a name, without the brackets around an IPv6 address.
    std::string host;
    /// 0 lets the system choose, where a program listens.
    std::uint16_t port = 0;

    bool operator==(const Endpoint&) const = default;

    /// "127.0.0.1:8080", "[::1]:8080".
    [[nodiscard]] std::string text() const;
};

/// Reads ADDR:PORT: "127.0.0.1:8080", "localhost:4242", "[::1]:8080". Nothing when the text is none, an IPv6 address
/// without brackets included.
[[nodiscard]] std::optional<Endpoint> parseEndpoint(std::string_view text);

}  // namespace host
