#pragma once

#include <functional>
#include <string>
#include <utility>

namespace journal {
class JournalClock;
class JournalLists;
class ListPersistence;
class PhoneSettings;
}  // namespace journal
class CallInfo;
class ObserverNotifierIfc;

namespace journal {

/// Takes single calls out of the lists because the switch, which keeps the log, has deleted them. Nothing goes back to the
/// switch. All lists go one road:
///  1. walk the items from the newest, and each one's calls, to the first that has the subscriber's number, byte for
///     byte, and is not later than the entry time: the switch names an entry by its number, and its clock may be ahead;
///  2. take that call out. An item that has others goes to the place that the newest of them gives it and is
///     written; an item that has none goes, in the list and in the database;
///  3. with the list released tell the observers.
///
/// A time that cannot be read, the event's or a call's, matches nothing; nor does anything without a clock.
///
/// Threads: any; the caller may hold the call-map lock, no other.
class CallLogRemoval {
public:
    /// All parts are borrowed and outlive this one.
    struct Parts {
        const PhoneSettings& settings;
        const JournalClock& clock;
        JournalLists& lists;
        ListPersistence& persistence;
        ObserverNotifierIfc& notifier;
        /// Loads the lists when nobody has needed them before: a call that only the database has is to go from there.
        std::function<void()> loadAtFirstNeed{};
    };

    explicit CallLogRemoval(Parts parts) : m_parts(std::move(parts)) {}

    void removeMissedCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    void removeDialledCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    void removeReceivedCallEntry(const std::string& subscriberNumber, const std::string& entryTime);
    /// The same among the calls of groups. The item's row is deleted in any case; what remains of it gets a new one.
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

    const Parts m_parts;
};

}  // namespace journal
