#pragma once

#include <string>

#include "platform/csta/CallLogEntryEvent.h"

namespace journal {

class CallLogRemoval;
class CallMap;
class EntryCreation;
class JournalClock;
class JournalLists;
class ListDeletion;
class PhoneSettings;

/// Applies the switch's call-log events to the lists: an entry was added or deleted, or a whole log was
/// deleted. The table in the source lists the events that are applied; every other event is ignored.
///
/// Changes from the switch are not reported back to it, except for the group requests when
/// "system-identifier" is 1.
/// While a whole log is deleted, server call-log mode is suspended; no other thread can change a list
/// meanwhile, so every deletion of a client is reported. Evicted items are reported too,
/// and so is everything that the phone deletes itself.
///
/// Any thread may call. Each event is applied with the call-map lock held, which the caller may hold already,
/// and at a lowered priority (`LoweredPriority`).
class CallLogEvents {
public:
    /// All references are borrowed and outlive this object.
    CallLogEvents(CallMap& calls, PhoneSettings& settings, const JournalClock& clock, EntryCreation& entries,
                  CallLogRemoval& removal, JournalLists& lists, ListDeletion& deletion)
        : m_calls(calls),
          m_settings(settings),
          m_clock(clock),
          m_entries(entries),
          m_removal(removal),
          m_lists(lists),
          m_deletion(deletion) {}

    /// The event is borrowed for the call.
    void handleCallLogEntryEvent(const CallLogEntryEvent* event);

private:
    struct Rule;
    static const Rule kRules[];

    void apply(const CallLogEntryEvent& event);
    [[nodiscard]] std::string entryTimeOf(const CallLogEntryEvent& event) const;

    void addMissed(const CallLogEntryEvent& event);
    void addMissedGroup(const CallLogEntryEvent& event);
    void addReceived(const CallLogEntryEvent& event);
    void addDialled(const CallLogEntryEvent& event);
    void removeMissed(const CallLogEntryEvent& event);
    void removeMissedGroup(const CallLogEntryEvent& event);
    void removeReceived(const CallLogEntryEvent& event);
    void removeDialled(const CallLogEntryEvent& event);
    void clearMissed(const CallLogEntryEvent& event);
    void clearReceived(const CallLogEntryEvent& event);
    void clearDialled(const CallLogEntryEvent& event);

    CallMap& m_calls;
    PhoneSettings& m_settings;
    const JournalClock& m_clock;
    EntryCreation& m_entries;
    CallLogRemoval& m_removal;
    JournalLists& m_lists;
    ListDeletion& m_deletion;
};

}  // namespace journal
