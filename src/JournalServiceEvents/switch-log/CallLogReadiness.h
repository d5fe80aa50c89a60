#pragma once

#include <atomic>

#include "src/JournalServiceEvents/switch-log/PendingCallLogEvents.h"

namespace journal {

/// The flag that an entry of the switch's own call log may be applied although it needs a call to belong to,
/// and the entries that wait while it is clear. Thread-safe: the event handlers write with the call-map lock
/// held, the management without it.
struct CallLogReadiness {
    std::atomic<bool> m_callLogEventsReady{false};
    PendingCallLogEvents m_pendingCallLogEvents;
};

}  // namespace journal
