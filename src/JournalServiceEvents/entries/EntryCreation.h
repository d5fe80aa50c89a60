#pragma once

#include <functional>
#include <string>

#include "src/JournalServiceEvents/entries/EntryDetails.h"

class ObserverNotifierIfc;

namespace journal {

class CallLogRequests;
class ForwardedMissedRule;
class JournalClock;
class JournalLists;
class ListPersistence;
class PartyNames;
class PhoneSettings;

/// Files a finished call in its list. Every list goes the same road:
///  1. log the inputs and build the occurrence;
///  2. look the party up in the phonebook;
///  3. under the list's lock find the party's item, ignore a call that is recorded already, merge the occurrence
///     into the item or make a new one, put it at the front, drop the oldest beyond the limit, write it to the
///     database;
///  4. with the lock released tell the observers.
///
/// Threads: any; the caller may hold the call-map lock, no other.
class EntryCreation {
public:
    /// All parts are borrowed and outlive this one.
    struct Parts {
        const PhoneSettings& settings;
        const JournalClock& clock;
        const PartyNames& names;
        JournalLists& lists;
        ListPersistence& persistence;
        CallLogRequests& requests;
        ObserverNotifierIfc& notifier;
        ForwardedMissedRule& forwardedMissed;
        /// Loads the lists when nobody has needed them before: a call must find the entry that its party has in the
        /// database. Empty where the lists are complete as they are.
        std::function<void()> loadAtFirstNeed{};
    };

    explicit EntryCreation(const Parts& parts) : m_parts(parts) {}

    // True when the occurrence was filed, false when it was ignored.
    bool newMissedCallEntry(const MissedEntryDetails& details);
    bool newReceivedCallEntry(const ReceivedEntryDetails& details);
    bool newDialledCallEntry(const DialledEntryDetails& details);
    bool newForwardedCallEntry(const ForwardedEntryDetails& details);

    /// `newDialledCallEntry`, which never cuts the list short, and after it the bound that keeps the list finite over
    /// years: the oldest items beyond 1000 leave memory, database and the log of a switch that keeps one. This is what
    /// finished calls are filed with.
    bool fileDialledCall(const DialledEntryDetails& details);

    /// Deletes the first missed entry of the party that an outgoing call has just reached; nothing when there is
    /// none. The name serves to match a party that has no number or is not in the phonebook.
    void deleteMissedEntryOf(const std::string& calledParty, const std::string& calledPartyName);

private:
    Parts m_parts;
};

}  // namespace journal
