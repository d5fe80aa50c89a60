#pragma once

#include <string>

namespace journal {

class JournalClock;
class JournalLists;
class PhoneSettings;

/// Removes single calls from the lists because the switch, which keeps the log, has deleted them, and does
/// not report the removals back. The sequence is the same for all lists, in one `ListTransaction`:
///  1. search the items from the newest, and each one's calls, for the first that has the subscriber's
///     number, byte for byte, and is not later than the entry time: the switch names an entry by its number,
///     and its clock may be ahead;
///  2. remove that call. An item with other calls is written and moves to the place that the newest of them
///     gives it; an item without one is deleted in the list and in the database;
///  3. notify the observers.
///
/// A time that cannot be read, the event's or a call's, matches no call; without a clock no call matches.
///
/// Any thread may call; the caller may hold the call-map lock, no other lock.
class CallLogRemoval {
public:
    /// All references are borrowed and outlive this object.
    CallLogRemoval(const PhoneSettings& settings, const JournalClock& clock, JournalLists& lists)
        : m_settings(settings), m_clock(clock), m_lists(lists) {}

    void removeMissedCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    void removeDialledCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    void removeReceivedCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    /// The same among the calls of groups. The item's row is deleted in any case; what remains of it gets a
    /// new one.
    void removeMissedGroupCallEntry(const std::string& subscriberNumber, const std::string& entryTime);

private:
    template <typename Policy>
    void remove(const char* operation, const std::string& number, const std::string& entryTime);
    template <typename Item>
    [[nodiscard]] bool isNewer(const Item& a, const Item& b) const;
    [[nodiscard]] bool isNotLater(const char* operation, const std::string& entryTime,
                                  const std::string& occurrenceTime) const;
    template <typename Info>
    [[nodiscard]] std::string timeOf(const Info& info) const;

    const PhoneSettings& m_settings;
    const JournalClock& m_clock;
    JournalLists& m_lists;
};

}  // namespace journal
