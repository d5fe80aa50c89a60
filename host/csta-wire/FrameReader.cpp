#include "host/csta-wire/FrameReader.h"

#include <algorithm>
#include <utility>

#include "host/csta-wire/XmlText.h"

namespace host {

namespace {

constexpr std::size_t kHeaderBytes = Frame::kHeaderBytes;
constexpr std::size_t kMaxFaults = 16;

unsigned byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

std::size_t lengthOf(std::string_view header) {
    return byteAt(header, 2) << 8U | byteAt(header, 3);
}

bool hasDigits(std::string_view header) {
    return std::all_of(header.begin() + 4, header.begin() + 8, [](char c) { return c >= '0' && c <= '9'; });
}

/// The fault of a header; empty for a valid one.
std::string headerFault(std::string_view header) {
    if (header[0] != '\0' || header[1] != '\0') {
        return "the frame is of another kind";
    }
    if (lengthOf(header) < kHeaderBytes) {
        return "the frame's length is below 8";
    }
    return hasDigits(header) ? std::string() : "the frame's invoke id is no number";
}

/// True for a header that is followed by XML, possibly after a byte order mark or blanks.
bool looksLikeFrame(std::string_view bytes) {
    const char first = bytes[kHeaderBytes];
    return headerFault(bytes).empty() && (first == '<' || first == '\xEF' || isXmlBlank(first));
}

std::optional<std::size_t> searchFrame(std::string_view bytes) {
    for (std::size_t at = bytes.find('\0'); at != std::string_view::npos; at = bytes.find('\0', at + 1)) {
        if (bytes.size() - at <= kHeaderBytes) {
            return std::nullopt;
        }
        if (looksLikeFrame(bytes.substr(at))) {
            return at;
        }
    }
    return std::nullopt;
}

/// The number of bytes of XML in a frame whose length is too large; `length` if it is not; `std::nullopt` if
/// more bytes are needed to decide. `bytes` is the stream after the header, `length` the claimed number.
std::optional<std::size_t> lengthBeforeNextFrame(std::string_view bytes, std::size_t length) {
    const std::size_t zero = bytes.substr(0, length).find('\0');
    if (zero == std::string_view::npos) {
        return length;
    }
    if (hasClosedRoot(bytes.substr(0, zero))) {
        return zero;
    }
    if (const std::optional<std::size_t> header = searchFrame(bytes.substr(zero))) {
        return std::min(zero + *header, length);
    }
    // The last bytes of the frame may be the first of a header.
    const std::size_t last = bytes.substr(0, length).rfind('\0');
    return bytes.size() - last > kHeaderBytes ? std::optional(length) : std::nullopt;
}

/// The position after the first such tag in `text`; 0 if there is none.
std::size_t endOfClosingTag(std::string_view text, std::string_view closing) {
    for (std::size_t at = text.find(closing); at != std::string_view::npos; at = text.find(closing, at + 1)) {
        std::size_t end = at + closing.size();
        while (end < text.size() && isXmlBlank(text[end])) {
            ++end;
        }
        if (end < text.size() && text[end] == '>') {
            return end + 1;
        }
    }
    return 0;
}

}  // namespace

void FrameReader::feed(std::string_view bytes) {
    if (m_begin > 0) {
        m_buffer.erase(0, m_begin);
        m_begin = 0;
    }
    m_buffer.append(bytes);
}

std::optional<Frame> FrameReader::next() {
    while (!m_lost) {
        if (m_searching && !findHeader()) {
            return std::nullopt;
        }
        if (rest().size() < kHeaderBytes) {
            return std::nullopt;
        }
        if (std::string fault = headerFault(rest()); !fault.empty()) {
            report(std::move(fault));
            m_searching = true;
            drop(1);
            continue;
        }
        const std::size_t length = lengthOf(rest());
        const std::optional<std::size_t> xmlBytes =
            lengthBeforeNextFrame(rest().substr(kHeaderBytes), length - kHeaderBytes);
        if (xmlBytes && *xmlBytes == 0) {
            report("the frame is empty");
            drop(kHeaderBytes);
            continue;
        }
        if (xmlBytes && kHeaderBytes + *xmlBytes < length) {
            report("the frame's length is too large");
            return take(*xmlBytes);
        }
        if (!xmlBytes || rest().size() < length) {
            return std::nullopt;
        }
        return takeFrame(length);
    }
    return std::nullopt;
}

std::optional<Frame> FrameReader::takeOverdue() {
    if (m_searching || m_lost || rest().size() <= kHeaderBytes) {
        return std::nullopt;
    }
    const bool isComplete = rest().size() >= lengthOf(rest());
    if (!isComplete && !hasClosedRoot(rest().substr(kHeaderBytes))) {
        return std::nullopt;
    }
    report(isComplete ? "the frame's XML is not closed" : "the frame's length is too large");
    return take(isComplete ? lengthOf(rest()) - kHeaderBytes : rest().size() - kHeaderBytes);
}

std::vector<std::string> FrameReader::takeFaults() {
    return std::exchange(m_faults, {});
}

std::size_t FrameReader::pendingBytes() const noexcept {
    const auto isFiller = [](char each) { return each == '\0' || isXmlBlank(each); };
    return std::all_of(rest().begin(), rest().end(), isFiller) ? 0 : rest().size();
}

std::string_view FrameReader::rest() const noexcept {
    return std::string_view(m_buffer).substr(m_begin);
}

void FrameReader::drop(std::size_t bytes) {
    m_begin += bytes;
    if (m_searching) {
        m_skipped += bytes;
        m_lost = m_skipped > kLostBytes;
    }
}

/// Skips to the next frame and returns true if there is one. Keeps the bytes that may be the beginning of
/// one.
bool FrameReader::findHeader() {
    const std::optional<std::size_t> at = searchFrame(rest());
    if (!at) {
        drop(rest().size() > kHeaderBytes ? rest().size() - kHeaderBytes : 0);
        return false;
    }
    m_begin += *at;
    m_searching = false;
    m_skipped = 0;
    return true;
}

std::optional<Frame> FrameReader::takeFrame(std::size_t length) {
    const std::string_view bytes = rest();
    const std::optional<std::size_t> whole =
        lengthWithTail(bytes.substr(kHeaderBytes, length - kHeaderBytes), bytes.substr(length));
    if (!whole) {
        return std::nullopt;
    }
    return take(*whole);
}

Frame FrameReader::take(std::size_t xmlBytes) {
    Frame frame;
    for (const char digit : rest().substr(4, 4)) {
        frame.invokeId = frame.invokeId * 10 + (digit - '0');
    }
    frame.xml = rest().substr(kHeaderBytes, xmlBytes);
    drop(kHeaderBytes + xmlBytes);
    return frame;
}

/// The real length of the frame's XML; `std::nullopt` if more bytes are needed to decide.
std::optional<std::size_t> FrameReader::lengthWithTail(std::string_view xml, std::string_view following) {
    const std::string closing = missingClosingTag(xml);
    if (closing.empty()) {
        return xml.size();
    }
    const std::size_t header = searchFrame(following).value_or(following.size());
    const std::size_t overlap = std::min(xml.size(), closing.size());
    const std::string seam =
        std::string(xml.substr(xml.size() - overlap)).append(following.substr(0, header));
    if (const std::size_t end = endOfClosingTag(seam, closing); end > 0) {
        report("the frame's length is too small");
        return xml.size() - overlap + end;
    }
    if (header < following.size() || following.size() > kTailBytes) {
        return xml.size();
    }
    return std::nullopt;
}

void FrameReader::report(std::string fault) {
    if (m_faults.size() < kMaxFaults) {
        m_faults.push_back(std::move(fault));
    }
}

}  // namespace host
