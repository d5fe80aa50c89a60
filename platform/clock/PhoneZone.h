#pragma once

/// How many minutes the phone's zone is ahead of UTC, by the values of its settings "sntp-tz-offset" and
/// "daylight-save-minutes" (0 while "daylight-save" is off). The offset counts minutes; no zone is further ahead than 14
/// hours, so a greater one counts seconds. Pure; any thread may call.
[[nodiscard]] constexpr long minutesAheadOfUtc(int offset, int daylightSaveMinutes) noexcept {
    constexpr int kMostMinutes = 14 * 60;
    const bool inSeconds = offset > kMostMinutes || offset < -kMostMinutes;
    return static_cast<long>(inSeconds ? offset / 60 : offset) + daylightSaveMinutes;
}
