#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/csta/CallLogEntryEvent.h"

namespace journal {

/// The entries of the switch's log that wait for the end of the call they belong to, in order of arrival.
///
/// Threads: any; synchronised by itself, because the management empties it at any time. An entry leaves the queue
/// before it is applied, so that one that cannot be applied does not stand in the way of those behind it.
class PendingCallLogEvents {
public:
    /// Answers the oldest entry when `event` makes one too many: on a phone that never replays its queue, nothing else
    /// would bound it. The caller applies it, so that none is lost and the order is kept.
    [[nodiscard]] std::optional<CallLogEntryEvent> append(const CallLogEntryEvent& event) {
        const std::lock_guard lock(m_mutex);
        m_pendingCallLogEvents.push_back(event);
        return m_pendingCallLogEvents.size() > kMaxPending ? takeFrontLocked() : std::nullopt;
    }

    /// The oldest entry, or nothing.
    [[nodiscard]] std::optional<CallLogEntryEvent> takeFront() {
        const std::lock_guard lock(m_mutex);
        return takeFrontLocked();
    }

    void discard() {
        const std::lock_guard lock(m_mutex);
        m_pendingCallLogEvents.clear();
    }

    /// As many as a list holds items.
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
