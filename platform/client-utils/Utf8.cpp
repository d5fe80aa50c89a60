#include "platform/client-utils/Utf8.h"

namespace utf8 {
namespace {

struct Lead {
    std::size_t length;
    std::uint32_t bits;
    std::uint32_t least;  // a smaller character would be an overlong form
};

Lead leadOf(unsigned char byte) noexcept {
    if (byte < 0x80U) {
        return {1, byte, 0};
    }
    if (byte >= 0xc2U && byte <= 0xdfU) {
        return {2, byte & 0x1fU, 0x80U};
    }
    if (byte >= 0xe0U && byte <= 0xefU) {
        return {3, byte & 0x0fU, 0x800U};
    }
    if (byte >= 0xf0U && byte <= 0xf4U) {
        return {4, byte & 0x07U, 0x10000U};
    }
    return {0, 0, 0};
}

bool isSurrogate(std::uint32_t character) noexcept {
    return character >= 0xd800U && character <= 0xdfffU;
}

}  // namespace

Step next(std::string_view text, std::size_t at) noexcept {
    constexpr Step kBadByte{1, kInvalid};
    if (at >= text.size()) {
        return {0, kInvalid};
    }
    const Lead lead = leadOf(static_cast<unsigned char>(text[at]));
    if (lead.length == 0 || lead.length > text.size() - at) {
        return kBadByte;
    }
    std::uint32_t character = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + i]);
        if ((byte & 0xc0U) != 0x80U) {
            return kBadByte;
        }
        character = (character << 6U) | (byte & 0x3fU);
    }
    if (character < lead.least || character > 0x10ffffU || isSurrogate(character)) {
        return kBadByte;
    }
    return {lead.length, character};
}

bool isXmlCharacter(std::uint32_t character) noexcept {
    if (character < 0x20U) {
        return character == '\t' || character == '\n' || character == '\r';
    }
    return character <= 0x10ffffU && !isSurrogate(character) && character != 0xfffeU && character != 0xffffU;
}

bool isXmlText(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] >= ' ' && text[at] <= '\x7e') {  // most texts have no others
            ++at;
            continue;
        }
        const Step step = next(text, at);
        if (!isXmlCharacter(step.character)) {
            return false;
        }
        at += step.length;
    }
    return true;
}

void append(std::string& text, std::uint32_t character) {
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80U) {
        put(character);
        return;
    }
    if (character < 0x800U) {
        put(0xc0U | (character >> 6U));
    } else if (character < 0x10000U) {
        put(0xe0U | (character >> 12U));
        put(0x80U | ((character >> 6U) & 0x3fU));
    } else {
        put(0xf0U | (character >> 18U));
        put(0x80U | ((character >> 12U) & 0x3fU));
        put(0x80U | ((character >> 6U) & 0x3fU));
    }
    put(0x80U | (character & 0x3fU));
}

}  // namespace utf8
