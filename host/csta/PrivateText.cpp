#include <cctype>
#include <cstddef>

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta-wire/XmlText.h"
#include "host/csta/EventBuilder.h"

namespace host {

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int lower = std::tolower(static_cast<unsigned char>(c));
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Empty unless the text is pairs of hexadecimal digits (with white space, which loggers insert) that make a text.
std::string textFromHex(std::string_view hex) {
    std::string digits;
    for (const char c : hex) {
        if (!isXmlBlank(c)) {
            digits.push_back(c);
        }
    }
    std::string text;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        const int high = hexValue(digits[i]);
        const int low = hexValue(digits[i + 1]);
        if (high < 0 || low < 0) {
            return {};
        }
        text.push_back(static_cast<char>(high * 16 + low));
    }
    return digits.size() % 2 == 0 && isXmlUtf8(text) ? text : std::string();
}

}  // namespace

std::string privateText(pugi::xml_node root) {
    const pugi::xml_node data = privateDataOf(root);
    const pugi::xml_node own = childNamed(data, "private");
    const pugi::xml_node status =
        own.find_node([](pugi::xml_node node) { return localName(node) == "callStatus"; });
    if (status) {
        return std::string(trimmed(status.text().get()));
    }
    if (const std::string_view text = trimmed(own.text().get()); !text.empty()) {
        return std::string(text);
    }
    return textFromHex(childText(data, "string"));
}

}  // namespace host
