#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "host/csta-wire/WireDocument.h"

namespace host {

/// Events that came before the answer which tells whose they are: a switch may send the first event of a new
/// monitor ahead of its MonitorStartResponse. Keeps few and not for long. Not thread-safe.
class EarlyEvents {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kKeptFor{2};
    static constexpr std::size_t kKept = 64;

    void keep(std::string crossRefId, WireDocument event, Clock::time_point now);
    /// The events of that monitor, oldest first; they are no longer kept.
    [[nodiscard]] std::vector<WireDocument> take(std::string_view crossRefId, Clock::time_point now);
    void clear() { m_events.clear(); }

private:
    struct Early {
        std::string crossRefId;
        WireDocument event;
        Clock::time_point since;
    };

    void forgetOld(Clock::time_point now);

    std::deque<Early> m_events;
};

}  // namespace host
