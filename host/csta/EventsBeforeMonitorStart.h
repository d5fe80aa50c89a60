#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/WireDocument.h"

namespace host {

/// Buffer for events of a monitor whose id is not known yet: a switch may send the first event of a new
/// monitor before its MonitorStartResponse. Limited in size and age. Not thread-safe.
class EventsBeforeMonitorStart {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kMaxAge{2};
    static constexpr std::size_t kMaxEvents = 64;

    void keep(std::string crossRefId, WireDocument event, Clock::time_point now);
    /// Removes and returns the events of that monitor, oldest first.
    [[nodiscard]] std::vector<WireDocument> take(std::string_view crossRefId, Clock::time_point now);
    void clear() { m_events.clear(); }

private:
    struct BufferedEvent {
        std::string crossRefId;
        WireDocument event;
        Clock::time_point since;
    };

    void dropExpired(Clock::time_point now);

    std::deque<BufferedEvent> m_events;
};

}  // namespace host
