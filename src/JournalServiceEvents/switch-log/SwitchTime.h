#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/clock/PhoneZone.h"
#include "platform/csta/CallLogEntryEvent.h"
#include "src/JournalService/base/PhoneSettings.h"

namespace journal {

/// Returns the time text of a switch's log entry in a form that can be compared with every other: the phone's
/// zone, as the management sets it now, is appended to a local time. Every other text, and one that has a
/// zone, is returned unchanged. The lists keep the text as the switch wrote it, because the switch identifies
/// its entries by it.
[[nodiscard]] inline std::string comparableTime(const std::string& text, int format,
                                                const SettingsSnapshot& settings) {
    constexpr std::size_t kEndOfDate = 10;
    if (format != CallLogEntryEvent::eTimeLocal ||
        text.find_first_of("Zz+-", kEndOfDate) != std::string::npos) {
        return text;
    }
    const long ahead = minutesAheadOfUtc(settings.m_tzOffset, settings.m_daylightSaveMinutes);
    std::array<char, 48> zone{};
    std::snprintf(zone.data(), zone.size(), "%c%02ld:%02ld", ahead < 0 ? '-' : '+', std::labs(ahead) / 60,
                  std::labs(ahead) % 60);
    return text + zone.data();
}

}  // namespace journal
