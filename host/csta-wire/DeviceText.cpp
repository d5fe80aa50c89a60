#include "host/csta-wire/DeviceText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "host/csta-wire/XmlText.h"
#include "host/limits/TextLimits.h"
#include "platform/client-utils/PercentEncoding.h"

namespace host {

namespace {

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool takeScheme(std::string_view& text, std::string_view scheme) {
    if (text.size() < scheme.size() || !std::equal(scheme.begin(), scheme.end(), text.begin(),
                                                   [](char a, char b) { return a == lower(b); })) {
        return false;
    }
    text.remove_prefix(scheme.size());
    return true;
}

std::string_view upTo(std::string_view text, std::string_view ends) {
    return text.substr(0, text.find_first_of(ends));
}

std::string digitsOf(std::string_view text) {
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), isDigit);
    return digits;
}

/// True for a name like "+ 30 (990) 100" of the number 30990100.
bool repeatsNumber(std::string_view name, std::string_view number) {
    const bool numberLike = std::all_of(name.begin(), name.end(), [](char c) {
        return isDigit(c) || std::string_view("+ -()/.").find(c) != std::string_view::npos;
    });
    return numberLike && digitsOf(name) == digitsOf(number);
}

DeviceText bracketForm(std::string_view text) {
    text.remove_prefix(2);
    const std::size_t bracket = text.find('>');
    DeviceText device;
    device.number = trimmed(upTo(text.substr(0, bracket), "!&/%;"));
    if (bracket != std::string_view::npos) {
        device.name = trimmed(upTo(text.substr(bracket + 1), ";"));
    }
    if (repeatsNumber(device.name, device.number)) {
        device.name.clear();
    }
    device.name.resize(limits::cut(device.name, limits::kNameBytes).size());
    return device;
}

/// "4750:switch1:192.0.2.2:0" is a compound, "abc:def" is not.
std::string_view withoutCompound(std::string_view text) {
    const std::string_view head = upTo(text, ":");
    return !head.empty() && std::all_of(head.begin(), head.end(), isDigit) ? head : text;
}

DeviceText withoutLimit(std::string_view text) {
    if (text.substr(0, 2) == "N<") {
        return bracketForm(text);
    }
    if (takeScheme(text, "tel:")) {
        return {std::string(trimmed(upTo(text, ";?"))), {}};
    }
    if (takeScheme(text, "sip:") || takeScheme(text, "sips:")) {
        return {percentencoding::decode(upTo(text, "@;?")), {}};
    }
    return {std::string(trimmed(withoutCompound(upTo(text, ";")))), {}};
}

}  // namespace

DeviceText parseDeviceText(std::string_view text) {
    DeviceText device = withoutLimit(trimmed(text));
    device.number.resize(limits::cut(device.number, limits::kNumberBytes).size());
    return device;
}

std::string deviceText(std::string_view number, std::string_view name) {
    if (name.empty()) {
        return std::string(number);
    }
    std::string text = std::string("N<").append(number).append(">").append(name);
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(number.size() + 3), text.end(), ';', ',');
    return text;
}

std::string comparableNumber(std::string_view text) {
    std::string number;
    for (const char c : parseDeviceText(text).number) {
        if (std::string_view(" -()/.").find(c) == std::string_view::npos) {
            number.push_back(lower(c));
        }
    }
    return number;
}

bool hasValidPort(std::string_view address) {
    const std::size_t at = address.find('@');
    address.remove_prefix((at == std::string_view::npos ? address.find(':') : at) + 1);
    address = upTo(address, ";?>");
    // An IPv6 address has colons inside its brackets.
    const std::size_t bracket = address.find(']');
    const std::size_t colon = address.find(':', bracket == std::string_view::npos ? 0 : bracket);
    if (colon == std::string_view::npos) {
        return true;
    }
    const std::string_view text = address.substr(colon + 1);
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    return error == std::errc() && end == text.data() + text.size() && port != 0;
}

}  // namespace host
