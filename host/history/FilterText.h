#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/history/CallFilter.h"
#include "host/history/Zone.h"

namespace host {

/// A parameter of a filter that cannot be read. `what()` is a sentence for the user: the parameter and its
/// valid values.
class FilterError : public std::runtime_error {
public:
    FilterError(std::string parameter, const std::string& message)
        : std::runtime_error(parameter + ' ' + message), m_parameter(std::move(parameter)) {}

    [[nodiscard]] const std::string& parameter() const noexcept { return m_parameter; }

private:
    std::string m_parameter;
};

/// The parameters that select calls: "since", "until", "number", "search", "list", "direction", "viewed",
/// "min-duration", and "tz".
[[nodiscard]] const std::vector<std::string>& filterParameters();
/// These, and "limit", "cursor" and "sort".
[[nodiscard]] const std::vector<std::string>& queryParameters();

/// Reads filters from their texts, which are the same in the HTTP API and the command line
/// (docs/http-api.md). Other parameters are ignored. Every operation throws `FilterError`. A plain value; any
/// thread may call.
class FilterText {
public:
    using Parameters = std::map<std::string, std::string>;

    /// `zone` is the zone of a filter without "tz".
    FilterText(std::chrono::sys_seconds now, Zone zone) : m_now(now), m_zone(std::move(zone)) {}

    [[nodiscard]] Zone zone(const Parameters& parameters) const;
    [[nodiscard]] CallFilter filter(const Parameters& parameters) const;
    [[nodiscard]] CallQuery query(const Parameters& parameters) const;

    /// The parameter "limit", from 1 to 1000.
    [[nodiscard]] static std::size_t limit(const Parameters& parameters, std::size_t fallback);

private:
    const std::chrono::sys_seconds m_now;
    const Zone m_zone;
};

/// A time as a filter has it: "2026-11-21" (the begin of the day), "2026-11-21T10:00", with seconds, with "Z"
/// or an offset from UTC; "7d", "12h", "30m" or "2w" back from now; "today", "yesterday". Texts without an
/// offset are times of the zone. std::nullopt for another text.
[[nodiscard]] std::optional<std::chrono::sys_seconds> timeOfText(std::string_view text,
                                                                 std::chrono::sys_seconds now,
                                                                 const Zone& zone);

/// "90", "90s", "1m30s", "1h". std::nullopt for another text.
[[nodiscard]] std::optional<std::chrono::seconds> durationOfText(std::string_view text);

}  // namespace host
