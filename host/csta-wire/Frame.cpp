#include "host/csta-wire/Frame.h"

#include <array>
#include <cstdio>

namespace host {

std::optional<std::string> encodeFrame(int invokeId, std::string_view xml) {
    if (invokeId < 0 || invokeId > Frame::kEventInvokeId || xml.size() > Frame::kMaxXmlBytes) {
        return std::nullopt;
    }
    const std::size_t length = Frame::kHeaderBytes + xml.size();
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "%04d", invokeId);

    std::string bytes;
    bytes.reserve(length);
    bytes.append(2, '\0');
    bytes.push_back(static_cast<char>(static_cast<unsigned char>(length >> 8U)));
    bytes.push_back(static_cast<char>(static_cast<unsigned char>(length & 0xFFU)));
    bytes.append(digits.data(), 4);
    bytes.append(xml);
    return bytes;
}

}  // namespace host
