#pragma once

#include <atomic>

#include "src/JournalServiceEvents/switch-log/PendingCallLogEvents.h"

namespace journal {

/// Whether an event of the switch's own call log that needs a call to belong to may be applied at once, and the events
/// that wait because it may not. Written by the event handlers with the call-map lock held and by the management
/// without it: any thread.
struct CallLogReadiness {
    std::atomic<bool> m_callLogEventsReady{false};
    PendingCallLogEvents m_pendingCallLogEvents;
};

}  // namespace journal
