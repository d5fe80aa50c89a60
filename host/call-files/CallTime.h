#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Times and durations as files write them. Pure functions; any thread may call.
namespace host {

/// The rules for a time without a zone, or in a format of its own. A plain value.
struct TimeReading {
    /// The time in UTC of a time in the zone of the file. Empty: a time without a zone is no time.
    std::function<std::chrono::sys_seconds(std::chrono::local_seconds)> toUtc;
    /// A format of `strptime`. Empty: the formats that `timeOf` lists.
    std::string format;
};

/// Reads a time. Without a format of its own it is one of
///
///     2026-11-21T05:22:05Z    2026-11-21 06:22:05+01:00    2026/11/21 06:22    21.11.2026 06:22:05
///     1795238525 and 1795238525123 (seconds and milliseconds since 1970)
///
/// with or without seconds, a fraction and a zone (Z or an offset). std::nullopt for any other text, and for
/// a time before 1970 or after the year 9999.
[[nodiscard]] std::optional<std::chrono::sys_seconds> timeOf(std::string_view text,
                                                             const TimeReading& reading);

/// Reads "75", "75.4", "1:15" or "0:01:15"; std::nullopt for any other text, and for 10^9 seconds or more.
[[nodiscard]] std::optional<std::chrono::seconds> durationOf(std::string_view text);

/// "1:15", or "1:01:15" from an hour on.
[[nodiscard]] std::string durationText(std::chrono::seconds duration);

}  // namespace host
