#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// One message of the link without its header.
struct Frame {
    /// The id of all events, which have no response.
    static constexpr int kEventInvokeId = 9999;
    static constexpr std::size_t kHeaderBytes = 8;
    /// The length field has 16 bits and includes the header.
    static constexpr std::size_t kMaxXmlBytes = 65535 - kHeaderBytes;

    int invokeId = 0;
    std::string xml;

    [[nodiscard]] bool operator==(const Frame&) const = default;
};

/// The bytes of a frame: two zero bytes, the length of the whole frame in bytes (big-endian), the invoke id
/// as four decimal digits, the XML. Returns `std::nullopt` if the XML is too long for one frame or the id is
/// not 0 to 9999.
[[nodiscard]] std::optional<std::string> encodeFrame(int invokeId, std::string_view xml);

}  // namespace host
