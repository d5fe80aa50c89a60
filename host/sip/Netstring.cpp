#include "host/sip/Netstring.h"

namespace host {

std::string netstring(std::string_view text) {
    return std::to_string(text.size()).append(":").append(text).append(",");
}

std::optional<std::size_t> NetstringReader::takeLength() {
    constexpr std::size_t kMostDigits = 6;
    const std::size_t digits = m_bytes.find_first_not_of("0123456789");
    if (digits == std::string::npos) {
        m_invalid = m_bytes.size() > kMostDigits;
        return std::nullopt;
    }
    if (digits == 0 || digits > kMostDigits || m_bytes[digits] != ':') {
        m_invalid = true;
        return std::nullopt;
    }
    const std::size_t length = std::stoul(m_bytes.substr(0, digits));
    m_invalid = length > kMostBytes;
    m_bytes.erase(0, digits + 1);
    return length;
}

std::optional<std::string> NetstringReader::next() {
    if (!m_length && !m_invalid) {
        m_length = takeLength();
    }
    if (m_invalid || !m_length || m_bytes.size() <= *m_length) {
        return std::nullopt;
    }
    if (m_bytes[*m_length] != ',') {
        m_invalid = true;
        return std::nullopt;
    }
    std::string text = m_bytes.substr(0, *m_length);
    m_bytes.erase(0, *m_length + 1);
    m_length.reset();
    return text;
}

}  // namespace host
