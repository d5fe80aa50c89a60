#include "platform/client-utils/PercentEncoding.h"

#include <cstddef>

namespace percentencoding {

namespace {

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

}  // namespace

std::string decode(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low < 0) {
            decoded.push_back(text[i]);
        } else {
            decoded.push_back(static_cast<char>(high * 16 + low));
            i += 2;
        }
    }
    return decoded;
}

}  // namespace percentencoding
