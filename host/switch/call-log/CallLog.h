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

/// The simulated switch's log of the calls of one device: received, missed, dialled, and unanswered calls of
/// groups. Every change returns the events that report it to the phones, including a change that a phone
/// requested.
///
/// The phone has a copy of the log and both sides change it at the same time, so a request may arrive after
/// the log has changed. These rules keep both copies equal:
///  - The entries of a party have increasing times, at least one second apart, even if an entry has been
///    deleted.
///  - A request contains a number and a time: it deletes all entries of that number up to that time. Entries
///    that the switch has added since are newer, so they stay in both copies. If a group's entry is meant,
///    only entries of that group are deleted.
///  - The phone that requests a deletion is not notified of it, because it has deleted the entry already: the
///    event would delete another one. The exception is a whole log, whose event undoes entries that are still
///    in transit.
///  - A party has at most 10 entries and a log at most 1,000 parties, as on the phone; the oldest ones are
///    dropped. The entries of a dropped party are reported, because the phone may have fewer parties. A
///    dropped entry of a remaining party is not reported, because the phone drops the same one.
/// Not thread-safe.
class CallLog {
public:
    using Entry = CallLogEntryEvent;
    using Events = std::vector<CallLogEntryEvent>;

    static constexpr std::size_t kMaxEntries = 10;
    static constexpr std::size_t kMaxParties = 1000;

    /// The party of an entry; `group` only for calls of groups.
    struct Party {
        std::string number;
        std::string name;
        std::string group;
    };

    // Changes at the switch. `remove` deletes the newest entry of the number.
    [[nodiscard]] Events add(Entry::_LogTarget log, const Party& party);
    [[nodiscard]] Events remove(Entry::_LogTarget log, const std::string& number);
    [[nodiscard]] Events clear(Entry::_LogTarget log);

    /// Applies a phone's request. Returns the events for the other phones, and `std::nullopt` if the switch
    /// has no such log or service.
    [[nodiscard]] std::optional<Events> apply(const CallLogEntryRequest& request);

    /// The entries as sent to the phones, by log, the newest party first.
    [[nodiscard]] Events entries() const;

    /// True for the event of a whole log.
    [[nodiscard]] static bool isOfWholeLog(const Entry& event);

private:
    /// The entries of one party, newest first; the parties of one log, the most recent caller first.
    using Entries = std::deque<Entry>;
    using Parties = std::list<Entries>;

    [[nodiscard]] std::string nextTime(const std::string& number);
    [[nodiscard]] Events removeUpTo(const CallLogEntryRequest& request);
    /// The entries of the number in that log, oldest first.
    [[nodiscard]] Events entriesOf(Entry::_LogTarget log, const std::string& number) const;
    [[nodiscard]] std::optional<Entry> groupEntryOf(const CallLogEntryRequest& request) const;
    [[nodiscard]] Events removeGroup(const CallLogEntryRequest& request);
    /// Removes the matching entries from the log.
    template <typename Predicate>
    [[nodiscard]] Events removeIf(Entry::_LogTarget log, Predicate matches);
    [[nodiscard]] Entry deletionOf(const Entry& entry) const;

    std::map<Entry::_LogTarget, Parties> m_logs;
    std::map<std::string, std::chrono::sys_seconds> m_lastTimes;
};

}  // namespace host
