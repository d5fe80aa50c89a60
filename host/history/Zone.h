#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// A time zone with its daylight saving. A value that is cheap to copy; any thread may call.
class Zone {
public:
    /// The zone of an IANA name ("Europe/Berlin"); std::nullopt for another text.
    [[nodiscard]] static std::optional<Zone> named(std::string_view name);
    /// The zone of the machine; UTC if it is not known.
    [[nodiscard]] static Zone ofMachine();

    [[nodiscard]] const std::string& name() const noexcept;

    /// A time of day that the zone skips is read as if it did not skip it, of one that it repeats the first
    /// one.
    [[nodiscard]] std::chrono::sys_seconds utcOf(std::chrono::local_seconds time) const;
    [[nodiscard]] std::chrono::local_seconds localOf(std::chrono::sys_seconds time) const;

    /// From a time on, local time is UTC plus `ahead`.
    struct Offset {
        std::chrono::sys_seconds from;
        std::chrono::seconds ahead;
    };
    /// The offsets of a period in their order. The first one applies also before its beginning.
    [[nodiscard]] std::vector<Offset> offsets(std::chrono::sys_seconds from,
                                              std::chrono::sys_seconds until) const;

private:
    struct Rules;
    explicit Zone(std::shared_ptr<const Rules> rules) noexcept : m_rules(std::move(rules)) {}

    std::shared_ptr<const Rules> m_rules;
};

}  // namespace host
