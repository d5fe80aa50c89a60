#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <string>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/CallLogEntryRequest.h"

namespace host {

/// Recognises the echoes of the phone's own deletions. A switch that keeps the call log may report a deletion
/// to the phone that requested it. That entry is already deleted at the phone, so the event would delete
/// another entry of the same number.
///
/// An event is an echo if it follows a request, or the response to it, within 10 s, and reports the deletion
/// of what was requested:
///
///     request                    event
///     an entry: log, number      the same log (1 and 2 are one, so are 4, 5 and 6) and number, and not
///     and time                   later than the entry: the request is about all of the number up to its time
///     a missed entry whose       log 7 and the number: the phone assigns its own time to the calls of
///     time is not the switch's   groups, so this one may be a group's
///     an entry of a group        log 7, the number, and the group if the event names one
///     a whole log                none: the entries that the switch added before it go, too
///
/// Not thread-safe.
class CallLogEchoes {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kLifetime{10};

    /// Call when the request is sent, and again when the switch has responded.
    void requested(const CallLogEntryRequest& request, Clock::time_point now);
    /// Call for each event, in order: additions show which times are those of the switch.
    [[nodiscard]] bool isEcho(const CallLogEntryEvent& event, Clock::time_point now);

private:
    /// The most recent additions that are remembered. An older missed entry counts as one of a group, too.
    static constexpr std::size_t kKeptAdditions = 256;

    struct Deletion {
        CallLogEntryEvent::_LogTarget log;
        std::string number;
        std::string time;
        std::string group;
        /// True if the entry may be one of a group.
        bool mayBeOfGroup;
        Clock::time_point end;
    };
    struct Addition {
        std::string number;
        std::string time;

        [[nodiscard]] bool operator==(const Addition&) const = default;
    };

    void removeOld(Clock::time_point now);
    void remember(const CallLogEntryEvent& added);
    [[nodiscard]] static bool reports(const CallLogEntryEvent& event, const Deletion& deletion);

    std::deque<Deletion> m_deletions;
    /// Of the missed calls that are not those of groups.
    std::deque<Addition> m_additions;
};

}  // namespace host
