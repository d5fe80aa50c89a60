#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/Frame.h"

namespace host {

/// Splits the byte stream of a CSTA link into frames, and resynchronises after errors of the peer:
///  1. A header is two zero bytes, a length of 8 or more and four digits. Other bytes are reported as a fault
///     and skipped up to the next header that is followed by XML. XML contains no zero bytes, so a header is
///     never found inside a valid frame. Frames of other framings (first bytes not zero) are skipped in the
///     same way.
///  2. XML that ends before its root element is closed is sent by a peer that counts characters instead of
///     bytes. The reader appends the following bytes up to the closing tag. If a header comes first, the XML
///     is malformed and is returned unchanged.
///  3. XML that is complete, or a header that is followed by XML, inside the claimed length: the length is
///     too large, and the frame ends before the zero byte. Without a further byte the caller takes the
///     complete XML after a while (`takeOverdue`).
///  4. After too many bytes without a header the stream is lost: reconnect.
///
/// A segment may contain several frames or a part of one. The reader never buffers more than a frame, a
/// segment and the search window. Not thread-safe.
class FrameReader {
public:
    /// The number of bytes after truncated XML that are searched for its closing tag.
    static constexpr std::size_t kTailBytes = 8192;
    /// The number of bytes without a header after which the stream is lost.
    static constexpr std::size_t kLostBytes = 262144;

    /// Appends received bytes. Requires: `next` has returned `std::nullopt` since the last call.
    void feed(std::string_view bytes);

    /// Returns the next frame, or `std::nullopt` if more bytes are needed. Its XML is not checked.
    [[nodiscard]] std::optional<Frame> next();

    /// Returns the buffered frame although more bytes are missing, if its XML is complete or its length has
    /// come. Call it when no byte has come for a while.
    [[nodiscard]] std::optional<Frame> takeOverdue();

    /// Returns the faults since the last call as log texts; usually empty.
    [[nodiscard]] std::vector<std::string> takeFaults();
    [[nodiscard]] bool isLost() const noexcept { return m_lost; }
    /// The number of buffered bytes; 0 if they are only zero bytes and blanks, which some peers send after a
    /// frame. If it is not 0 when the connection ends, the last frame is incomplete.
    [[nodiscard]] std::size_t pendingBytes() const noexcept;

private:
    [[nodiscard]] std::string_view rest() const noexcept;
    void drop(std::size_t bytes);
    [[nodiscard]] bool findHeader();
    [[nodiscard]] std::optional<Frame> takeFrame(std::size_t length);
    [[nodiscard]] Frame take(std::size_t xmlBytes);
    [[nodiscard]] std::optional<std::size_t> lengthWithTail(std::string_view xml, std::string_view following);
    void report(std::string fault);

    std::string m_buffer;
    std::size_t m_begin = 0;
    bool m_searching = false;
    std::size_t m_skipped = 0;
    bool m_lost = false;
    std::vector<std::string> m_faults;
};

}  // namespace host
