#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/csta/CallLogEntryEvent.h"

namespace journal {

/// The entries of the switch's log that wait for the end of their call, in order of arrival.
///
/// Thread-safe: the management empties the queue at any time. An entry leaves the queue before it is applied,
/// so that an entry that cannot be applied does not block those after it.
class PendingCallLogEvents {
public:
    /// Appends `event`. Returns the oldest entry when the queue exceeds `kMaxPending`, else std::nullopt; the
    /// caller applies it, so that none is lost and the order is kept. On a phone that never empties its queue
    /// this is the only limit.
    [[nodiscard]] std::optional<CallLogEntryEvent> append(const CallLogEntryEvent& event) {
        const std::lock_guard lock(m_mutex);
        m_pendingCallLogEvents.push_back(event);
        return m_pendingCallLogEvents.size() > kMaxPending ? takeFrontLocked() : std::nullopt;
    }

    /// Removes and returns the oldest entry; std::nullopt when there is none.
    [[nodiscard]] std::optional<CallLogEntryEvent> takeFront() {
        const std::lock_guard lock(m_mutex);
        return takeFrontLocked();
    }

    void discard() {
        const std::lock_guard lock(m_mutex);
        m_pendingCallLogEvents.clear();
    }

    /// The number of items that a list keeps.
    static constexpr std::size_t kMaxPending = 1000;

private:
    std::optional<CallLogEntryEvent> takeFrontLocked() {
        if (m_pendingCallLogEvents.empty()) {
            return std::nullopt;
        }
        std::optional<CallLogEntryEvent> front(std::move(m_pendingCallLogEvents.front()));
        m_pendingCallLogEvents.pop_front();
        return front;
    }

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::deque<CallLogEntryEvent> m_pendingCallLogEvents;
};

}  // namespace journal
