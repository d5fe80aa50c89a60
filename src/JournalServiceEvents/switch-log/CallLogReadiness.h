#pragma once

#include <atomic>

#include "src/JournalServiceEvents/switch-log/PendingCallLogEvents.h"

namespace journal {

/// Controls when the entries of the switch's own call log are applied. Thread-safe: the event handlers write
/// with the call-map lock held, the management without it.
struct CallLogReadiness {
    /// True from the end of a call until an entry is applied or a call is offered. While it is false, entries
    /// wait in `m_pendingCallLogEvents`.
    std::atomic<bool> m_callLogEventsReady{false};
    PendingCallLogEvents m_pendingCallLogEvents;
};

}  // namespace journal
