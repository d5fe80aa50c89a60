#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/CallLogEntryRequest.h"

namespace host {

/// The log that the simulated switch keeps of the calls of one device: received, missed, dialled, and the calls of
/// groups that nobody answered. Every change answers the events that tell of it, whoever made it.
///
/// The phone keeps the same log and both sides change it at the same time, so a request may meet a log that is already
/// another one. These rules keep the two equal nevertheless:
///  - A party's entries have growing times, a second apart at least, even when one of them has been deleted since.
///  - A request names a number and a time: all entries of that number up to that time go. What the switch has filed
///    since is younger, so it stays here as it will stay, or come, there.
///  - A request for a whole log is answered with the event that clears it, too: it undoes what was on its way.
///  - A party keeps its newest 10 entries and a log its newest 1,000 parties, as on the phone. What leaves with a party
///    is told, because the phone may have room left; what a party loses itself is the same on both sides.
/// Not thread-safe.
class CallLog {
public:
    using Entry = CallLogEntryEvent;
    using Events = std::vector<CallLogEntryEvent>;

    static constexpr std::size_t kMaxEntries = 10;
    static constexpr std::size_t kMaxParties = 1000;

    /// Who an entry is about; `group` only for the calls of groups.
    struct Party {
        std::string number;
        std::string name;
        std::string group;
    };

    // What happens at the switch. Deleting takes the newest entry of the number.
    [[nodiscard]] Events file(Entry::_LogTarget log, const Party& party);
    [[nodiscard]] Events remove(Entry::_LogTarget log, const std::string& number);
    [[nodiscard]] Events clear(Entry::_LogTarget log);

    /// What a phone asks for; nothing when the switch has no such log or service.
    [[nodiscard]] std::optional<Events> apply(const CallLogEntryRequest& request);

    /// As they were told, log by log, the newest party first.
    [[nodiscard]] Events entries() const;

private:
    /// The entries of one party, newest first; the parties of one log, the one that called last first.
    using Entries = std::deque<Entry>;
    using Parties = std::list<Entries>;

    [[nodiscard]] std::string nextTime(const std::string& number);
    [[nodiscard]] Events removeUpTo(const CallLogEntryRequest& request);
    [[nodiscard]] Events removeGroup(const CallLogEntryRequest& request);
    /// Takes the entries that `isMeant` out of the log.
    template <typename IsMeant>
    [[nodiscard]] Events take(Entry::_LogTarget log, IsMeant isMeant);
    [[nodiscard]] static Entry deletionOf(const Entry& entry);

    std::map<Entry::_LogTarget, Parties> m_logs;
    std::map<std::string, std::chrono::sys_seconds> m_lastTimes;
};

}  // namespace host
