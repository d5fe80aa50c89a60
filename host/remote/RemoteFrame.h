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
/// `length` counts what follows it: the kind, the id and the text. Both numbers are unsigned, the highest byte first.
/// A plain value without synchronisation.
struct RemoteFrame {
    enum class Kind : char {
        eRequest = 'Q',       ///< client to server; the client chooses the id
        eMethod = 'M',        ///< client to server, as a request: a method in the text protocol
        eResponse = 'A',      ///< server to client, with the id of the request
        eNotification = 'N',  ///< server to client, of its own accord; the id is 0
    };

    /// Bytes of the length itself, and of kind and id behind it.
    static constexpr std::size_t kLengthBytes = 4;
    static constexpr std::size_t kHeadBytes = 5;
    /// The longest text that either side takes.
    static constexpr std::size_t kMaxTextBytes = 16U * 1024U * 1024U;

    Kind kind = Kind::eRequest;
    std::uint32_t id = 0;
    std::string text;

    /// The frame as it goes over the wire. `text` may be as long as the length can say; the bound is the reader's.
    [[nodiscard]] static std::string encode(Kind kind, std::uint32_t id, std::string_view text);

    /// What the first four bytes announce, or nothing when no frame has that length.
    [[nodiscard]] static std::optional<std::size_t> readLength(const std::array<char, kLengthBytes>& bytes);

    /// The frame whose bytes behind the length are `body`; nothing when the kind is unknown or the body too short.
    [[nodiscard]] static std::optional<RemoteFrame> readBody(std::string_view body);
};

}  // namespace host
