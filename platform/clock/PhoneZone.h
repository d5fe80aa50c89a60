#pragma once

/// The minutes that the phone's zone is ahead of UTC, from its settings "sntp-tz-offset" and
/// "daylight-save-minutes" (0 while "daylight-save" is off). The offset counts minutes; no zone is more than
/// 14 hours ahead, so a greater value counts seconds. Pure; any thread may call.
[[nodiscard]] constexpr long minutesAheadOfUtc(int offset, int daylightSaveMinutes) noexcept {
    constexpr int kMostMinutes = 14 * 60;
    const bool inSeconds = offset > kMostMinutes || offset < -kMostMinutes;
    return static_cast<long>(inSeconds ? offset / 60 : offset) + daylightSaveMinutes;
}
