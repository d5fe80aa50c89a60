#include "host/management/SettingRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace host {
namespace {

constexpr std::string_view kTrueOrFalse = "true or false";
constexpr std::string_view kOnOrOff = "on or off";
constexpr std::string_view kNumber = "a number";
constexpr std::string_view kZeroOrOne = "0 or 1";
constexpr std::string_view kZeroToTwo = "0, 1 or 2";
constexpr std::string_view kSoftwareType = "Norlith Qorvex or Norlith SIP";

constexpr std::string_view kText;

struct Setting {
    std::string_view key;
    std::string_view values;
    std::string_view meaning;
};

constexpr std::array<Setting, 23> kSettings{{
    {"bt-hw-state", kOnOrOff, "on: monitors the Bluetooth telephone."},
    {"call-log-control", kText, "Read again with system-identifier; no other effect on this host."},
    {"call-log-enabled", kTrueOrFalse,
     "false: empties the four call lists at once; a SIP phone then files no calls."},
    {"clear-calllog", kTrueOrFalse, "true: empties the four call lists at once; cannot be undone."},
    {"daylight-save", kTrueOrFalse, "true: daylight saving adds daylight-save-minutes to sntp-tz-offset."},
    {"daylight-save-minutes", kNumber,
     "The minutes that daylight saving adds to the offset of the phone's zone."},
    {"delete-missed-when-called", kZeroOrOne,
     "1: the newest missed entry of a caller is deleted when you call back."},
    {"disable-access-calllog", kZeroToTwo, "1 or 2: the line of a Qorvex phone is not monitored; 0: it is."},
    {"forwarding-party-display", kNumber,
     "The party that a forwarded outgoing call shows on a SIP phone: 1 the last, else the first."},
    {"mac-addr", kText, "Delays the first saving of a visitor's call log; this host saves none."},
    {"missed-logging", kZeroOrOne,
     "0: a call answered on another phone of yours is logged as missed, too; 1: it is not."},
    {"mobility-activity", kText, "logonFailed or logoffFailed: reloads the lists and settings."},
    {"mobility-current-user", kText, "unmanaged or all: reloads the lists and settings."},
    {"mobility-user-data-update", kText, "unmanaged or all: reloads the lists and settings."},
    {"reg-number", kText, "Read again with system-identifier; no other effect on this host."},
    {"reload-conversations", kTrueOrFalse, "true: reloads the lists and settings, and is then false again."},
    {"ringcentral-api-sync-call-log", kTrueOrFalse, "true: another journal owns the call log of its users."},
    {"server-based-features", kTrueOrFalse,
     "true: a call that is diverted away from a Qorvex phone is filed as forwarded, not as missed."},
    {"sntp-tz-offset", kNumber,
     "The offset of the phone's zone from UTC in minutes, for local times in the log of a switch."},
    {"software-type", kSoftwareType, "The phone type; restart the journal after a change."},
    {"system-identifier", kNumber,
     "2: the switch keeps the call log itself; 1: it marks which calls were missed."},
    {"voice-mail-e164", kText, "The number of the voice mail, which a phone can compare with others."},
    {"wsi-allow-uc-journal", kTrueOrFalse, "true: another journal owns the call log of its users."},
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
    return std::find_if(kSettings.begin(), kSettings.end(),
                        [key](const auto& each) { return each.key == key; });
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
    return found == kSettings.end() ? kText : found->values;
}

std::string_view meaningOf(std::string_view key) noexcept {
    const auto* const found = find(key);
    return found == kSettings.end() ? kText : found->meaning;
}

bool isUsedByJournal(std::string_view key) noexcept {
    return find(key) != kSettings.end();
}

bool isAccepted(std::string_view key, std::string_view value) noexcept {
    const std::string_view values = acceptedValues(key);
    if (value.empty()) {
        return std::find(kNeverEmpty.begin(), kNeverEmpty.end(), key) == kNeverEmpty.end();
    }
    return values.empty() || (values == kNumber ? isNumber(value) : isOneOf(values, value));
}

}  // namespace host
