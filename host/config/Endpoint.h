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
    /// For a program that listens, 0 means that the system chooses the port.
    std::uint16_t port = 0;

    bool operator==(const Endpoint&) const = default;

    /// Returns ADDR:PORT: "127.0.0.1:8080", "[::1]:8080".
    [[nodiscard]] std::string text() const;
};

/// Reads ADDR:PORT: "127.0.0.1:8080", "localhost:4242", "[::1]:8080". Returns std::nullopt if the text is not
/// valid, for example an IPv6 address without brackets.
[[nodiscard]] std::optional<Endpoint> parseEndpoint(std::string_view text);

}  // namespace host
