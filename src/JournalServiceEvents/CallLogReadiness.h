#pragma once

#include <atomic>

namespace journal {

/// Whether an event of the switch's own call log that needs a call to belong to may be applied at once.
/// Written by the event handlers with the call-map lock held and by the management without it: any thread.
struct CallLogReadiness {
    std::atomic<bool> m_callLogEventsReady{false};
};

}  // namespace journal
