#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace host {

/// The newest events of the stream in the form of text/event-stream, kept for clients that were away for a while.
///
/// A position counts the events before it. The id of an event is the position behind it, after the ring's own mark:
/// "18f3c2a-7". So a client that shows the last id it saw says where to go on, and an id of an earlier run of the server is
/// never taken for one of this run.
///
/// One thread at a time.
class EventRing {
public:
    struct Limits {
        std::size_t events = 1024;
        std::size_t bytes = 4U * 1024U * 1024U;
    };

    /// `mark` is letters and digits.
    EventRing(std::string mark, Limits limits) : m_mark(std::move(mark)), m_limits(limits) {}

    /// `data` has no line breaks.
    void append(const std::string& event, const std::string& data);

    /// The position behind the newest event.
    [[nodiscard]] std::uint64_t end() const noexcept { return m_first + m_events.size(); }
    [[nodiscard]] std::string idAt(std::uint64_t position) const;
    /// Where a client goes on that saw this id last; nothing when what it missed is no longer kept, or the id is none of ours.
    [[nodiscard]] std::optional<std::uint64_t> positionOf(const std::string& id) const;

    struct Batch {
        std::string text;
        /// The position behind it.
        std::uint64_t next = 0;
    };
    /// The events from `position` on: as many as fit into `maxBytes`, one at least if there is one. Nothing when the first of
    /// them is no longer kept.
    [[nodiscard]] std::optional<Batch> from(std::uint64_t position, std::size_t maxBytes) const;

private:
    const std::string m_mark;
    const Limits m_limits;
    std::uint64_t m_first = 0;
    std::deque<std::string> m_events;
    std::size_t m_bytes = 0;
};

}  // namespace host
