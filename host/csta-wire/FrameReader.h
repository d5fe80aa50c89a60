#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/Frame.h"

namespace host {

/// Cuts the byte stream of a CSTA link into frames, and finds its way back after a peer's mistakes:
///  1. A header is two zero bytes, a length of 8 or more and four digits. Anything else is reported, and the reader
///     searches for the next place that looks like a header with XML behind it. XML holds no zero bytes, so this
///     cannot happen inside a good frame; the frames of other framings (first bytes not zero) are passed over
///     in the same way.
///  2. XML that stops before its root element is closed comes from a peer that counted characters where bytes are
///     meant. The reader takes what follows up to the closing tag. If a header comes first, the text was just
///     broken and is given out as it is.
///  3. Too many bytes without any header: the stream is lost, and only a new connection helps.
///
/// Reads whatever segments come: several frames in one, one frame over many. Never holds more than a frame, a
/// segment and the search window. Not thread-safe: it belongs to the thread that reads the connection.
class FrameReader {
public:
    /// How far behind a text that was cut short its end is looked for.
    static constexpr std::size_t kTailBytes = 8192;
    /// How many bytes without a header make the stream lost.
    static constexpr std::size_t kLostBytes = 262144;

    /// Appends what was received. Call `next` until it is empty before feeding again.
    void feed(std::string_view bytes);

    /// The next frame, or nothing when more bytes are needed. Its XML is not checked yet.
    [[nodiscard]] std::optional<Frame> next();

    /// What was wrong since the last call, one sentence each, to be logged; mostly empty.
    [[nodiscard]] std::vector<std::string> takeFaults();
    [[nodiscard]] bool lost() const noexcept { return m_lost; }
    /// Bytes that wait for their continuation; not 0 when a connection ends means that it ended inside a frame.
    [[nodiscard]] std::size_t pendingBytes() const noexcept { return m_buffer.size() - m_begin; }

private:
    [[nodiscard]] std::string_view rest() const noexcept;
    void drop(std::size_t bytes);
    [[nodiscard]] bool findHeader();
    [[nodiscard]] std::optional<Frame> takeFrame(std::size_t length);
    [[nodiscard]] std::optional<std::size_t> lengthWithTail(std::string_view xml, std::string_view behind);
    void report(std::string fault);

    std::string m_buffer;
    std::size_t m_begin = 0;
    bool m_searching = false;
    std::size_t m_skipped = 0;
    bool m_lost = false;
    std::vector<std::string> m_faults;
};

}  // namespace host
