#pragma once

#include <string>

#include "platform/csta/CallLogEntryEvent.h"

class ObserverNotifierIfc;

namespace journal {

class CallLogRemoval;
class CallMap;
class EntryCreation;
class JournalClock;
class JournalLists;
class PhoneSettings;

/// Mirrors in the lists what happened in the call log that the switch keeps: an entry added, one deleted, or a whole
/// log. The table in the source says what becomes of each event; one that stands in no row changes nothing.
///
/// What the switch orders is not reported back to it, but for the group requests of "system-identifier" 1. While a whole log
/// is deleted, server call-log mode is suspended; nobody else can change a list meanwhile, so no deletion of a client goes
/// unreported. What a new entry pushes out of a full list is reported, like the rest of what the phone deletes of its own
/// accord.
///
/// Threads: any. Each event is applied with the call-map lock held, which the caller may hold already, and at a
/// lowered priority (`LoweredPriority`).
class CallLogEvents {
public:
    /// All parts are borrowed and outlive this one.
    struct Parts {
        CallMap& calls;
        PhoneSettings& settings;
        const JournalClock& clock;
        EntryCreation& entries;
        CallLogRemoval& removal;
        JournalLists& lists;
        ObserverNotifierIfc& notifier;
    };

    explicit CallLogEvents(const Parts& parts) : m_parts(parts) {}

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

    const Parts m_parts;
};

}  // namespace journal
