#include "host/remote/RemoteFrame.h"

namespace host {
namespace {

void appendNumber(std::string& bytes, std::uint32_t number) {
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        bytes += static_cast<char>(number >> (shift - 8) & 0xFFU);
    }
}

std::uint32_t readNumber(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(0, 4)) {
        number = number << 8U | static_cast<unsigned char>(byte);
    }
    return number;
}

}  // namespace

std::string RemoteFrame::encode(Kind kind, std::uint32_t id, std::string_view text) {
    std::string bytes;
    bytes.reserve(kLengthBytes + kHeadBytes + text.size());
    appendNumber(bytes, static_cast<std::uint32_t>(kHeadBytes + text.size()));
    bytes += static_cast<char>(kind);
    appendNumber(bytes, id);
    bytes += text;
    return bytes;
}

std::optional<std::size_t> RemoteFrame::readLength(const std::array<char, kLengthBytes>& bytes) {
    const std::size_t length = readNumber(std::string_view(bytes.data(), bytes.size()));
    if (length < kHeadBytes || length > kHeadBytes + kMaxTextBytes) {
        return std::nullopt;
    }
    return length;
}

std::optional<RemoteFrame> RemoteFrame::readBody(std::string_view body) {
    if (body.size() < kHeadBytes) {
        return std::nullopt;
    }
    for (const Kind kind :
         {Kind::eRequest, Kind::eMethod, Kind::eLine, Kind::eResponse, Kind::eNotification}) {
        if (body.front() == static_cast<char>(kind)) {
            return RemoteFrame{kind, readNumber(body.substr(1)), std::string(body.substr(kHeadBytes))};
        }
    }
    return std::nullopt;
}

}  // namespace host
