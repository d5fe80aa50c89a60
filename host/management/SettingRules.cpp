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
constexpr std::string_view kZeroToTwo = "0, 1 or 2";
constexpr std::string_view kSoftwareType = "Norlith Qorvex or Norlith SIP";

constexpr std::string_view kText;

constexpr std::array<std::pair<std::string_view, std::string_view>, 23> kValues{{
    {"bt-hw-state", kOnOrOff},
    {"call-log-control", kText},
    {"call-log-enabled", kTrueOrFalse},
    {"clear-calllog", kTrueOrFalse},
    {"daylight-save", kTrueOrFalse},
    {"daylight-save-minutes", kNumber},
    {"delete-missed-when-called", kZeroOrOne},
    {"disable-access-calllog", kZeroToTwo},
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
    {"software-type", kSoftwareType},
    {"system-identifier", kNumber},
    {"voice-mail-e164", kText},
    {"wsi-allow-uc-journal", kTrueOrFalse},
}};

/// Keys for which the journal takes an empty value for another one than the default.
constexpr std::array<std::string_view, 3> kNeverEmpty{"disable-access-calllog", "forwarding-party-display",
                                                      "software-type"};

bool isNumber(std::string_view text) noexcept {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

auto find(std::string_view key) noexcept {
    return std::find_if(kValues.begin(), kValues.end(),
                        [key](const auto& each) { return each.first == key; });
}

/// `values` is "A or B" or "A, B or C".
bool isOneOf(std::string_view values, std::string_view value) noexcept {
    for (const std::string_view separator : {std::string_view(", "), std::string_view(" or ")}) {
        for (std::size_t at = values.find(separator); at != std::string_view::npos;
             at = values.find(separator)) {
            if (value == values.substr(0, at)) {
                return true;
            }
            values.remove_prefix(at + separator.size());
        }
    }
    return value == values;
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
    if (value.empty()) {
        return std::find(kNeverEmpty.begin(), kNeverEmpty.end(), key) == kNeverEmpty.end();
    }
    return values.empty() || (values == kNumber ? isNumber(value) : isOneOf(values, value));
}

}  // namespace host
