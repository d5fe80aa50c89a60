#include "host/management/SettingRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace host {
namespace {

constexpr std::string_view kTrueOrFalse = "true or false";
constexpr std::string_view kOnOrOff = "on or off";
constexpr std::string_view kNumber = "a number";
constexpr std::string_view kZeroOrOne = "0 or 1";

constexpr std::string_view kText;

constexpr std::array<std::pair<std::string_view, std::string_view>, 23> kValues{{
    {"bt-hw-state", kOnOrOff},
    {"call-log-control", kText},
    {"call-log-enabled", kTrueOrFalse},
    {"clear-calllog", kTrueOrFalse},
    {"daylight-save", kTrueOrFalse},
    {"daylight-save-minutes", kNumber},
    {"delete-missed-when-called", kZeroOrOne},
    {"disable-access-calllog", kNumber},
    {"forwarding-party-display", kNumber},
    {"mac-addr", kText},
    {"missed-logging", kZeroOrOne},
    {"mobility-activity", kText},
    {"mobility-current-user", kText},
    {"mobility-user-data-update", kText},
    {"reg-number", kText},
    {"reload-conversations", kTrueOrFalse},
    {"ringcentral-api-sync-call-log", kTrueOrFalse},
    {"server-based-features", kTrueOrFalse},
    {"sntp-tz-offset", kNumber},
    {"software-type", kText},
    {"system-identifier", kNumber},
    {"voice-mail-e164", kText},
    {"wsi-allow-uc-journal", kTrueOrFalse},
}};

bool isNumber(std::string_view text) noexcept {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

auto find(std::string_view key) noexcept {
    return std::find_if(kValues.begin(), kValues.end(),
                        [key](const auto& each) { return each.first == key; });
}

/// `values` is "A or B".
bool isOneOf(std::string_view values, std::string_view value) noexcept {
    constexpr std::string_view kOr = " or ";
    const std::size_t at = values.find(kOr);
    return value == values.substr(0, at) || value == values.substr(at + kOr.size());
}

}  // namespace

std::string_view acceptedValues(std::string_view key) noexcept {
    const auto* const found = find(key);
    return found == kValues.end() ? kText : found->second;
}

bool isUsedByJournal(std::string_view key) noexcept {
    return find(key) != kValues.end();
}

bool isAccepted(std::string_view key, std::string_view value) noexcept {
    const std::string_view values = acceptedValues(key);
    return values.empty() || value.empty() || (values == kNumber ? isNumber(value) : isOneOf(values, value));
}

}  // namespace host
