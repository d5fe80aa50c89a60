#include "host/switch/traffic/TrafficOptions.h"

#include <charconv>
#include <system_error>

namespace host {

namespace {

constexpr std::uint32_t kMaxDevices = 100'000;
constexpr std::size_t kMaxDigits = 9;

std::optional<std::uint32_t> readNumber(std::string_view text) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsed == end && text.size() <= kMaxDigits ? std::optional(number)
                                                                              : std::nullopt;
}

/// With the leading zeros of `first`.
std::string deviceNumber(std::uint32_t number, std::size_t digits) {
    std::string text = std::to_string(number);
    return text.size() < digits ? text.insert(0, digits - text.size(), '0') : text;
}

}  // namespace

std::optional<std::vector<std::string>> readDeviceRange(std::string_view text) {
    constexpr std::string_view kUntil = "..";
    const std::size_t until = text.find(kUntil);
    if (until == std::string_view::npos) {
        return std::nullopt;
    }
    const std::optional<std::uint32_t> first = readNumber(text.substr(0, until));
    const std::optional<std::uint32_t> last = readNumber(text.substr(until + kUntil.size()));
    if (!first || !last || *last < *first || *last - *first >= kMaxDevices) {
        return std::nullopt;
    }
    std::vector<std::string> devices;
    for (std::uint32_t number = *first; number <= *last; ++number) {
        devices.push_back(deviceNumber(number, until));
    }
    return devices;
}

}  // namespace host
