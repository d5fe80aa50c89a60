#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace host {

/// A bounded buffer of the newest events in text/event-stream format, for clients that reconnect.
///
/// A position is the number of events before it. The id of an event is the ring's mark and the position after
/// the event: "18f3c2a-7". A client that sends the id of the last event it got continues after that event,
/// and an id of an earlier run of the server is never valid in this run.
///
/// Not thread-safe.
class EventRing {
public:
    struct Limits {
        std::size_t events = 1024;
        std::size_t bytes = 4U * 1024U * 1024U;
    };

    /// Requires: `mark` consists of letters and digits.
    EventRing(std::string mark, Limits limits) : m_mark(std::move(mark)), m_limits(limits) {}

    /// Requires: `data` has no line breaks.
    void append(const std::string& event, const std::string& data);

    /// Drops all events; the ids of earlier ones are no longer valid.
    void forget();

    /// The position after the newest event.
    [[nodiscard]] std::uint64_t end() const noexcept { return m_first + m_events.size(); }
    [[nodiscard]] std::string idAt(std::uint64_t position) const;
    /// The position after the event of this id; std::nullopt if the events from there on are no longer
    /// stored, or the id is not one of this ring.
    [[nodiscard]] std::optional<std::uint64_t> positionOf(const std::string& id) const;

    struct Batch {
        std::string text;
        /// The position after the batch.
        std::uint64_t next = 0;
    };
    /// The events from `position` on: as many as fit into `maxBytes`, at least one if there is one.
    /// std::nullopt if the first of them is no longer stored.
    [[nodiscard]] std::optional<Batch> from(std::uint64_t position, std::size_t maxBytes) const;

private:
    const std::string m_mark;
    const Limits m_limits;
    std::uint64_t m_first = 0;
    std::deque<std::string> m_events;
    std::size_t m_bytes = 0;
};

}  // namespace host
