#include <cstddef>

#include "host/csta-events/EventBuilder.h"
#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/WireDocument.h"
#include "host/csta-wire/XmlText.h"
#include "host/limits/TextLimits.h"

namespace host {

namespace {

/// Returns an empty string unless `hex` is pairs of hexadecimal digits, possibly with white space, that
/// encode text.
std::string textFromHex(std::string_view hex) {
    std::string digits;
    for (const char c : hex) {
        if (!isXmlBlank(c)) {
            digits.push_back(c);
        }
    }
    std::string text;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        const int high = hexDigitValue(digits[i]);
        const int low = hexDigitValue(digits[i + 1]);
        if (high < 0 || low < 0) {
            return {};
        }
        text.push_back(static_cast<char>(high * 16 + low));
    }
    return digits.size() % 2 == 0 && isXmlUtf8(text) ? text : std::string();
}

std::string wholeText(pugi::xml_node root) {
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
    return textFromHex(trimmed(childNamed(data, "string").text().get()));
}

}  // namespace

std::string privateText(pugi::xml_node root) {
    return std::string(limits::cut(wholeText(root), limits::kTextBytes));
}

}  // namespace host
