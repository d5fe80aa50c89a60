#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// One message on the socket (docs/messages.md, "Framing on the socket"):
///
///     byte  0 1 2 3   4      5 6 7 8   9 ...
///          | length | kind |   id    | text |
///
/// `length` is the number of bytes of kind, id and text. Length and id are unsigned, in network byte order.
/// A plain value; not synchronised.
struct RemoteFrame {
    enum class Kind : char {
        eRequest = 'Q',       ///< client to server; the client chooses the id
        eMethod = 'M',        ///< client to server: a request in the text protocol
        eLine = 'L',          ///< client to server, before all others: the device of its line
        eResponse = 'A',      ///< server to client, with the id of the request
        eNotification = 'N',  ///< server to client, unsolicited; the id is 0
    };

    /// The size of the length, and the size of kind and id.
    static constexpr std::size_t kLengthBytes = 4;
    static constexpr std::size_t kHeadBytes = 5;
    /// The longest text that either side accepts.
    static constexpr std::size_t kMaxTextBytes = 16U * 1024U * 1024U;

    Kind kind = Kind::eRequest;
    std::uint32_t id = 0;
    std::string text;

    /// Returns the bytes of a frame. Does not check the length of `text`; the reader does.
    [[nodiscard]] static std::string encode(Kind kind, std::uint32_t id, std::string_view text);

    /// Reads the length from the first four bytes. Returns std::nullopt if no valid frame has that length.
    [[nodiscard]] static std::optional<std::size_t> readLength(const std::array<char, kLengthBytes>& bytes);

    /// Reads the bytes after the length. Returns std::nullopt if the kind is unknown or `body` is too short.
    [[nodiscard]] static std::optional<RemoteFrame> readBody(std::string_view body);
};

}  // namespace host
